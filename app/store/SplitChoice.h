// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitFile.h"
#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/RewritePlan.h"

#include <cstddef>
#include <set>
#include <vector>

namespace plovik {

/// Which changes of a commit go into the first of the two commits that it is split into; the others go into the second.
/// Files are numbered as they were given. Value.
class SplitChoice {
public:
    /// How much of a file goes into the first commit.
    enum class Share { none, some, all };
    struct Extent {
        int files = 0; ///< of which it has something
        int lines = 0; ///< changed ones, as far as they were counted

        bool operator==(const Extent&) const = default;
    };

    SplitChoice() = default;
    /// Nothing goes into the first commit.
    explicit SplitChoice(std::vector<gitkit::CommitFile> files);

    const std::vector<gitkit::CommitFile>& files() const { return files_; }
    /// `counts` are in the order of the files, as far as they name the same paths.
    void setCounts(const std::vector<gitkit::ChangeCounts>& counts);

    Share shareOf(std::size_t file) const;
    /// Returns whether the lines of a diff of the file can be told apart. Files that are new, gone, moved or not text go as
    /// a whole.
    bool canTakeLines(std::size_t file, const gitkit::ParsedDiff& diff) const;
    /// Returns the ids of the changes in a diff of the file that go into the first commit.
    std::set<int> linesOf(std::size_t file, const gitkit::ParsedDiff& diff) const;

    enum class Into { first, second };
    void take(std::size_t file, Into into);
    /// Does nothing where canTakeLines() forbids it.
    void takeLines(std::size_t file, const gitkit::ParsedDiff& diff, const std::set<int>& lines, Into into);

    Extent inFirst() const;
    Extent inSecond() const;
    /// Returns what the first commit has.
    gitkit::CommitPart part() const;

private:
    struct Chosen {
        Share share = Share::none;
        gitkit::ParsedDiff diff = {}; ///< whose lines are chosen; empty unless some are
        std::set<int> lines = {};
        int changed = 0; ///< lines of the file
    };

    std::vector<gitkit::CommitFile> files_;
    std::vector<Chosen> chosen_; ///< one a file
};

} // namespace plovik

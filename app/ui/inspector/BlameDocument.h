// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"
#include "app/ui/diff/FileLines.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A blamed file as rows to look at: the text in one piece, each commit once. Made on any thread, immutable then;
/// giving it up costs next to nothing. Rows count from 0.
class BlameDocument {
public:
    struct Commit {
        std::string hash;
        QString author;
        QString subject;
        gitkit::Date date;
        bool isUncommitted = false;
        double warmth = 1; ///< 1 for the newest commit of the file, 0 for the oldest
    };

    /// Rows of one commit, next to each other.
    struct Run {
        int first = 0;
        int end = 0; ///< behind the last one
        int commit = 0;
    };

    explicit BlameDocument(std::span<const gitkit::BlameLine> lines);

    int rowCount() const { return static_cast<int>(rows_.size()); }
    /// The line's bytes.
    std::string_view text(int row) const { return file_->line(row + 1); }
    const Commit& commit(int row) const { return commits_[line(row).commit]; }
    const Run& run(int row) const { return runs_[line(row).run]; }
    const std::vector<Run>& runs() const { return runs_; }
    /// Where the row's file was before its commit; null where that commit made it.
    const gitkit::BlameOrigin::Place* previous(int row) const;
    /// How many columns the widest line takes at most.
    int columns() const { return columns_; }
    /// All lines, each with a line feed.
    const std::shared_ptr<const FileLines>& file() const { return file_; }

    /// The rows that stand where `rows` of `other` do, another blame of the same file: the same lines where both have
    /// them, else those in their places between the nearest lines that both have. -1 stays -1.
    std::vector<int> rowsLike(const BlameDocument& other, std::span<const int> rows) const;

private:
    class Matcher;
    struct Row {
        std::uint32_t commit = 0;
        std::uint32_t run = 0;
        std::uint32_t origin = 0;
        int originalNumber = 0;
    };

    static std::size_t index(int row) { return static_cast<std::size_t>(row); }
    const Row& line(int row) const { return rows_[index(row)]; }
    void warmUp();

    std::shared_ptr<const FileLines> file_;
    std::vector<Row> rows_;
    std::vector<Run> runs_;
    std::vector<Commit> commits_;
    std::vector<std::shared_ptr<const gitkit::BlameOrigin>> origins_;
    int columns_ = 0;
};

} // namespace plovik

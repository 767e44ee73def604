// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/widgets/Finder.h"

#include <memory>
#include <optional>
#include <vector>

namespace plovik {

class AllFilesView;
class DiffFinder;
struct CommitReading;

/// A request to count the matches in one diff.
struct DiffSearchRequest : CommitDiffRequest {
    Finder::Query query;

    bool operator==(const DiffSearchRequest&) const = default;
};

/// Searches the diffs of all files of a commit. Those in memory are searched and tinted by their own finders; the others
/// are read once and their matches counted, one after another, so that a step leads to each of them. Main thread.
class AllFilesFinder : public Finder {
    Q_OBJECT

public:
    /// `store` and `view` outlive the finder.
    AllFilesFinder(RepositoryStore& store, AllFilesView& view, QObject* parent);

    void search(const Query& query) override;
    void step(int direction) override;
    int count() const override;
    int current() const override;
    bool isSearching() const override { return next_ < counts_.size(); }
    bool isCut() const override { return false; }
    /// Must be called when the view shows another commit, or the same one read in another way.
    void restart();

private:
    /// A match to go to as soon as its diff is in memory.
    struct Goal {
        std::size_t file;
        bool isLast;
    };

    void readNext();
    void counted();
    void diffShown(std::size_t file);
    void take(std::size_t file, const DiffFinder& finder);
    void goTo(Goal goal);
    void arrive();
    DiffFinder* finderOf(std::size_t file) const;

    AllFilesView& view_;
    Query query_;
    std::vector<int> counts_;       ///< of each file, as far as it was searched
    std::size_t next_ = 0;          ///< the next file to search
    std::optional<std::size_t> at_; ///< the file of the current match
    int atMatch_ = 0;
    std::optional<Goal> goal_;
    bool revealsFirst_ = false;
    Latest<DiffSearchRequest, int> searches_;
};

} // namespace plovik

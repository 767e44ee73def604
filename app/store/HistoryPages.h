// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "app/store/GitAccess.h"
#include "app/store/HistoryRows.h"
#include "app/store/SidebarItem.h"

#include <QString>

#include <cstddef>
#include <filesystem>
#include <functional>
#include <limits>
#include <memory>
#include <optional>

namespace plovik {

struct HistoryPiece;
struct HistorySource;
class Snapshot;

/// What is read: whose history, and what is searched for in it.
struct HistoryQuery {
    SidebarItem item = SidebarItem::history();
    std::optional<gitkit::HistoryFilter> filter = {};

    bool operator==(const HistoryQuery&) const = default;
};

/// What has been read of a history.
struct HistoryPage {
    HistoryQuery query;
    HistoryRows rows = {};
    int lanes = 1;
    bool hasMore = true;    ///< as far as is known
    bool isReading = false; ///< rows are being read
    bool isNaming = false;  ///< the commit that the search names is being looked for
    QString problem = {};   ///< why it could not be read; empty otherwise
};

/// Reads the rows of one history at a time, from the first one on and as far as wanted, and keeps what was read until
/// something else takes its place. Owned by History; main thread.
class HistoryPages {
public:
    /// Nothing that is read is limited to fewer rows.
    static constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();

    /// Calls `changed` when shown() has changed, with whether all rows that were wanted are there.
    HistoryPages(const GitAccess& git, Snapshot& snapshot, std::function<void(bool isAll)> changed);
    ~HistoryPages();
    HistoryPages(const HistoryPages&) = delete;
    HistoryPages& operator=(const HistoryPages&) = delete;

    /// The page to be shown; null before the first rows. It may still be that of an earlier query.
    const HistoryPage* shown() const;
    /// What is to be read from now on.
    const HistoryQuery& query() const { return query_; }
    /// Sets what is to be read, and reads nothing yet.
    void setQuery(HistoryQuery query) { query_ = std::move(query); }
    /// How many rows are to be read.
    std::size_t limit() const { return limit_; }
    void setLimit(std::size_t rows) { limit_ = rows; }
    /// Returns whether what is read, or was read last, is what the query asks for.
    bool isAsked() const;
    /// Returns whether a search goes on.
    bool isSearching() const;
    /// Returns whether the history goes on after the rows that were read, as far as is known.
    bool hasUnreadRows() const;

    /// Reads from the first row on.
    void readAnew();
    /// Reads up to the limit, and from the first row on when the query asks for something else by now.
    void readOn();
    /// Ends the git of a search. What was found stays, and another git goes on from there.
    void stopSearch();
    /// Begins the first reading, and finds out what the history is made from. For the start of a refresh.
    void beginRefresh();
    /// Reads again if what the history is made from has changed. For the end of a refresh.
    QCoro::Task<> refresh();

private:
    struct Load;
    enum class Walk {
        first, ///< in a hurry: may begin without the tags
        usual,
        sorted ///< by git, because the dates are wrong
    };
    using LoadPointer = std::shared_ptr<Load>;

    LoadPointer begin(Walk kind = Walk::usual);
    bool needsNothing(const Load& earlier) const;
    HistoryRows knownTo(const Load& load) const;
    QCoro::Task<> fill(LoadPointer load);
    QCoro::Task<HistoryPiece> nextPiece(LoadPointer load);
    std::size_t pieceLength(const Load& load) const;
    void take(Load& load, const HistoryPiece& piece);
    bool goesOn(const Load& load, const HistoryPiece& piece) const;
    bool isToBeShown(const Load& load) const;
    void show(const LoadPointer& load, bool isAll);
    QCoro::Task<> addNamedCommit(LoadPointer load);
    QCoro::Task<> readSource();
    bool isCurrent(const Load& load) const;
    void rest();

    const GitAccess& git_;
    const Snapshot& snapshot_;
    std::function<void(bool)> changed_;
    HistoryQuery query_;
    std::size_t limit_ = 0;
    LoadPointer load_;                           ///< the newest, the only one that may write
    LoadPointer shown_;                          ///< the one whose rows are shown
    std::optional<QCoro::Task<>> first_;         ///< the first reading, until a refresh waits for it
    std::optional<QCoro::Task<>> sourceReading_; ///< of a refresh
    std::unique_ptr<HistorySource> nextSource_;
    std::unique_ptr<HistorySource> source_; ///< the newest that was read; null after a failure
    std::filesystem::path commonDirectory_;
    std::unique_ptr<Worker::Delay> idle_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "app/store/GitAccess.h"
#include "app/store/Observed.h"
#include "app/store/SidebarItem.h"
#include "app/store/readers/Streamed.h"

#include <QProperty>
#include <QString>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace plovik {

class History;
class WindowState;

/// Asks for the commits that a search finds in a history.
struct MatchRequest {
    SidebarItem item;
    gitkit::HistoryFilter filter;
    std::string tip; ///< hash of the first row; another one means another history
    bool operator==(const MatchRequest&) const = default;
};
/// Starts git. For Streamed: the full hashes, in the order of the history.
StreamSource<std::string> openMatches(const gitkit::GitRepository& repo, const MatchRequest& request);

/// What a search finds while all rows stay in the list (History::searchesInGraph), and the way from one match to the
/// next in either kind of list. Matches are read as far as the rows that are loaded, and further when one steps there.
/// Owned by the store; main thread.
class HistoryMatches {
public:
    HistoryMatches(const GitAccess& git, WindowState& window, History& history);
    ~HistoryMatches();
    HistoryMatches(const HistoryMatches&) = delete;
    HistoryMatches& operator=(const HistoryMatches&) = delete;

    /// Grows whenever other commits are known to match.
    Observed<qint64, HistoryMatches> changes{0};
    Observed<bool, HistoryMatches> isSearching{false};
    /// Why the search failed; empty otherwise.
    Observed<QString, HistoryMatches> problem;

    bool contains(const std::string& hash) const { return places_.contains(hash); }
    std::size_t count() const { return hashes_.size(); }
    /// Whether there may be more than were found.
    bool hasMore() const { return reading_.hasMore(); }
    /// Returns how many matches stand before this one.
    std::optional<std::size_t> placeOf(const std::string& hash) const;

    enum class Direction { next, previous };
    /// Selects the match after or before the selected commit; the first one where none is selected.
    void step(Direction direction);
    /// Ends the search. What was found stays.
    void stop();

private:
    void follow();
    void ask();
    void take(std::vector<std::string> found, bool isFirst);
    void readOn();
    void clear();
    std::optional<std::string> after(Direction direction) const;

    const GitAccess& git_;
    WindowState& window_;
    History& history_;
    std::vector<std::string> hashes_; ///< in the order of the history
    std::unordered_map<std::string, std::size_t> places_;
    Streamed<MatchRequest, std::string> reading_;
    std::unique_ptr<Worker::Delay> typingPause_;
    bool wantsNext_ = false; ///< the next match is selected once it is found
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

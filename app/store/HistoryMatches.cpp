// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/HistoryMatches.h"

#include "GitKit/repository/HistoryStream.h"
#include "app/store/History.h"
#include "app/store/WindowState.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds matchTypingPause{300};
/// What was found is handed on after this time at the latest.
constexpr std::chrono::milliseconds longestMatchSilence{150};

} // namespace

StreamSource<std::string> openMatches(const gitkit::GitRepository& repo, const MatchRequest& request)
{
    using gitkit::HistoryScope, gitkit::HistoryStream;
    const HistoryScope scope = request.item.isRef() ? HistoryScope::of(request.item.refName) : HistoryScope::all();
    const auto stream =
        std::make_shared<HistoryStream>(repo, gitkit::HistoryWalk{.scope = scope, .filter = request.filter});
    return [stream](std::size_t most) {
        StreamedPiece<std::string> piece;
        while (piece.items.empty() && !stream->hasEnded()) {
            for (const gitkit::Commit& commit : stream->next(most, HistoryStream::Clock::now() + longestMatchSilence))
                piece.items.push_back(commit.hash);
        }
        piece.hasMore = !stream->hasEnded();
        return piece;
    };
}

HistoryMatches::HistoryMatches(const GitAccess& git, WindowState& window, History& history)
    : git_(git), window_(window), history_(history),
      reading_(git, &openMatches,
               {.found = [this](std::vector<std::string> found,
                                auto arrival) { take(std::move(found), arrival == decltype(arrival)::first); },
                .changed =
                    [this] {
                        isSearching = false;
                        problem = reading_.failure() ? reading_.failure()->message : QString();
                        readOn();
                    }})
{
    const auto follows = [this] { follow(); };
    notifiers_.push_back(history_.historySearch.addNotifier(follows));
    notifiers_.push_back(history_.historySearchField.addNotifier(follows));
    notifiers_.push_back(history_.searchesInGraph.addNotifier(follows));
    notifiers_.push_back(history_.history.addNotifier([this] {
        if (!typingPause_)
            ask();
    }));
}

HistoryMatches::~HistoryMatches() = default;

void HistoryMatches::follow()
{
    reading_.stop();
    wantsNext_ = false;
    isSearching = history_.searchesInGraph.value() && history_.searched();
    typingPause_ = git_.worker().after(matchTypingPause, [this] {
        typingPause_.reset();
        ask();
    });
}

void HistoryMatches::ask()
{
    const std::optional<gitkit::HistoryFilter> searched = history_.searched();
    if (!history_.searchesInGraph.value() || !searched)
        return clear();
    const HistoryRows& rows = history_.history.value();
    if (rows.empty())
        return;
    MatchRequest request{history_.shownScope(), *searched, rows.hashAt(0)};
    if (reading_.asked() == request && !reading_.failure())
        return readOn();
    const bool isSameSearch =
        reading_.asked() && reading_.asked()->filter == request.filter && reading_.asked()->item == request.item;
    isSearching = true;
    if (isSameSearch)
        reading_.askAnew(std::move(request));
    else
        reading_.ask(std::move(request));
}

void HistoryMatches::clear()
{
    reading_.forget();
    isSearching = false;
    problem = QString();
    if (hashes_.empty())
        return;
    hashes_.clear();
    places_.clear();
    changes = changes.value() + 1;
}

void HistoryMatches::take(std::vector<std::string> found, bool isFirst)
{
    if (isFirst) {
        hashes_.clear();
        places_.clear();
    }
    for (std::string& hash : found) {
        places_.emplace(hash, hashes_.size());
        hashes_.push_back(std::move(hash));
    }
    changes = changes.value() + 1;
    if (wantsNext_ && !found.empty())
        step(Direction::next);
}

/// Reads on while all that was found stands among the loaded rows, or another match is wished for.
void HistoryMatches::readOn()
{
    if (reading_.isReading() || reading_.isStopped() || !reading_.hasMore())
        return;
    if (!wantsNext_ && !hashes_.empty() && !history_.history.value().contains(hashes_.back()))
        return;
    isSearching = true;
    reading_.wantMore();
}

std::optional<std::size_t> HistoryMatches::placeOf(const std::string& hash) const
{
    const auto found = places_.find(hash);
    return found == places_.end() ? std::nullopt : std::optional(found->second);
}

/// Returns the match that is next to the selected commit. Those beyond the loaded rows follow all that are loaded.
std::optional<std::string> HistoryMatches::after(Direction direction) const
{
    const HistoryRows& rows = history_.history.value();
    const std::optional<std::string>& selected = window_.selectedCommit.value();
    const auto selectedRow = selected ? rows.rowOf(*selected) : std::nullopt;
    const bool isForward = direction == Direction::next;
    // Finding a row costs a look at all of them, so that of each match is not looked for.
    const auto isBefore = [&](const std::string& hash) {
        const auto row = rows.rowOf(hash);
        return row && selectedRow && (isForward ? *row <= *selectedRow : *row < *selectedRow);
    };
    const auto beyond = std::ranges::partition_point(hashes_, isBefore);
    if (isForward)
        return beyond == hashes_.end() ? std::nullopt : std::optional(*beyond);
    return beyond == hashes_.begin() ? std::nullopt : std::optional(*std::prev(beyond));
}

void HistoryMatches::step(Direction direction)
{
    if (!history_.searchesInGraph.value())
        return history_.moveCommitSelection(direction == Direction::next ? 1 : -1);
    wantsNext_ = false;
    if (const std::optional<std::string> match = after(direction))
        return history_.showCommit(*match);
    if (direction == Direction::previous || !history_.searched())
        return;
    wantsNext_ = reading_.isReading() || reading_.hasMore();
    readOn();
}

void HistoryMatches::stop()
{
    wantsNext_ = false;
    reading_.stop();
    isSearching = false;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Failure.h"
#include "app/store/GitAccess.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <vector>

namespace plovik {

template <typename Item>
struct StreamedPiece {
    std::vector<Item> items;
    bool hasMore = true; ///< false when the list ends here; true while that is not known
};

/// Waits for the next items of a list and returns them, at most as many as asked for. Returns none only at the end of
/// the list. Called by one thread at a time; its git waits between two calls and is ended when it is destroyed.
template <typename Item>
using StreamSource = std::function<StreamedPiece<Item>(std::size_t most)>;

/// Reads one list after another for a view, off the main thread, and hands on what it finds while git goes on. The
/// newest request wins: an overtaken one is dropped and its git ended. A page is read at first, and another one whenever
/// more is wanted; in between git waits, and is ended after a while. The next page then begins with another git, and
/// what is known is skipped.
///
/// Owned by the view that shows the list; `git` outlives it. Main thread. Its destructor ends the reading.
template <typename Request, typename Item>
class Streamed {
public:
    using Source = StreamSource<Item>;

    enum class Arrival {
        first, ///< the items begin a list, and replace the one before; none if the list is empty
        more   ///< they follow those before
    };
    /// What the view does. All of it may ask again. Nothing of it is called by a call of the view, but for stop(),
    /// which hands on what was held back.
    struct Listener {
        std::function<void(std::vector<Item>, Arrival)> found;
        std::function<void()> changed; ///< the reading has ended or failed
    };

    static constexpr std::size_t pageSize = 500;
    /// The first items fill a screen; each piece after them is as long as what is there.
    static constexpr std::size_t firstPiece = 60;
    /// A git that waits with more items is ended after this time.
    static constexpr std::chrono::seconds longestWait{30};

    /// `open` starts git; it runs on the worker's threads.
    Streamed(const GitAccess& git, Source (*open)(const gitkit::GitRepository&, const Request&), Listener listener)
        : git_(git), open_(open), listener_(std::move(listener))
    {}

    ~Streamed() { stop_.request_stop(); }
    Streamed(const Streamed&) = delete;
    Streamed& operator=(const Streamed&) = delete;

    /// Asks for a list. Does nothing when it was asked for last and has not failed.
    void ask(Request request)
    {
        if (asked_ == request && !failure_)
            return;
        const std::size_t known = asked_ == request && answered_ == request ? shown_ : 0;
        begin(std::move(request), known);
    }

    /// The same for a newer state of the list that is shown. It is handed on once as much of it is found as is shown.
    void askAnew(Request request)
    {
        if (asked_ != request || failure_)
            begin(std::move(request), shown_);
    }

    /// Wants another page. Does nothing while items are read, or when there are no more.
    void wantMore()
    {
        if (isReading_ || !hasMore_)
            return;
        limit_ = found_ + pageSize;
        goOn();
    }

    /// Ends git. What was found stays.
    void stop()
    {
        isStopped_ = isStopped_ || isReading_;
        end();
        known_ = 0;
        if (!held_.empty())
            handOn();
    }

    /// Goes on with what was stopped.
    void goOn()
    {
        if (isReading_ || !hasMore_)
            return;
        isStopped_ = false;
        launch(reading(number_));
    }

    /// Ends git and drops request and failure. The next items begin a list.
    void forget()
    {
        end();
        asked_.reset();
        answered_.reset();
        failure_.reset();
        held_.clear();
        shown_ = 0;
        isStopped_ = hasMore_ = false;
    }

    bool isReading() const { return isReading_; }
    /// Whether stop() has ended a reading that has not gone on since.
    bool isStopped() const { return isStopped_; }
    /// Whether there may be more than was found.
    bool hasMore() const { return hasMore_; }
    /// Returns how many items of the list were handed on.
    std::size_t count() const { return shown_; }
    /// Returns the newest request.
    const std::optional<Request>& asked() const { return asked_; }
    /// Returns the request whose items were handed on last. They are outdated while it differs from asked().
    const std::optional<Request>& answered() const { return answered_; }
    /// Returns why the newest request failed, or nullopt when it has not. What was found before stays.
    const std::optional<Failure>& failure() const { return failure_; }

private:
    struct Piece : StreamedPiece<Item> {
        bool hasChanged = false; ///< what should be skipped is not what was found before
    };

    /// One git. Used by one thread at a time.
    struct Run {
        std::shared_ptr<const gitkit::GitRepository> repo;
        Source (*open)(const gitkit::GitRepository&, const Request&);
        Request request;
        std::size_t known;        ///< items to skip
        std::optional<Item> last; ///< of them
        Source source = {};

        Piece read(std::size_t most)
        {
            if (!source) {
                source = open(*repo, request);
                if (!skipKnown())
                    return {{}, true};
            }
            return {source(most)};
        }

        /// Returns whether it comes to the same item again.
        bool skipKnown()
        {
            std::optional<Item> skipped;
            while (known > 0) {
                StreamedPiece<Item> piece = source(known);
                known -= piece.items.size();
                if (!piece.items.empty())
                    skipped = std::move(piece.items.back());
                if (!piece.hasMore)
                    break;
            }
            return known == 0 && skipped == last;
        }
    };

    /// Reads a list from its beginning. Hands nothing on before `known` items are found.
    void begin(Request request, std::size_t known)
    {
        end();
        asked_ = std::move(request);
        failure_.reset();
        held_.clear();
        last_.reset();
        known_ = known;
        found_ = 0;
        limit_ = std::max(pageSize, known);
        isNew_ = hasMore_ = true;
        isStopped_ = false;
        launch(reading(number_));
    }

    /// Ends git. What it still finds is dropped.
    void end()
    {
        stop_.request_stop();
        stop_ = std::stop_source();
        ++number_;
        run_.reset();
        idle_.reset();
        isReading_ = false;
    }

    /// Reads until a page is full.
    QCoro::Task<> reading(qint64 number)
    {
        const std::weak_ptr alive(alive_);
        const auto isOver = [&] { return alive.expired() || number != number_; };
        isReading_ = true;
        idle_.reset();
        while (hasMore_ && found_ < limit_ && !failure_) {
            std::optional<Piece> piece;
            std::optional<Failure> failure;
            try {
                const Turnstile::Pass pass = co_await git_.longReadTurn();
                if (isOver())
                    co_return;
                if (!run_)
                    run_ = std::make_shared<Run>(git_.repository(stop_.get_token()), open_, *asked_, found_, last_);
                piece = co_await git_.template run<Piece>(Worker::Lane::longRead,
                                                          std::bind_front(&Run::read, run_, nextPiece()));
            } catch (const std::exception& thrown) {
                failure = failureOf(thrown);
            }
            if (isOver())
                co_return;
            if (piece && piece->hasChanged) {
                begin(Request(*asked_), shown_);
                co_return;
            }
            if (piece)
                take(*std::move(piece));
            else
                failure_ = std::move(failure);
            if (isOver())
                co_return;
        }
        rest();
    }

    /// Lets git wait with the next page, or ends it where there is none.
    void rest()
    {
        isReading_ = false;
        hasMore_ = hasMore_ && !failure_;
        if (hasMore_)
            idle_ = git_.worker().after(longestWait, [this] { run_.reset(); });
        else
            run_.reset();
        listener_.changed();
    }

    std::size_t nextPiece() const
    {
        const std::size_t usual = std::max(firstPiece, found_);
        return std::min(limit_ - found_, std::max(usual, known_));
    }

    void take(Piece piece)
    {
        found_ += piece.items.size();
        hasMore_ = piece.hasMore;
        if (!piece.items.empty())
            last_ = piece.items.back();
        std::ranges::move(piece.items, std::back_inserter(held_));
        if (found_ >= known_ || !hasMore_)
            handOn();
    }

    void handOn()
    {
        if (held_.empty() && !isNew_)
            return;
        std::vector<Item> items = std::exchange(held_, {});
        const Arrival arrival = std::exchange(isNew_, false) ? Arrival::first : Arrival::more;
        if (arrival == Arrival::first) {
            answered_ = asked_;
            shown_ = 0;
        }
        shown_ += items.size();
        listener_.found(std::move(items), arrival);
    }

    const GitAccess& git_;
    Source (*open_)(const gitkit::GitRepository&, const Request&);
    Listener listener_;
    std::optional<Request> asked_;
    std::optional<Request> answered_;
    std::optional<Failure> failure_;
    std::stop_source stop_;
    std::shared_ptr<Run> run_; ///< null until the next piece is read, and after the end
    std::unique_ptr<Worker::Delay> idle_;
    qint64 number_ = 0;        ///< number of the newest reading
    std::size_t limit_ = 0;    ///< items to read
    std::size_t found_ = 0;    ///< items of the list that was asked for
    std::size_t known_ = 0;    ///< so many are found before the first is handed on
    std::optional<Item> last_; ///< of those found
    std::vector<Item> held_;   ///< found and not handed on
    std::size_t shown_ = 0;    ///< items of the list that was handed on
    bool isReading_ = false;
    bool isStopped_ = false;
    bool hasMore_ = false;
    bool isNew_ = false; ///< nothing of the list was handed on
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/HistoryPages.h"

#include "app/store/Failure.h"
#include "app/store/Snapshot.h"
#include "app/store/readers/CommitSearch.h"
#include "app/store/readers/HistoryReading.h"

#include <algorithm>
#include <stop_token>
#include <utility>

namespace plovik {

using gitkit::HistoryFilter;

namespace {

/// The first rows to show fill a screen; later pieces are as long as what is there, up to the most.
constexpr std::size_t firstPiece = 60;
constexpr std::size_t longestPiece = 65'536;
/// What replaces a page is read in pieces of this length at least.
constexpr std::size_t replacingPiece = 500;
/// A git that waits with more rows is ended after this time, and another one started when they are wanted.
constexpr std::chrono::seconds longestWait{30};

} // namespace

/// One reading of a history, from its first row on.
struct HistoryPages::Load {
    HistoryPage page;
    gitkit::HistoryWalk walk;
    std::optional<HistorySource> source = {}; ///< nullopt when it may be older than the rows
    std::stop_source stop = {};
    std::shared_ptr<HistoryReading> reading = {};
    bool isClosed = false; ///< its git was ended, but not by the end of the history
    bool isWithoutTags = false;

    ~Load() { stop.request_stop(); }

    void endGit()
    {
        isClosed = true;
        stop.request_stop();
    }
};

HistoryPages::HistoryPages(const GitAccess& git, Snapshot& snapshot, std::function<void(bool)> changed)
    : git_(git), snapshot_(snapshot), changed_(std::move(changed))
{}

HistoryPages::~HistoryPages() = default;

const HistoryPage* HistoryPages::shown() const { return shown_ ? &shown_->page : nullptr; }

bool HistoryPages::isAsked() const { return load_ && load_->page.query == query_ && load_->page.problem.isEmpty(); }

bool HistoryPages::isSearching() const
{
    const bool isOutdated = !shown_ ? query_.filter.has_value() : shown_->page.query.filter != query_.filter;
    return isOutdated ||
           (shown_ && shown_->page.query.filter && load_ == shown_ && (load_->page.isReading || load_->page.isNaming));
}

bool HistoryPages::hasUnreadRows() const { return load_ && load_->page.hasMore; }

void HistoryPages::readAnew() { launch(fill(begin())); }

void HistoryPages::readOn()
{
    if (!isAsked())
        readAnew();
    else if (!load_->page.isReading)
        launch(fill(load_));
}

void HistoryPages::stopSearch()
{
    if (load_ && load_->page.isReading && load_->page.query.filter)
        load_->endGit();
}

// Refreshing.

/// Begins before anything else is known of the repository, so that the first rows wait for nothing.
void HistoryPages::beginRefresh()
{
    if (!load_)
        first_.emplace(fill(begin(Walk::first)));
    sourceReading_.emplace(readSource());
}

QCoro::Task<> HistoryPages::readSource()
{
    nextSource_.reset();
    try {
        HistorySource read = co_await git_.read(readHistorySource, commonDirectory_);
        commonDirectory_ = read.commonDirectory;
        nextSource_ = std::make_unique<HistorySource>(std::move(read));
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the history itself tells what is wrong
    }
}

QCoro::Task<> HistoryPages::refresh()
{
    if (std::optional<QCoro::Task<>> reading = std::exchange(sourceReading_, std::nullopt))
        co_await *reading;
    source_ = std::move(nextSource_);
    bool isWanted = !load_ || !isCurrent(*load_);
    if (std::optional<QCoro::Task<>> first = std::exchange(first_, std::nullopt)) {
        co_await *first;
        isWanted = load_->isWithoutTags && !load_->page.isReading;
    }
    if (isWanted)
        co_await fill(begin());
    if (shown_ == load_)
        show(load_, !load_->page.isReading); // the labels may be new
}

/// Returns whether reading again would find the same rows.
bool HistoryPages::isCurrent(const Load& load) const
{
    return load.page.query == query_ && load.page.problem.isEmpty() && source_ && load.source == *source_;
}

// Reading.

HistoryPages::LoadPointer HistoryPages::begin(Walk kind)
{
    const gitkit::HistoryScope scope =
        query_.item.isRef() ? gitkit::HistoryScope::of(query_.item.refName) : gitkit::HistoryScope::all();
    const auto load = std::make_shared<Load>(
        HistoryPage{query_}, gitkit::HistoryWalk{scope, query_.filter, kind == Walk::sorted, kind == Walk::first});
    if (load_ && load_->page.query == query_)
        load->walk.isSortedByGit = load->walk.isSortedByGit || load_->walk.isSortedByGit;
    if (source_)
        load->source = *source_;
    load->reading =
        std::make_shared<HistoryReading>(git_.repository(load->stop.get_token()), load->walk, knownTo(*load));
    // Before the first commit there is nothing to read.
    load->page.hasMore = !snapshot_.hasLoaded.value() || snapshot_.mayHaveCommits();
    if (load_ && !needsNothing(*load_))
        load_->stop.request_stop();
    load_ = load;
    const auto& searched = query_.filter;
    if (searched && searched->field == HistoryFilter::Field::message && looksLikeHash(searched->text))
        launch(addNamedCommit(load));
    return load;
}

/// Returns whether the git of an earlier load may go on waiting: the new load may come to its rows.
bool HistoryPages::needsNothing(const Load& earlier) const
{
    const HistoryPage& page = earlier.page;
    return &earlier == shown_.get() && !page.isReading && page.query.item == query_.item && !page.query.filter;
}

/// Returns the rows that the walk of a new load may come to again: those that are shown, if only refs have moved.
HistoryRows HistoryPages::knownTo(const Load& load) const
{
    const bool isSame = shown_ && shown_->page.query == load.page.query && !load.page.query.filter &&
                        shown_->walk.isSortedByGit == load.walk.isSortedByGit && !shown_->page.isReading;
    if (!isSame || !load.source || !shown_->source || shown_->source->borders != load.source->borders)
        return {};
    return shown_->page.rows;
}

/// Reads rows until there are as many as are wanted. Does nothing when that goes on already.
QCoro::Task<> HistoryPages::fill(LoadPointer load)
{
    if (load->page.isReading)
        co_return;
    load->page.isReading = true;
    idle_.reset();
    QString problem;
    while (problem.isEmpty() && load->page.hasMore && load->page.rows.size() < limit_) {
        std::optional<HistoryPiece> piece;
        try {
            piece = co_await nextPiece(load);
        } catch (const std::exception& thrown) {
            problem = failureOf(thrown).message;
        }
        if (load != load_)
            co_return;
        if (load->isClosed) // by endGit(), which is no failure
            problem.clear();
        if (piece && (piece->isWrong || piece->hasChanged)) {
            load = begin(piece->isWrong ? Walk::sorted : Walk::usual);
            load->page.isReading = true;
            continue;
        }
        if (piece)
            take(*load, *piece);
        if (load->isClosed)
            break;
        if (piece && isToBeShown(*load))
            show(load, false);
    }
    load->page.isReading = false;
    load->page.hasMore = load->page.hasMore && problem.isEmpty();
    load->page.problem = problem;
    show(load, true);
    if (load->page.hasMore)
        idle_ = git_.worker().after(longestWait, [this] { rest(); });
}

/// Waits for a place among the long reads, and awaits the next rows. Returns none when another load has begun.
QCoro::Task<HistoryPiece> HistoryPages::nextPiece(LoadPointer load)
{
    const Turnstile::Pass pass = co_await git_.longReadTurn();
    if (load != load_)
        co_return HistoryPiece{};
    if (std::exchange(load->isClosed, false)) {
        load->stop = std::stop_source();
        load->reading->reopen(git_.repository(load->stop.get_token()));
    }
    co_return co_await git_.run<HistoryPiece>(
        Worker::Lane::longRead, std::bind_front(&HistoryReading::read, load->reading, pieceLength(*load)));
}

/// Returns how many rows to read at once. Few at first, and what replaces a page all at once.
std::size_t HistoryPages::pieceLength(const Load& load) const
{
    const std::size_t left = limit_ - load.page.rows.size();
    const bool replaces = shown_ && &load != shown_.get() && shown_->page.query == load.page.query;
    const std::size_t usual = replaces ? replacingPiece : firstPiece;
    return std::min({left, std::max(usual, load.page.rows.size()), longestPiece});
}

/// Adds what was read. Where a new load has come to where the shown one has been, it goes on with that one's rows and
/// its git.
void HistoryPages::take(Load& load, const HistoryPiece& piece)
{
    load.page.rows.append(piece.block);
    load.page.lanes = std::max(load.page.lanes, piece.block->laneCount());
    load.page.hasMore = piece.hasMore;
    load.isWithoutTags = piece.isWithoutTags;
    if (!goesOn(load, piece))
        return;
    load.page.rows.appendFrom(shown_->page.rows, *piece.goesOnAt);
    load.page.lanes = std::max(load.page.lanes, shown_->page.lanes);
    load.page.hasMore = shown_->page.hasMore;
    load.reading = shown_->reading;
    load.reading->moveTo(load.page.rows.size());
    std::swap(load.stop, shown_->stop);
    load.isClosed = shown_->isClosed;
}

/// Returns whether the rest of the shown rows follows the rows of `load`.
bool HistoryPages::goesOn(const Load& load, const HistoryPiece& piece) const
{
    if (!piece.goesOnAt || !shown_ || &load == shown_.get() || !load.source || !shown_->source)
        return false;
    const HistoryRows& shown = shown_->page.rows;
    const TipChanges changes = changedTips(shown_->source->tips, load.source->tips);
    // What only a tip that is gone led to may stand among the rows to come. A new tip among them changes nothing.
    const auto isBeyond = [&](const std::string& tip) {
        const auto row = shown.rowOf(tip);
        return !row || *row >= *piece.goesOnAt;
    };
    const auto isKnown = [&](const std::string& tip) { return load.page.rows.contains(tip) || shown.contains(tip); };
    return changes.canBeKnown && std::ranges::none_of(changes.before, isBeyond) &&
           std::ranges::all_of(changes.after, isKnown);
}

/// Rows are shown as they come, except that a page is not replaced by a shorter one.
bool HistoryPages::isToBeShown(const Load& load) const
{
    if (!shown_ || shown_.get() == &load || shown_->page.query != load.page.query)
        return true;
    return load.page.rows.size() >= shown_->page.rows.size();
}

void HistoryPages::show(const LoadPointer& load, bool isAll)
{
    shown_ = load;
    if (source_)
        load->page.rows.setLabels(source_->labels);
    changed_(isAll);
}

QCoro::Task<> HistoryPages::addNamedCommit(LoadPointer load)
{
    load->page.isNaming = true;
    std::optional<gitkit::Commit> named;
    try {
        named =
            co_await git_.readLong(load->stop.get_token(), readCommitOfHash, load->walk.scope, load->walk.filter->text);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the search shows what else it finds
    }
    load->page.isNaming = false;
    if (load != load_)
        co_return;
    if (named)
        load->page.rows.putFirst({*std::move(named), {}});
    if (load == shown_)
        show(load, !load->page.isReading);
}

/// Ends the git that waits with more rows.
void HistoryPages::rest()
{
    if (!load_ || load_->page.isReading || !load_->page.hasMore)
        return;
    load_->isClosed = true;
    load_->reading->close();
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/History.h"

#include "app/store/Failure.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/readers/CommitSearch.h"
#include "app/store/readers/HistoryReading.h"

#include <algorithm>
#include <functional>
#include <limits>
#include <utility>

namespace plovik {

using gitkit::HistoryFilter;
using gitkit::HistoryScope;

namespace {

constexpr std::size_t pageSize = 500;
/// The first rows to show fill a screen; later pieces are as long as what is there, up to the most.
constexpr std::size_t firstPiece = 60;
constexpr std::size_t longestPiece = 65'536;
constexpr std::chrono::milliseconds typingPause{300};
/// No sentence is shown for a commit that is found sooner.
constexpr std::chrono::milliseconds patience{200};
/// A git that waits with more rows is ended after this time, and another one started when they are wanted.
constexpr std::chrono::seconds longestWait{30};
/// Rows loaded beyond the wanted one, for context and for commits that are made in the meantime.
constexpr std::size_t rowsBeyond = 100;
constexpr std::size_t everything = std::numeric_limits<std::size_t>::max();

bool isBlank(QChar character) { return character == u'\t' || character.category() == QChar::Separator_Space; }

QString trimmedOfBlanks(const QString& text)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
    return QString(begin, end - begin);
}

HistoryScope scopeOf(const SidebarItem& item)
{
    return item.isRef() ? HistoryScope::of(item.refName) : HistoryScope::all();
}

} // namespace

/// One reading of a history, from its first row on.
struct History::Load {
    SidebarItem scope;
    gitkit::HistoryWalk walk;
    std::optional<HistorySource> source; ///< nullopt when it may be older than the rows
    std::stop_source stop;
    std::shared_ptr<HistoryReading> reading;
    HistoryRows rows = {};
    int lanes = 1;
    bool hasMore = true;
    bool isFilling = false;
    bool isNaming = false; ///< the commit that the search names is being looked for
    bool isClosed = false; ///< its git was ended, but not by the end of the history
    bool hasFailed = false;
    bool isWithoutTags = false;

    ~Load() { stop.request_stop(); }
};

History::History(const GitAccess& git, WindowState& window, Snapshot& snapshot)
    : git_(git), window_(window), snapshot_(snapshot), limit_(pageSize)
{
    window_.listen({.moved = [this](WindowState::Step) { beginWish(); }, .chosen = [this] { showSelected(); }});
    snapshot_.follow(
        {.beforeListings = [this] { beginReading(); }, .afterListings = [this] { return reloadWhatIsLeft(); }});
}

History::~History() = default;

// Reading.

std::optional<HistoryFilter> History::filter() const
{
    const QString text = trimmedOfBlanks(historySearch.value());
    if (text.isEmpty())
        return std::nullopt;
    return HistoryFilter{historySearchField.value(), text.toStdString()};
}

/// Begins before anything else is known of the repository, so that the first rows wait for nothing.
void History::beginReading()
{
    if (!load_)
        first_.emplace(fill(begin(Walk::first)));
    sourceReading_.emplace(readSource());
}

/// Reading the history of a deleted ref would fail, so the history of all refs is read instead.
QCoro::Task<> History::reloadWhatIsLeft()
{
    if (scope_.isRef() && !snapshot_.hasRef(scope_.refName)) {
        scope_ = SidebarItem::history();
        limit_ = pageSize;
    }
    if (std::optional<QCoro::Task<>> reading = std::exchange(sourceReading_, std::nullopt))
        co_await *reading;
    source_ = std::move(nextSource_);
    bool isWanted = !load_ || !isCurrent(*load_);
    if (std::optional<QCoro::Task<>> first = std::exchange(first_, std::nullopt)) {
        co_await *first;
        isWanted = load_->isWithoutTags && !load_->isFilling;
    }
    if (isWanted)
        co_await fill(begin());
    if (shown_ == load_)
        show(load_, !load_->isFilling); // the labels may be new
}

QCoro::Task<> History::readSource()
{
    nextSource_.reset();
    try {
        HistorySource read = co_await git_.read(readHistorySource, commonDirectory_);
        commonDirectory_ = read.commonDirectory;
        nextSource_ = std::make_unique<HistorySource>(std::move(read));
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the history itself tells what is wrong
    }
}

/// Returns whether reading again would find the same rows.
bool History::isCurrent(const Load& load) const
{
    return load.scope == scope_ && load.walk.filter == filter() && !load.hasFailed && source_ &&
           load.source == *source_;
}

/// Returns the rows that the walk of a new load may come to again: those that are shown, if only refs have moved.
HistoryRows History::knownTo(const Load& load) const
{
    const bool isSame = shown_ && shown_->scope == load.scope && !load.walk.filter && !shown_->walk.filter &&
                        shown_->walk.isSortedByGit == load.walk.isSortedByGit && !shown_->isFilling;
    if (!isSame || !load.source || !shown_->source || shown_->source->borders != load.source->borders)
        return {};
    return shown_->rows;
}

History::LoadPointer History::begin(Walk kind)
{
    const auto load = std::make_shared<Load>();
    load->scope = scope_;
    load->walk = {scopeOf(scope_), filter(), kind == Walk::sorted, kind == Walk::first};
    if (load_ && load_->scope == load->scope && load_->walk.filter == load->walk.filter)
        load->walk.isSortedByGit = load->walk.isSortedByGit || load_->walk.isSortedByGit;
    if (source_)
        load->source = *source_;
    load->reading =
        std::make_shared<HistoryReading>(git_.repository(load->stop.get_token()), load->walk, knownTo(*load));
    // Before the first commit there is nothing to read.
    load->hasMore = !snapshot_.hasLoaded.value() || snapshot_.mayHaveCommits();
    if (load_ && (load_ != shown_ || load_->isFilling || load_->scope != scope_ || load_->walk.filter))
        load_->stop.request_stop();
    load_ = load;
    const auto& searched = load->walk.filter;
    if (searched && searched->field == HistoryFilter::Field::message && looksLikeHash(searched->text))
        launch(addNamedCommit(load));
    return load;
}

/// Reads rows until there are as many as are wanted. Does nothing when that goes on already.
QCoro::Task<> History::fill(LoadPointer load)
{
    if (load->isFilling)
        co_return;
    load->isFilling = true;
    idle_.reset();
    QString problem;
    while (problem.isEmpty() && load->hasMore && load->rows.size() < limit_) {
        std::optional<HistoryPiece> piece;
        try {
            const Turnstile::Pass pass = co_await git_.longReadTurn();
            if (load != load_)
                co_return;
            if (std::exchange(load->isClosed, false)) {
                load->stop = std::stop_source();
                load->reading->reopen(git_.repository(load->stop.get_token()));
            }
            piece = co_await git_.run<HistoryPiece>(
                Worker::Lane::longRead, std::bind_front(&HistoryReading::read, load->reading, nextPiece(*load)));
        } catch (const std::exception& thrown) {
            problem = failureOf(thrown).message;
        }
        if (load != load_)
            co_return;
        if (load->isClosed) // by endGit(), which is no failure
            problem.clear();
        if (piece && (piece->isWrong || piece->hasChanged)) {
            load = begin(piece->isWrong ? Walk::sorted : Walk::usual);
            load->isFilling = true;
            continue;
        }
        if (piece)
            take(*load, *piece);
        if (load->isClosed)
            break;
        if (piece && isToBeShown(*load))
            show(load, false);
    }
    load->isFilling = false;
    load->hasFailed = !problem.isEmpty();
    load->hasMore = load->hasMore && problem.isEmpty();
    historyProblem = problem;
    show(load, true);
    if (load->hasMore)
        idle_ = git_.worker().after(longestWait, [this] { rest(); });
}

/// Returns how many rows to read at once. Few at first, and what replaces a page all at once.
std::size_t History::nextPiece(const Load& load) const
{
    const std::size_t left = limit_ - load.rows.size();
    const bool replaces = shown_ && shown_->scope == load.scope && shown_->walk.filter == load.walk.filter;
    const std::size_t usual = replaces && &load != shown_.get() ? pageSize : firstPiece;
    return std::min({left, std::max(usual, load.rows.size()), longestPiece});
}

/// Adds what was read. Where a new load has come to where the shown one has been, it goes on with that one's rows and
/// its git.
void History::take(Load& load, const HistoryPiece& piece)
{
    load.rows.append(piece.block);
    load.lanes = std::max(load.lanes, piece.block->laneCount());
    load.hasMore = piece.hasMore;
    load.isWithoutTags = piece.isWithoutTags;
    if (!piece.goesOnAt || !shown_ || &load == shown_.get() || !load.source || !shown_->source)
        return;
    const TipChanges changes = changedTips(shown_->source->tips, load.source->tips);
    // What only a tip that is gone led to may stand among the rows to come. A new tip among them changes nothing.
    const auto isBeyond = [&](const std::string& tip) {
        const auto row = shown_->rows.rowOf(tip);
        return !row || *row >= *piece.goesOnAt;
    };
    const auto isKnown = [&](const std::string& tip) { return load.rows.contains(tip) || shown_->rows.contains(tip); };
    if (!changes.canBeKnown || std::ranges::any_of(changes.before, isBeyond) ||
        !std::ranges::all_of(changes.after, isKnown))
        return;
    load.rows.appendFrom(shown_->rows, *piece.goesOnAt);
    load.lanes = std::max(load.lanes, shown_->lanes);
    load.hasMore = shown_->hasMore;
    load.reading = shown_->reading;
    load.reading->moveTo(load.rows.size());
    std::swap(load.stop, shown_->stop);
    load.isClosed = shown_->isClosed;
}

/// Rows are shown as they come, except that a page is not replaced by a shorter one.
bool History::isToBeShown(const Load& load) const
{
    if (!shown_ || shown_.get() == &load || shown_->scope != load.scope || shown_->walk.filter != load.walk.filter)
        return true;
    return load.rows.size() >= shown_->rows.size();
}

void History::show(const LoadPointer& load, bool isAll)
{
    shown_ = load;
    shownScope_ = load->scope;
    // Set before `history`, because views redraw their rows when that changes.
    isHistoryFiltered = load->walk.filter.has_value();
    showSearching();
    if (source_)
        load->rows.setLabels(source_->labels);
    graphLanes = load->lanes;
    history = load->rows;
    hasMoreHistory = isAll && load->hasMore;
    isReadingToEnd = limit_ == everything && load->isFilling;
    follow(load->rows, isAll);
}

/// Keeps the selection and what is wanted to be selected in line with the rows.
void History::follow(const HistoryRows& page, bool isAll)
{
    const std::optional<std::string> wanted = wantedOn(page, isHistoryFiltered.value());
    const std::optional<std::string>& selected = window_.selectedCommit.value();
    if (wanted)
        selectWanted(*wanted);
    if (!isAll)
        return;
    if (!wanted && selected && !page.contains(*selected))
        window_.followCommit(std::nullopt);
    // Without commits, and before the first status, no history was read.
    if (wanted_ && !wanted && snapshot_.mayHaveCommits())
        missWanted();
    if (std::exchange(wantsLast_, false) && !page.empty()) {
        window_.followCommit(page.hashAt(page.size() - 1));
        commitReveals = commitReveals.value() + 1;
    }
    if (arrived)
        arrived(std::nullopt);
}

void History::showSearching()
{
    const std::optional<HistoryFilter> shown = shown_ ? shown_->walk.filter : std::nullopt;
    isOutdated = shown != filter();
    isSearching = isOutdated.value() || (shown && load_ == shown_ && (load_->isFilling || load_->isNaming));
}

/// Reads what is wanted beyond the rows that were read.
void History::grow()
{
    if (load_ && load_->scope == scope_ && load_->walk.filter == filter() && !load_->hasFailed) {
        if (!load_->isFilling)
            launch(fill(load_));
    } else {
        launch(fill(begin()));
    }
}

/// Ends the git that waits with more rows.
void History::rest()
{
    if (!load_ || load_->isFilling || !load_->hasMore)
        return;
    load_->isClosed = true;
    load_->reading->close();
}

void History::loadMoreHistory()
{
    if (!hasMoreHistory.value())
        return;
    hasMoreHistory = false; // so that the view asks only once
    limit_ = std::max(limit_, history.value().size() + pageSize);
    grow();
}

bool History::hasUnreadRows() const { return load_ && load_->hasMore; }

void History::readToEnd()
{
    limit_ = everything;
    wantsLast_ = true;
    isReadingToEnd = true;
    grow();
}

void History::stopReading()
{
    wantsLast_ = false;
    limit_ = std::max(pageSize, history.value().size());
    isReadingToEnd = false;
    if (load_ && load_->isFilling && load_->walk.filter)
        endGit(*load_);
}

/// Ends the git of a load that is being read. What was read stays, and another git goes on from there.
void History::endGit(Load& load)
{
    load.isClosed = true;
    load.stop.request_stop();
}

QCoro::Task<> History::addNamedCommit(LoadPointer load)
{
    load->isNaming = true;
    std::optional<gitkit::Commit> named;
    try {
        named =
            co_await git_.readLong(load->stop.get_token(), readCommitOfHash, load->walk.scope, load->walk.filter->text);
    } catch (const std::exception&) {
        // The search shows what else it finds.
    }
    load->isNaming = false;
    if (load != load_)
        co_return;
    if (named)
        load->rows.putFirst({*std::move(named), {}});
    if (load == shown_)
        show(load, !load->isFilling);
}

void History::search(const QString& text, HistoryFilter::Field field)
{
    const bool wasFiltered = filter().has_value();
    historySearch = text;
    historySearchField = field;
    if (load_ && load_->isFilling && load_->walk.filter)
        endGit(*load_);
    showSearching();
    typingPause_.reset();
    if (const auto& selected = window_.selectedCommit.value(); selected && wasFiltered && !filter())
        launch(endingSearch(*selected, beginWish()));
    else
        typingPause_ = git_.worker().after(typingPause, [this] { reloadFirstPage(); });
}

void History::reloadFirstPage()
{
    // What was typed and taken back is what is shown, or a refresh has asked for it already.
    if (load_ && load_->scope == scope_ && load_->walk.filter == filter() && !load_->hasFailed)
        return grow();
    limit_ = pageSize;
    wantsLast_ = false;
    launch(fill(begin()));
}

QCoro::Task<> History::endingSearch(std::string selected, qint64 wish)
{
    FoundCommit found;
    try {
        found = co_await find(selected, scope_);
    } catch (const std::exception&) {
        // The page is read without it, and tells why if that fails, too.
    }
    if (filter())
        co_return; // another search has begun
    if (found.scope && isWished(wish))
        loadAsFarAs(scope_, found.position, selected, Arrival::samePlace);
    else
        reloadFirstPage();
}

void History::moveCommitSelection(int rows)
{
    const HistoryRows& page = history.value();
    if (page.empty())
        return;
    std::ptrdiff_t target = 0;
    if (const std::optional<std::string>& commit = window_.selectedCommit.value()) {
        const auto last = static_cast<std::ptrdiff_t>(page.size()) - 1;
        if (const auto selected = page.rowOf(*commit))
            target = std::clamp<std::ptrdiff_t>(static_cast<std::ptrdiff_t>(*selected) + rows, 0, last);
    }
    window_.selectCommit(page.hashAt(static_cast<std::size_t>(target)), WindowState::Step::passing);
}

void History::showSelected()
{
    const SidebarItem& item = window_.selection.value();
    if (!item.showsHistory())
        return;
    const bool isLoaded = item == scope_;
    if (!isLoaded) {
        scope_ = item;
        limit_ = pageSize;
        wantsLast_ = false;
    }
    if (item.isRef())
        showTipOfRef();
    if (!isLoaded)
        launch(fill(begin()));
}

// Jumping to a commit.

qint64 History::beginWish()
{
    wanted_.reset();
    patience_.reset();
    lookup = std::nullopt;
    window_.clearNotice();
    wantsLast_ = false;
    wishStop_.request_stop();
    wishStop_ = std::stop_source();
    return ++wish_;
}

bool History::isOnPage(const SidebarItem& item, const std::string& hash) const
{
    return item == scope_ && shownScope_ == scope_ && history.value().contains(hash);
}

void History::showCommit(const std::string& hash)
{
    const qint64 wish = beginWish();
    if (!isOnPage(scope_, hash)) {
        launch(showing(hash, wish));
        return;
    }
    reveal(scope_, hash);
    if (arrived)
        arrived(Arrival::newPlace);
}

void History::reveal(const SidebarItem& item, const std::string& hash)
{
    beginWish();
    window_.follow(item);
    window_.followCommit(hash);
    commitReveals = commitReveals.value() + 1;
}

QCoro::Task<> History::showing(std::string name, qint64 wish)
{
    const SidebarItem item = scope_;
    CommitSearch search{name, {scopeOf(item)}};
    if (item.isRef())
        search.scopes.push_back(HistoryScope::all());
    lookFor(name);
    FoundCommit found;
    std::optional<Failure> failure;
    try {
        found = co_await git_.readLong(wishStop_.get_token(), findCommit, std::move(search));
    } catch (const std::exception& thrown) {
        failure = failureOf(thrown);
    }
    if (!isWished(wish))
        co_return;
    if (!failure && found.scope) {
        loadAsFarAs(*found.scope == 0 ? item : SidebarItem::history(), found.position, found.hash, Arrival::newPlace);
        co_return;
    }
    beginWish();
    const QString shown = shownText(gitkit::shortHash(found.hash.empty() ? name : found.hash));
    if (failure)
        window_.report(*failure);
    else if (found.hash.empty())
        window_.tell(tr("This repository has no commit %1.").arg(shown));
    else
        window_.tell(tr("No branch or tag leads to %1, so it is not in the history.").arg(shown));
}

BlockingCall<FoundCommit> History::find(const std::string& hash, const SidebarItem& item) const
{
    return git_.readLong(wishStop_.get_token(), findCommit, CommitSearch{hash, {scopeOf(item)}});
}

void History::loadAsFarAs(const SidebarItem& item, int position, const std::string& hash, Arrival arrival)
{
    if (item != scope_)
        limit_ = pageSize;
    scope_ = item;
    window_.follow(item);
    if (filter()) {
        historySearch = QString();
        limit_ = pageSize;
    }
    typingPause_.reset();
    const std::size_t pages = (static_cast<std::size_t>(position) + rowsBeyond) / pageSize + 1;
    limit_ = std::max(limit_, pages * pageSize);
    wanted_ = Wanted{hash, arrival};
    grow();
}

void History::showTipOfRef()
{
    wanted_ = Wanted{};
    if (shownScope_ != scope_)
        return; // selected once the next history is loaded
    if (const auto tip = wantedOn(history.value(), isHistoryFiltered.value()))
        selectWanted(*tip);
}

std::optional<std::string> History::wantedOn(const HistoryRows& page, bool filtered) const
{
    if (!wanted_ || page.empty())
        return std::nullopt;
    // The first commit that a search has found need not be the tip of the ref.
    if (!wanted_->hash)
        return filtered ? std::nullopt : std::optional(page.hashAt(0));
    return page.contains(*wanted_->hash) ? wanted_->hash : std::nullopt;
}

void History::selectWanted(const std::string& hash)
{
    const Arrival arrival = wanted_->arrival;
    beginWish();
    window_.followCommit(hash);
    commitReveals = commitReveals.value() + 1;
    if (arrived)
        arrived(arrival);
}

/// Called when the loaded history does not contain the wanted commit.
void History::missWanted()
{
    const std::optional<std::string> missing = wanted_->hash;
    beginWish();
    if (missing && historyProblem.value().isEmpty())
        window_.tell(tr("%1 is no longer in the history.").arg(shownText(gitkit::shortHash(*missing))));
}

void History::lookFor(const std::string& hash)
{
    patience_ = git_.worker().after(
        patience, [this, shown = shownText(gitkit::shortHash(hash))] { lookup = tr("Looking for %1…").arg(shown); });
}

} // namespace plovik

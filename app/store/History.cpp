// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/History.h"

#include "GitKit/SearchTerms.h"
#include "app/store/Failure.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/readers/CommitSearch.h"

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::HistoryFilter;
using gitkit::HistoryScope;

namespace {

constexpr std::size_t pageSize = 500;
constexpr std::chrono::milliseconds typingPause{300};
/// No sentence is shown for a commit that is found sooner.
constexpr std::chrono::milliseconds patience{200};
/// Rows loaded beyond the wanted one, for context and for commits that are made in the meantime.
constexpr std::size_t rowsBeyond = 100;

bool isBlank(QChar character) { return character == u'\t' || character.category() == QChar::Separator_Space; }

QString trimmedOfBlanks(const QString& text)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
    return QString(begin, end - begin);
}

struct SearchTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::History)
};

/// Returns a sentence that says what is wrong with a search; an empty one when nothing is.
QString faultOf(const HistoryFilter& filter)
{
    using Fault = gitkit::SearchTerms::Fault;
    const gitkit::SearchTerms terms = gitkit::searchTerms(filter);
    switch (terms.fault) {
    case Fault::none:
        return {};
    case Fault::date:
        return SearchTexts::tr("%1 is no date. Type one as 2024, 2024-03 or 2024-03-15, or two with “..” between them.")
            .arg(inQuotes(terms.faulty));
    case Fault::hash:
        return SearchTexts::tr("%1 is no hash: these have the digits 0 to 9 and the letters a to f.")
            .arg(inQuotes(terms.faulty));
    case Fault::twoContents:
        return SearchTexts::tr("Only one text or pattern at a time can be looked for in what changed.");
    }
    return {};
}

HistoryScope scopeOf(const SidebarItem& item)
{
    return item.isRef() ? HistoryScope::of(item.refName) : HistoryScope::all();
}

} // namespace

History::History(const GitAccess& git, WindowState& window, Snapshot& snapshot)
    : git_(git), window_(window), snapshot_(snapshot), pages_(git, snapshot, [this](bool isAll) { show(isAll); })
{
    pages_.setLimit(pageSize);
    window_.listen({.moved = [this](WindowState::Step) { beginWish(); }, .chosen = [this] { showSelected(); }});
    snapshot_.follow(
        {.beforeListings = [this] { pages_.beginRefresh(); }, .afterListings = [this] { return reloadWhatIsLeft(); }});
}

History::~History() = default;

// Reading.

std::optional<HistoryFilter> History::typed() const
{
    const QString text = trimmedOfBlanks(historySearch.value());
    if (text.isEmpty())
        return std::nullopt;
    return HistoryFilter{historySearchField.value(), text.toStdString()};
}

std::optional<HistoryFilter> History::searched() const
{
    const std::optional<HistoryFilter> asked = typed();
    return asked && faultOf(*asked).isEmpty() ? asked : std::nullopt;
}

SearchMarks History::searchMarks() const
{
    const std::optional<HistoryFilter> asked = searched();
    if (!asked)
        return {};
    const gitkit::SearchTerms terms = gitkit::searchTerms(*asked);
    SearchMarks marks;
    marks.hashes = terms.hashes;
    for (const std::string& text : terms.messages)
        marks.subjects.push_back(exactText(text));
    for (const std::string& text : terms.authors)
        marks.authors.push_back(exactText(text));
    return marks;
}

/// Returns what the rows are filtered by. While what is typed cannot be understood, that is what they were before.
std::optional<HistoryFilter> History::filter() const
{
    const std::optional<HistoryFilter> asked = typed();
    if (searchesInGraph.value() || !asked)
        return std::nullopt;
    return faultOf(*asked).isEmpty() ? asked : pages_.query().filter;
}

/// Reading the history of a deleted ref would fail, so the history of all refs is read instead.
QCoro::Task<> History::reloadWhatIsLeft()
{
    const SidebarItem& item = pages_.query().item;
    if (item.isRef() && !snapshot_.hasRef(item.refName)) {
        pages_.setQuery({SidebarItem::history(), filter()});
        pages_.setLimit(pageSize);
    }
    co_await pages_.refresh();
}

SidebarItem History::shownScope() const
{
    const HistoryPage* page = pages_.shown();
    return page ? page->query.item : SidebarItem::history();
}

void History::show(bool isAll)
{
    const HistoryPage& page = *pages_.shown();
    if (isAll) {
        historyProblem = page.problem;
        if (page.query.filter && page.query.filter == typed())
            searchProblem = page.problem;
    }
    // Set before `history`, because views redraw their rows when that changes.
    isHistoryFiltered = page.query.filter.has_value();
    showSearching();
    graphLanes = page.lanes;
    history = arranged(page.rows);
    hasMoreHistory = isAll && page.hasMore;
    isReadingToEnd = pages_.limit() == HistoryPages::everything && page.isReading;
    follow(page.rows, isAll);
}

HistoryRows History::arranged(HistoryRows rows) const
{
    if (!arranged_.empty() && !isHistoryFiltered.value())
        rows.arrange(arranged_);
    return rows;
}

void History::arrange(std::vector<std::string> commits)
{
    if (std::exchange(arranged_, std::move(commits)) == arranged_ || !pages_.shown())
        return;
    history = arranged(pages_.shown()->rows);
}

/// Keeps the selection and what is wanted to be selected in line with the rows.
void History::follow(const HistoryRows& page, bool isAll)
{
    const std::optional<std::string>& selected = window_.selectedCommit.value();
    if (wanted_ && wanted_->isHead && selected && page.contains(*selected))
        wanted_.reset();
    const std::optional<std::string> wanted = wantedOn(page);
    if (wanted)
        selectWanted(*wanted);
    if (!isAll)
        return;
    if (!wanted && selected && !page.contains(*selected))
        window_.followCommit(std::nullopt);
    // Without commits, and before the first status, no history was read.
    const bool isKnown = wanted_ && (!wanted_->isHead || snapshot_.status.value().oid);
    if (isKnown && !wanted && snapshot_.mayHaveCommits())
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
    const HistoryPage* page = pages_.shown();
    isOutdated = (page ? page->query.filter : std::nullopt) != filter();
    isSearching = pages_.isSearching();
}

void History::loadMoreHistory()
{
    if (!hasMoreHistory.value())
        return;
    hasMoreHistory = false; // so that the view asks only once
    pages_.setLimit(std::max(pages_.limit(), history.value().size() + pageSize));
    pages_.readOn();
}

bool History::hasUnreadRows() const { return pages_.hasUnreadRows(); }

void History::readToEnd()
{
    pages_.setLimit(HistoryPages::everything);
    wantsLast_ = true;
    isReadingToEnd = true;
    pages_.readOn();
}

void History::stopReading()
{
    wantsLast_ = false;
    pages_.setLimit(std::max(pageSize, history.value().size()));
    isReadingToEnd = false;
    pages_.stopSearch();
}

void History::search(const QString& text, HistoryFilter::Field field)
{
    const bool wasFiltered = filter().has_value();
    historySearch = text;
    historySearchField = field;
    const std::optional<HistoryFilter> asked = typed();
    searchProblem = asked ? faultOf(*asked) : QString();
    showOtherRows(wasFiltered);
}

void History::setSearchesInGraph(bool inGraph)
{
    if (searchesInGraph.value() == inGraph)
        return;
    const bool wasFiltered = filter().has_value();
    searchesInGraph = inGraph;
    if (typed())
        showOtherRows(wasFiltered);
}

/// Shows the rows that the search asks for by now.
void History::showOtherRows(bool wasFiltered)
{
    pages_.setQuery({pages_.query().item, filter()});
    pages_.stopSearch();
    showSearching();
    typingPause_.reset();
    if (const auto& selected = window_.selectedCommit.value(); selected && wasFiltered && !filter())
        launch(goingTo(*selected, beginWish(), Arrival::samePlace));
    else
        typingPause_ = git_.worker().after(typingPause, [this] { reloadFirstPage(); });
}

void History::reloadFirstPage()
{
    // What was typed and taken back is what is shown, or a refresh has asked for it already.
    if (pages_.isAsked())
        return pages_.readOn();
    pages_.setLimit(pageSize);
    wantsLast_ = false;
    pages_.readAnew();
}

QCoro::Task<> History::goingTo(std::string hash, qint64 wish, Arrival arrival)
{
    FoundCommit found;
    try {
        found = co_await find(hash, pages_.query().item);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the page tells why if it fails, too
    }
    if (filter())
        co_return; // another search has begun
    if (found.scope && isWished(wish))
        loadAsFarAs(pages_.query().item, found.position, hash, arrival);
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
    const bool isLoaded = item == pages_.query().item;
    if (!isLoaded) {
        pages_.setQuery({item, filter()});
        pages_.setLimit(pageSize);
        wantsLast_ = false;
    }
    if (item.isRef())
        showTipOfRef();
    else
        showHead();
    if (!isLoaded)
        pages_.readAnew();
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
    return item == pages_.query().item && item == shownScope() && history.value().contains(hash);
}

void History::showCommit(const std::string& hash)
{
    const qint64 wish = beginWish();
    const SidebarItem item = pages_.query().item;
    if (!isOnPage(item, hash)) {
        launch(showing(hash, wish));
        return;
    }
    reveal(item, hash);
    if (arrived)
        arrived(Arrival::newPlace);
}

void History::reveal(const SidebarItem& item, const std::string& hash)
{
    beginWish();
    window_.follow(item);
    window_.followCommit(hash);
    window_.leaveBlame();
    commitReveals = commitReveals.value() + 1;
}

QCoro::Task<> History::showing(std::string name, qint64 wish)
{
    const SidebarItem item = pages_.query().item;
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
    if (item != pages_.query().item || filter())
        pages_.setLimit(pageSize);
    if (filter())
        historySearch = QString();
    pages_.setQuery({item, filter()});
    window_.follow(item);
    typingPause_.reset();
    const std::size_t pages = (static_cast<std::size_t>(position) + rowsBeyond) / pageSize + 1;
    pages_.setLimit(std::max(pages_.limit(), pages * pageSize));
    wanted_ = Wanted{.hash = hash, .arrival = arrival};
    pages_.readOn();
}

void History::showTipOfRef()
{
    wanted_ = Wanted{};
    if (shownScope() != pages_.query().item)
        return; // selected once the next history is loaded
    if (const auto tip = wantedOn(history.value()))
        selectWanted(*tip);
}

/// Selects HEAD's commit when the page has no selected one, as soon as it is known and read.
void History::showHead()
{
    const auto& selected = window_.selectedCommit.value();
    if (filter() || (selected && isOnPage(pages_.query().item, *selected)))
        return;
    wanted_ = Wanted{.hash = std::nullopt, .isHead = true, .arrival = Arrival::unchosen};
    const HistoryPage* page = pages_.shown();
    if (!page || page->query != pages_.query() || page->rows.empty())
        return; // selected once the page is loaded
    if (const auto head = wantedOn(page->rows))
        selectWanted(*head);
    else if (!page->isReading && snapshot_.status.value().oid)
        missWanted();
}

std::optional<std::string> History::wantedOn(const HistoryRows& page) const
{
    if (!wanted_ || page.empty())
        return std::nullopt;
    if (wanted_->isHead) {
        const auto& head = snapshot_.status.value().oid;
        return head && page.contains(*head) ? head : std::nullopt;
    }
    // The first commit that a search has found need not be the tip of the ref.
    if (!wanted_->hash)
        return isHistoryFiltered.value() ? std::nullopt : std::optional(page.hashAt(0));
    return page.contains(*wanted_->hash) ? wanted_->hash : std::nullopt;
}

void History::selectWanted(const std::string& hash)
{
    const Arrival arrival = wanted_->arrival;
    const bool isOther = window_.selectedCommit.value() != hash;
    beginWish();
    window_.followCommit(hash);
    if (arrival == Arrival::newPlace || (arrival == Arrival::samePlace && isOther))
        window_.leaveBlame();
    commitReveals = commitReveals.value() + 1;
    if (arrived)
        arrived(arrival);
}

/// Called when the loaded history does not contain the wanted commit.
void History::missWanted()
{
    const std::optional<std::string> missing = wanted_->hash;
    const bool isHead = wanted_->isHead;
    beginWish();
    if (isHead)
        launch(goingTo(*snapshot_.status.value().oid, wish_, Arrival::unchosen));
    if (missing && historyProblem.value().isEmpty())
        window_.tell(tr("%1 is no longer in the history.").arg(shownText(gitkit::shortHash(*missing))));
}

void History::lookFor(const std::string& hash)
{
    patience_ = git_.worker().after(
        patience, [this, shown = shownText(gitkit::shortHash(hash))] { lookup = tr("Looking for %1…").arg(shown); });
}

} // namespace plovik

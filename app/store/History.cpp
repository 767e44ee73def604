// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/History.h"

#include "app/store/Failure.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/WindowState.h"
#include "app/store/readers/CommitSearch.h"
#include "app/store/readers/HistoryPage.h"

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::HistoryFilter;
using gitkit::HistoryScope;

namespace {

constexpr int pageSize = 500;
constexpr std::chrono::milliseconds typingPause{300};
/// No sentence is shown for a commit that is found sooner.
constexpr std::chrono::milliseconds patience{200};
/// Rows loaded beyond the wanted one, for context and for commits that are made in the meantime.
constexpr int rowsBeyond = 100;

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

History::History(const GitAccess& git, WindowState& window, Snapshot& snapshot)
    : git_(git), window_(window), snapshot_(snapshot), limit_(pageSize)
{
    window_.listen({.moved = [this](WindowState::Step) { beginWish(); }, .chosen = [this] { showSelected(); }});
    snapshot_.follow({.afterListings = [this] { return reloadWhatIsLeft(); }});
}

History::~History() = default;

// The page.

std::optional<HistoryFilter> History::filter() const
{
    const QString text = trimmedOfBlanks(historySearch.value());
    if (text.isEmpty())
        return std::nullopt;
    return HistoryFilter{historySearchField.value(), text.toStdString()};
}

/// Reading the history of a deleted ref would fail, so the history of all refs is read instead.
QCoro::Task<> History::reloadWhatIsLeft()
{
    if (scope_.isRef() && !snapshot_.hasRef(scope_.refName)) {
        scope_ = SidebarItem::history();
        limit_ = pageSize;
    }
    return reload();
}

QCoro::Task<> History::reload()
{
    const qint64 load = ++loads_;
    HistoryRequest request{scopeOf(scope_), limit_, filter()};
    std::optional<HistoryFilter> shown = request.filter;
    HistoryPage page;
    QString problem;
    // git fails when it is asked for a history before the first commit.
    if (snapshot_.mayHaveCommits()) {
        try {
            page = co_await git_.read(readHistoryPage, std::move(request));
        } catch (const std::exception& thrown) {
            problem = failureOf(thrown).message;
        }
    }
    if (load != loads_)
        co_return;
    historyProblem = problem;
    apply(std::move(page), std::move(shown));
}

bool History::holds(const std::vector<HistoryRow>& page, const std::string& hash) const
{
    return std::ranges::find(page, hash, &HistoryRow::id) != page.end();
}

void History::apply(HistoryPage page, std::optional<HistoryFilter> shown)
{
    const bool filtered = shown.has_value();
    shownFilter_ = std::move(shown);
    isSearching = filter() != shownFilter_;
    const std::optional<std::string> wanted = wantedOn(page.rows, filtered);
    const std::optional<std::string>& selected = window_.selectedCommit.value();
    const bool keepsSelection = selected && holds(page.rows, *selected);
    // Set before `history`, because views redraw their rows when that changes.
    isHistoryFiltered = filtered;
    shownScope_ = scope_;
    if (!std::ranges::equal(history.value(), page.rows, {}, &HistoryRow::commit, &HistoryRow::commit)) {
        graphLanes = page.laneCount;
        history = std::move(page.rows);
    }
    hasMoreHistory = page.hasMore;
    if (wanted)
        selectWanted(*wanted);
    else if (!keepsSelection)
        window_.followCommit(std::nullopt);
    // Without commits, and before the first status, no history was read.
    if (wanted_ && !wanted && snapshot_.mayHaveCommits())
        missWanted();
    if (arrived)
        arrived(std::nullopt);
}

void History::loadMoreHistory()
{
    if (!hasMoreHistory.value())
        return;
    hasMoreHistory = false; // so that the view asks only once
    limit_ += pageSize;
    launch(reload());
}

void History::search(const QString& text, HistoryFilter::Field field)
{
    const bool wasFiltered = filter().has_value();
    historySearch = text;
    historySearchField = field;
    isSearching = filter() != shownFilter_;
    typingPause_.reset();
    if (const auto& selected = window_.selectedCommit.value(); selected && wasFiltered && !filter())
        launch(endingSearch(*selected, beginWish()));
    else
        typingPause_ = git_.worker().after(typingPause, [this] { reloadFirstPage(); });
}

void History::reloadFirstPage()
{
    limit_ = pageSize;
    launch(reload());
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
    const std::vector<HistoryRow>& page = history.value();
    if (page.empty())
        return;
    std::ptrdiff_t target = 0;
    if (const std::optional<std::string>& commit = window_.selectedCommit.value()) {
        const auto selected = std::ranges::find(page, *commit, &HistoryRow::id);
        if (selected != page.end()) {
            const auto last = static_cast<std::ptrdiff_t>(page.size()) - 1;
            target = std::clamp<std::ptrdiff_t>(selected - page.begin() + rows, 0, last);
        }
    }
    window_.selectCommit(page[static_cast<std::size_t>(target)].commit.hash, WindowState::Step::passing);
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
    }
    if (item.isRef())
        showTipOfRef();
    if (!isLoaded)
        launch(reload());
}

// Jumping to a commit.

qint64 History::beginWish()
{
    wanted_.reset();
    patience_.reset();
    lookup = std::nullopt;
    window_.clearNotice();
    return ++wish_;
}

bool History::isOnPage(const SidebarItem& item, const std::string& hash) const
{
    return item == scope_ && shownScope_ == scope_ && holds(history.value(), hash);
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
        found = co_await git_.read(findCommit, std::move(search));
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
    return git_.read(findCommit, CommitSearch{hash, {scopeOf(item)}});
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
    const int pages = (position + rowsBeyond) / pageSize + 1;
    limit_ = std::max(limit_, pages * pageSize);
    wanted_ = Wanted{hash, arrival};
    launch(reload());
}

void History::showTipOfRef()
{
    wanted_ = Wanted{};
    if (shownScope_ != scope_)
        return; // selected once the next history is loaded
    if (const auto tip = wantedOn(history.value(), isHistoryFiltered.value()))
        selectWanted(*tip);
}

std::optional<std::string> History::wantedOn(const std::vector<HistoryRow>& page, bool filtered) const
{
    if (!wanted_ || page.empty())
        return std::nullopt;
    // The first commit that a search has found need not be the tip of the ref.
    if (!wanted_->hash)
        return filtered ? std::nullopt : std::optional(page.front().commit.hash);
    return holds(page, *wanted_->hash) ? wanted_->hash : std::nullopt;
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

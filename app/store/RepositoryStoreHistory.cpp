// SPDX-License-Identifier: GPL-3.0-or-later
// Loading, growing and searching the history page.

#include "app/store/RepositoryStore.h"
#include "app/store/Secrets.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds typingPause{300};

bool isBlank(QChar character) { return character == u'\t' || character.category() == QChar::Separator_Space; }

QString trimmedOfBlanks(const QString& text)
{
    const auto begin = std::find_if_not(text.begin(), text.end(), isBlank);
    const auto end = std::find_if_not(text.rbegin(), std::make_reverse_iterator(begin), isBlank).base();
    return QString(begin, end - begin);
}

bool showsCommitsOf(const std::vector<HistoryRow>& shown, const std::vector<HistoryRow>& page)
{
    return std::ranges::equal(shown, page, {}, &HistoryRow::commit, &HistoryRow::commit);
}

} // namespace

std::optional<gitkit::HistoryFilter> RepositoryStore::historyFilter() const
{
    const QString text = trimmedOfBlanks(historySearch.value());
    if (text.isEmpty())
        return std::nullopt;
    return gitkit::HistoryFilter{historySearchField.value(), text.toStdString()};
}

QCoro::Task<> RepositoryStore::reloadHistory()
{
    const qint64 token = ++historyToken_;
    HistoryRequest request{gitkit::HistoryScope::all(), historyLimit_, historyFilter()};
    if (historyScopeItem_.isRef())
        request.scope = gitkit::HistoryScope::of(historyScopeItem_.refName);
    const bool filtered = request.filter.has_value();

    HistoryPage page;
    QString problem;
    // Before the first commit there is nothing to ask git for.
    if (status.value().hasCommits()) {
        try {
            page = co_await runFunction(readHistoryPage, std::move(request));
        } catch (const std::exception& failure) {
            problem = withoutSecrets(QString::fromUtf8(failure.what()));
        }
    }
    if (token != historyToken_)
        co_return; // a newer load has begun, and only the newest may write
    historyProblem = problem;
    applyHistory(std::move(page), filtered);
}

void RepositoryStore::applyHistory(HistoryPage page, bool filtered)
{
    const QScopedValueRollback following(isFollowing_, true);
    const std::optional<std::string> wanted = wantedOnPage(page.rows, filtered);
    const bool keepsSelection = selectedCommit.value() && std::ranges::any_of(page.rows, [this](const HistoryRow& row) {
                                    return row.commit.hash == *selectedCommit.value();
                                });
    // What the rows are drawn with goes first, so that a view that redraws on `history` finds it in place.
    isHistoryFiltered = filtered;
    shownScopeItem_ = historyScopeItem_;
    if (!showsCommitsOf(history.value(), page.rows)) {
        graphLanes = page.laneCount;
        history = std::move(page.rows);
    }
    hasMoreHistory = page.hasMore;
    if (wanted)
        selectWanted(*wanted);
    else if (!keepsSelection)
        selectedCommit = std::nullopt;
    // Before the first status nothing was read.
    if (wanted_ && !wanted && status.value().hasCommits())
        missWanted();
    fillPlace();
}

void RepositoryStore::loadMoreHistory()
{
    if (!hasMoreHistory.value())
        return;
    hasMoreHistory = false; // the end of the list asks once
    historyLimit_ += pageSize;
    launch(reloadHistory());
}

void RepositoryStore::historySearchChanged()
{
    historySearchDelay_.reset();
    historySearchDelay_ = worker_.after(typingPause, [this] {
        historyLimit_ = pageSize;
        launch(reloadHistory());
    });
}

void RepositoryStore::moveCommitSelection(int rows)
{
    const std::vector<HistoryRow>& page = history.value();
    if (page.empty())
        return;
    std::ptrdiff_t target = 0;
    if (selectedCommit.value()) {
        const auto selected = std::ranges::find(page, *selectedCommit.value(), &HistoryRow::id);
        if (selected != page.end()) {
            const auto last = static_cast<std::ptrdiff_t>(page.size()) - 1;
            target = std::clamp<std::ptrdiff_t>(selected - page.begin() + rows, 0, last);
        }
    }
    walkToCommit(page[static_cast<std::size_t>(target)].commit.hash);
}

} // namespace plovik

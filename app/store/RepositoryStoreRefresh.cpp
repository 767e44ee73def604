// SPDX-License-Identifier: GPL-3.0-or-later
// Reading the repository again.

#include "app/store/RepositoryStore.h"
#include "app/store/Secrets.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace plovik {

void RepositoryStore::refresh(RefreshScope scope)
{
    if (!isRefreshing_) {
        isRefreshing_ = true;
        launch(refreshLoop(scope));
        return;
    }
    if (!pendingRefresh_ || scope == RefreshScope::full)
        pendingRefresh_ = scope;
}

QCoro::Task<> RepositoryStore::refreshLoop(RefreshScope scope)
{
    co_await performRefresh(scope);
    while (const std::optional<RefreshScope> next = std::exchange(pendingRefresh_, std::nullopt))
        co_await performRefresh(*next);
    isRefreshing_ = false;
}

QCoro::Task<> RepositoryStore::performRefresh(RefreshScope scope)
{
    co_await readStatus();
    if (scope == RefreshScope::full) {
        listingProblem_.clear();
        co_await readRefs();
        co_await readRemotes();
        co_await readStashes();
        dropStaleSelection();
        co_await reloadHistory();
    }
    readProblem = statusProblem_.isEmpty() ? listingProblem_ : statusProblem_;
    if (scope == RefreshScope::full)
        hasLoaded = true;
}

QCoro::Task<> RepositoryStore::readStatus()
{
    const qint64 writesBefore = finishedWrites_;
    try {
        RepositoryState read = co_await runFunction(
            readRepositoryState, RepositoryStateRequest{gitDirectory_, inProgress.value(), preparedBytes_});
        statusProblem_ = withoutSecrets(QString::fromStdString(read.problem));
        if (read.status)
            applyStatus(std::move(*read.status));
        applyOperation(read);
    } catch (const std::exception& failure) {
        statusProblem_ = withoutSecrets(QString::fromUtf8(failure.what()));
    }
    // A read that began before a write ended does not know of it; the one that the write asked for does.
    if (writesBefore == finishedWrites_)
        forgetShownStaging();
}

void RepositoryStore::applyStatus(gitkit::RepoStatus read)
{
    std::set<std::string> stillChanged;
    for (const gitkit::FileChange& file : read.files) {
        if (selectedPaths.value().contains(file.path))
            stillChanged.insert(file.path);
    }
    status = std::move(read);
    selectedPaths = std::move(stillChanged);
    generation = generation.value() + 1;
}

QCoro::Task<> RepositoryStore::readRefs()
{
    try {
        std::vector<gitkit::GitRef> refs = co_await run(&gitkit::GitRepository::refs);
        std::vector<gitkit::GitRef> byKind[3];
        for (gitkit::GitRef& ref : refs)
            byKind[static_cast<std::size_t>(ref.kind)].push_back(std::move(ref));
        branches = std::move(byKind[0]);
        remoteBranches = std::move(byKind[1]);
        tags = std::move(byKind[2]);
    } catch (const std::exception& failure) {
        noteListingProblem(failure);
    }
}

QCoro::Task<> RepositoryStore::readRemotes()
{
    try {
        remotes = co_await run(&gitkit::GitRepository::remotes);
    } catch (const std::exception& failure) {
        noteListingProblem(failure);
    }
}

QCoro::Task<> RepositoryStore::readStashes()
{
    try {
        stashes = co_await run(&gitkit::GitRepository::stashes);
    } catch (const std::exception& failure) {
        noteListingProblem(failure);
    }
}

void RepositoryStore::noteListingProblem(const std::exception& failure)
{
    if (listingProblem_.isEmpty())
        listingProblem_ = withoutSecrets(QString::fromUtf8(failure.what()));
}

bool RepositoryStore::hasRef(const std::string& fullName) const
{
    const auto holds = [&fullName](const std::vector<gitkit::GitRef>& refs) {
        return std::ranges::find(refs, fullName, &gitkit::GitRef::fullName) != refs.end();
    };
    return holds(branches.value()) || holds(remoteBranches.value()) || holds(tags.value());
}

void RepositoryStore::dropStaleSelection()
{
    const QScopedValueRollback following(isFollowing_, true);
    if (selection.value().isRef() && !hasRef(selection.value().refName))
        selection = SidebarItem::history();
    // The page of a ref that is gone would only fail; the reload that follows takes all of history.
    if (historyScopeItem_.isRef() && !hasRef(historyScopeItem_.refName)) {
        historyScopeItem_ = SidebarItem::history();
        historyLimit_ = pageSize;
    }

    const std::vector<gitkit::Stash>& all = stashes.value();
    if (selectedStash.value() && std::ranges::find(all, *selectedStash.value(), &gitkit::Stash::hash) != all.end())
        return;
    selectedStash = all.empty() ? std::nullopt : std::optional(all.front().hash);
}

void RepositoryStore::selectionChanged()
{
    const SidebarItem& item = selection.value();
    if (!item.showsHistory())
        return;
    const bool isLoaded = item == historyScopeItem_;
    if (!isLoaded) {
        historyScopeItem_ = item;
        historyLimit_ = pageSize;
    }
    if (item.isRef())
        showTipOfRef();
    if (!isLoaded)
        launch(reloadHistory());
}

} // namespace plovik

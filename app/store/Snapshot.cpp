// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Snapshot.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/RefListing.h"
#include "app/store/Failure.h"
#include "app/store/ShownText.h"
#include "app/store/WindowState.h"
#include "app/store/readers/RepositoryState.h"

#include <algorithm>
#include <array>
#include <utility>

namespace plovik {

using gitkit::GitRef;
using gitkit::GitRepository;

namespace {

struct RefsByKind {
    std::array<std::vector<GitRef>, 3> lists;
    std::string replacements;
};

RefsByKind readRefsByKind(const GitRepository& repo)
{
    gitkit::RefListing listing = gitkit::listRefs(repo);
    RefsByKind read{.lists = {}, .replacements = std::move(listing.replacements)};
    for (GitRef& ref : listing.refs)
        read.lists[static_cast<std::size_t>(ref.kind)].push_back(std::move(ref));
    return read;
}

} // namespace

Snapshot::Snapshot(const GitAccess& git, WindowState& window) : git_(git), window_(window) {}

QString Snapshot::headDescription() const
{
    const gitkit::RepoStatus& now = status.value();
    if (now.branch)
        return shownText(*now.branch);
    if (now.oid)
        return tr("HEAD detached at %1").arg(shownText(gitkit::shortHash(*now.oid)));
    return {};
}

bool Snapshot::mayHaveCommits() const
{
    return status.value().hasCommits() || !branches.value().empty() || !remoteBranches.value().empty() ||
           !tags.value().empty() || (generation.value() == 0 && !statusProblem_.isEmpty());
}

bool Snapshot::hasRef(const std::string& fullName) const
{
    return std::ranges::any_of(std::array{&branches, &remoteBranches, &tags}, [&fullName](const auto* refs) {
        return std::ranges::find(refs->value(), fullName, &GitRef::fullName) != refs->value().end();
    });
}

bool Snapshot::hasStash(const std::string& hash) const
{
    return std::ranges::find(stashes.value(), hash, &gitkit::Stash::hash) != stashes.value().end();
}

void Snapshot::refresh(RefreshScope scope)
{
    if (!isRefreshing_) {
        isRefreshing_ = true;
        launch(refreshing(scope));
        return;
    }
    if (!pending_ || scope == RefreshScope::full)
        pending_ = scope;
}

QCoro::Task<> Snapshot::refreshing(RefreshScope scope)
{
    co_await reading(scope);
    while (const std::optional<RefreshScope> next = std::exchange(pending_, std::nullopt))
        co_await reading(*next);
    isRefreshing_ = false;
}

QCoro::Task<> Snapshot::reading(RefreshScope scope)
{
    if (scope == RefreshScope::full)
        co_await readAll();
    else
        co_await readStatus();
    readProblem = statusProblem_.isEmpty() ? listingProblem_ : statusProblem_;
    if (scope == RefreshScope::full)
        hasLoaded = true;
}

/// All reads begin at once, because none needs what another one finds.
QCoro::Task<> Snapshot::readAll()
{
    for (const Follower& follower : followers_) {
        if (follower.beforeListings)
            follower.beforeListings();
    }
    listingProblem_.clear();
    std::array<QCoro::Task<>, 4> reads{readStatus(), readRefs(), readRemotes(), readStashes()};
    for (QCoro::Task<>& read : reads)
        co_await read;
    dropStaleSelection();
    for (std::size_t index = 0; index < followers_.size(); ++index) {
        if (followers_[index].afterListings)
            co_await followers_[index].afterListings();
    }
}

QCoro::Task<> Snapshot::readStatus()
{
    for (const Follower& follower : followers_) {
        if (follower.beforeStatus)
            follower.beforeStatus();
    }
    try {
        RepositoryState read =
            co_await git_.read(readRepositoryState, RepositoryStateRequest{status.value().files, gitDirectory_,
                                                                           inProgress.value(), preparedMessage_});
        statusProblem_ = read.problem;
        if (read.status)
            applyStatus(std::move(*read.status));
        applyOperation(read);
    } catch (const std::exception& thrown) {
        statusProblem_ = failureOf(thrown).message;
    }
    for (const Follower& follower : followers_) {
        if (follower.afterStatus)
            follower.afterStatus();
    }
}

void Snapshot::applyStatus(gitkit::RepoStatus read)
{
    const bool hasSamePaths = read.files.arrangement() == status.value().files.arrangement();
    status = std::move(read);
    if (!hasSamePaths)
        dropGonePaths();
    generation = generation.value() + 1;
}

void Snapshot::dropGonePaths()
{
    const gitkit::ChangedFiles& files = status.value().files;
    const auto isGone = [&files](const std::string& path) { return !files.find(path); };
    if (std::ranges::none_of(window_.selectedPaths.value(), isGone))
        return;
    std::set<std::string> left = window_.selectedPaths.value();
    std::erase_if(left, isGone);
    window_.selectPaths(std::move(left));
}

void Snapshot::applyOperation(const RepositoryState& read)
{
    gitDirectory_ = read.gitDirectory ? read.gitDirectory : gitDirectory_;
    inProgress = read.operation;
    preparedMessage_ = read.preparedMessage;
    for (const Follower& follower : followers_) {
        if (follower.operationRead)
            follower.operationRead(read);
    }
}

QCoro::Task<> Snapshot::readRefs()
{
    try {
        RefsByKind read = co_await git_.read(&readRefsByKind);
        replacements_ = std::move(read.replacements);
        // All three are there before anyone is told of one of them, so that who shows them needs to look only once.
        Qt::beginPropertyUpdateGroup();
        branches = std::move(read.lists[0]);
        remoteBranches = std::move(read.lists[1]);
        tags = std::move(read.lists[2]);
        Qt::endPropertyUpdateGroup();
    } catch (const std::exception& thrown) {
        noteListingProblem(thrown);
        co_return;
    }
    for (const Follower& follower : followers_) {
        if (follower.refsRead)
            follower.refsRead();
    }
}

QCoro::Task<> Snapshot::readRemotes()
{
    try {
        remotes = co_await git_.read(&GitRepository::remotes);
    } catch (const std::exception& thrown) {
        noteListingProblem(thrown);
    }
}

QCoro::Task<> Snapshot::readStashes()
{
    try {
        stashes = co_await git_.read(&GitRepository::stashes);
    } catch (const std::exception& thrown) {
        noteListingProblem(thrown);
    }
}

void Snapshot::noteListingProblem(const std::exception& thrown)
{
    if (listingProblem_.isEmpty())
        listingProblem_ = failureOf(thrown).message;
}

void Snapshot::dropStaleSelection()
{
    const SidebarItem& selected = window_.selection.value();
    if (selected.isRef() && !hasRef(selected.refName))
        window_.follow(SidebarItem::history());
    const std::optional<std::string>& stash = window_.selectedStash.value();
    if (stash && hasStash(*stash))
        return;
    const std::vector<gitkit::Stash>& all = stashes.value();
    window_.followStash(all.empty() ? std::nullopt : std::optional(all.front().hash));
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
// What the user does to branches, tags, stashes and remotes.

#include "app/store/RepositoryStore.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <algorithm>
#include <utility>

namespace plovik {

using gitkit::GitRef;
using gitkit::GitRepository;

namespace {

/// "Deleting branch…" and the like; `what` is shown between the two.
QString activityText(const QString& verb, const QString& what = {})
{
    return (what.isEmpty() ? verb : verb + u' ' + what) + u'…';
}

QString quoted(const QString& text) { return u'“' + text + u'”'; }

/// The name that a remote branch's local counterpart has: without the remote's own.
std::string localNameOf(const std::string& remoteBranch, const std::vector<std::string>& remotes)
{
    for (const std::string& remote : remotes) {
        if (remoteBranch.starts_with(remote + '/'))
            return remoteBranch.substr(remote.size() + 1);
    }
    return remoteBranch;
}

} // namespace

BlockingCall<void> RepositoryStore::runOperation(Worker::Lane lane, gitkit::RunContext context,
                                                 Operation operation) const
{
    return BlockingCall<void>(
        worker_, lane, alive_,
        [repo = repo_.in(std::move(context)), operation = std::move(operation)] { operation(repo); });
}

/// Listens to an action's runs. Progress comes from their threads, and may come after the store.
std::shared_ptr<ActionRuns> RepositoryStore::actionRuns()
{
    return std::make_shared<ActionRuns>(log_, [this, alive = std::weak_ptr(alive_)](const std::string& line) {
        QCoreApplication* const application = QCoreApplication::instance();
        if (!application)
            return;
        const auto show = [this, alive, text = shownText(line)] {
            if (!alive.expired())
                showProgress(text);
        };
        QMetaObject::invokeMethod(application, show, Qt::QueuedConnection);
    });
}

void RepositoryStore::showProgress(const QString& line)
{
    if (activity.value())
        progress = line;
}

void RepositoryStore::fail(const QString& message, std::optional<CommandLog::Number> command)
{
    failedCommand = command;
    errorMessage = std::optional(withoutSecrets(message));
}

void RepositoryStore::cancelActivity()
{
    if (!activity.value() || isCancelling.value())
        return;
    isCancelling = true;
    acting_.request_stop();
    signIns_.refuse(actingSignIn_);
}

void RepositoryStore::cancelPrompt(quint64 id)
{
    const std::optional<SignIns::Cancelled> cancelled = signIns_.cancel(id);
    // Whoever waits for a security key does not hear that nobody will touch it.
    if (cancelled && cancelled->kind == SignInKind::notice && cancelled->number == actingSignIn_)
        cancelActivity();
}

void RepositoryStore::perform(Action action)
{
    if (activity.value())
        return;
    acting_ = std::stop_source();
    activity = std::optional(action.title);
    launch(performing(std::move(action)));
}

QCoro::Task<> RepositoryStore::performing(Action action)
{
    std::optional<QString> problem;
    gitkit::ErrorKind kind = gitkit::ErrorKind::other;
    const std::shared_ptr<ActionRuns> runs = actionRuns();
    gitkit::RunContext context{.listener = runs, .stop = acting_.get_token()};
    const SignIns::Number signIn = actingSignIn_ = signIns_.begin(action.title, services_.signIn, context);
    try {
        // The network must not hold up staging; what it changes of the index, git's own lock keeps apart.
        std::optional<Turnstile::Pass> pass;
        if (action.lane == Worker::Lane::local)
            pass.emplace(co_await writing_.enter());
        co_await runOperation(action.lane, context, action.operation);
    } catch (const std::exception& failure) {
        problem = QString::fromUtf8(failure.what());
        kind = gitkit::errorKindOf(failure);
    }
    signIns_.end(signIn);
    // Whatever failed after the user had enough of it is no news; the log has it.
    const bool isStopped = problem && context.stop.stop_requested();
    activity = std::nullopt;
    progress = QString();
    isCancelling = false;
    if (!problem && action.succeeded)
        action.succeeded();
    if (problem && !isStopped && !(action.failed && action.failed(*problem, kind)))
        fail(*problem, runs->failed());
    refresh(RefreshScope::full);
}

void RepositoryStore::fetch()
{
    perform({activityText(QStringLiteral("Fetching")), [](const GitRepository& repo) { repo.fetch(); },
             Worker::Lane::network});
}

void RepositoryStore::pull()
{
    perform({activityText(QStringLiteral("Pulling")), [](const GitRepository& repo) { repo.pull(); },
             Worker::Lane::network});
}

void RepositoryStore::push()
{
    const gitkit::RepoStatus& now = status.value();
    if (!now.branch) {
        fail(QStringLiteral("Cannot push: HEAD is detached. Check out a branch first."));
        return;
    }
    std::optional<std::string> upstreamRemote;
    if (!now.upstream) {
        const std::vector<std::string>& all = remotes.value();
        if (all.empty()) {
            fail(QStringLiteral("Cannot push: this repository has no remote."));
            return;
        }
        upstreamRemote = std::ranges::find(all, "origin") != all.end() ? "origin" : all.front();
    }
    perform({activityText(QStringLiteral("Pushing")),
             [branch = *now.branch, upstreamRemote](const GitRepository& repo) { repo.push(branch, upstreamRemote); },
             Worker::Lane::network});
}

void RepositoryStore::checkout(const GitRef& ref)
{
    const QString verb = QStringLiteral("Checking out");
    if (ref.kind != GitRef::Kind::remote) {
        perform({activityText(verb, shownText(ref.name)),
                 [name = ref.fullName](const GitRepository& repo) { repo.checkout(name); }});
        return;
    }
    const std::string local = localNameOf(ref.name, remotes.value());
    const bool exists = std::ranges::find(branches.value(), local, &GitRef::name) != branches.value().end();
    perform({activityText(verb, shownText(local)), [local, exists, remote = ref.fullName](const GitRepository& repo) {
                 if (exists)
                     repo.checkout("refs/heads/" + local);
                 else
                     repo.checkoutTracking(remote, local);
             }});
}

void RepositoryStore::checkoutCommit(const std::string& hash)
{
    perform({activityText(QStringLiteral("Checking out"), shownText(std::string(gitkit::shortHash(hash)))),
             [hash](const GitRepository& repo) { repo.checkout(hash); }});
}

void RepositoryStore::createBranch(const std::string& name, const std::optional<std::string>& startPoint,
                                   gitkit::AfterCreating after)
{
    perform({activityText(QStringLiteral("Creating branch")),
             [=](const GitRepository& repo) { repo.createBranch(name, startPoint, after); }});
}

void RepositoryStore::createTag(const std::string& name, const std::string& target)
{
    perform({activityText(QStringLiteral("Creating tag")),
             [=](const GitRepository& repo) { repo.createTag(name, target); }});
}

void RepositoryStore::confirmDelete(const GitRef& ref)
{
    const QString name = shownText(ref.name);
    Confirmation question;
    question.actionTitle = QStringLiteral("Delete");
    switch (ref.kind) {
    case GitRef::Kind::local:
        question.title = QStringLiteral("Delete branch %1?").arg(quoted(name));
        question.message = QStringLiteral("The branch is only deleted if it is fully merged.");
        question.action = [this, branch = ref.name, name] { deleteBranch(branch, name); };
        break;
    case GitRef::Kind::tag:
        question.title = QStringLiteral("Delete tag %1?").arg(quoted(name));
        question.message = QStringLiteral("The tag is deleted locally. Remotes are not touched.");
        question.action = [this, tag = ref.name] {
            perform({activityText(QStringLiteral("Deleting tag")),
                     [tag](const GitRepository& repo) { repo.deleteTag(tag); }});
        };
        break;
    case GitRef::Kind::remote:
        return;
    }
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::deleteBranch(const std::string& branch, const QString& name)
{
    Action action{activityText(QStringLiteral("Deleting branch")),
                  [branch](const GitRepository& repo) { repo.deleteBranch(branch, gitkit::Deletion::ifMerged); }};
    action.failed = [this, branch, name](const QString&, gitkit::ErrorKind kind) {
        if (kind != gitkit::ErrorKind::notFullyMerged)
            return false;
        confirmForceDelete(branch, name);
        return true;
    };
    perform(std::move(action));
}

void RepositoryStore::confirmForceDelete(const std::string& branch, const QString& name)
{
    Confirmation question;
    question.title = QStringLiteral("%1 is not fully merged").arg(quoted(name));
    question.message = QStringLiteral("Deleting it anyway may lose commits that exist only on this branch.");
    question.actionTitle = QStringLiteral("Force Delete");
    question.action = [this, branch] {
        perform({activityText(QStringLiteral("Deleting branch")),
                 [branch](const GitRepository& repo) { repo.deleteBranch(branch, gitkit::Deletion::force); }});
    };
    confirmation = std::optional(std::move(question));
}

void RepositoryStore::merge(const GitRef& ref)
{
    perform({activityText(QStringLiteral("Merging"), shownText(ref.name)),
             [name = ref.fullName](const GitRepository& repo) { repo.merge(name); }});
}

void RepositoryStore::cherryPick(const std::string& hash)
{
    perform(
        {activityText(QStringLiteral("Cherry-picking")), [hash](const GitRepository& repo) { repo.cherryPick(hash); }});
}

void RepositoryStore::revert(const std::string& hash)
{
    perform({activityText(QStringLiteral("Reverting")), [hash](const GitRepository& repo) { repo.revert(hash); }});
}

void RepositoryStore::stashSave(const QString& message, gitkit::UntrackedFiles untracked)
{
    perform(
        {activityText(QStringLiteral("Stashing")),
         [text = message.toStdString(), untracked](const GitRepository& repo) { repo.stashSave(text, untracked); }});
}

void RepositoryStore::stashApply(const gitkit::Stash& stash, gitkit::StashUse use)
{
    const bool pops = use == gitkit::StashUse::pop;
    perform({activityText(pops ? QStringLiteral("Popping stash") : QStringLiteral("Applying stash")),
             [stash, use](const GitRepository& repo) { repo.stashApply(stash, use); }});
}

void RepositoryStore::confirmDrop(const gitkit::Stash& stash)
{
    Confirmation question;
    question.title = QStringLiteral("Drop %1?").arg(shownText(stash.ref));
    question.message =
        QStringLiteral("%1 is deleted and cannot easily be recovered.").arg(quoted(shownText(stash.message)));
    question.actionTitle = QStringLiteral("Drop");
    question.action = [this, stash] {
        perform({activityText(QStringLiteral("Dropping stash")),
                 [stash](const GitRepository& repo) { repo.stashDrop(stash); }});
    };
    confirmation = std::optional(std::move(question));
}

StoreServices::Files RepositoryStore::absolutePaths(const Files& files) const
{
    StoreServices::Files paths;
    for (const gitkit::FileChange& file : files)
        paths.push_back(root() / file.path);
    return paths;
}

StoreServices::Failed RepositoryStore::failing()
{
    return [this, alive = std::weak_ptr(alive_)](const std::string& problem) {
        if (!alive.expired())
            fail(shownText(problem));
    };
}

void RepositoryStore::reveal(const Files& files)
{
    if (services_.reveal)
        services_.reveal(absolutePaths(files), failing());
}

void RepositoryStore::openInEditor(const Files& files)
{
    if (services_.openInEditor)
        services_.openInEditor(absolutePaths(files), failing());
}

} // namespace plovik

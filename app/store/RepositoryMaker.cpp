// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryMaker.h"

#include "GitKit/repository/Cloning.h"
#include "GitKit/runner/RunContext.h"
#include "app/store/ActionRuns.h"
#include "app/store/FailureWays.h"
#include "app/store/GitAccess.h"
#include "app/store/Secrets.h"
#include "app/store/ShownText.h"

#include <QCoreApplication>
#include <QMetaObject>

#include <memory>
#include <utility>

namespace plovik {

namespace {

struct MakerTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::RepositoryMaker)
};

} // namespace

RepositoryMaker::RepositoryMaker(Worker& worker, OpenSignIn signIn) : worker_(worker), openSignIn_(std::move(signIn)) {}

RepositoryMaker::~RepositoryMaker()
{
    cancel();
    alive_.reset();
}

std::string RepositoryMaker::folderNameOf(const std::string& address) { return gitkit::folderNameOf(address); }

void RepositoryMaker::askFirstBranch(std::function<void(const std::string& name)> known)
{
    launch(askingFirstBranch(std::move(known)));
}

QCoro::Task<> RepositoryMaker::askingFirstBranch(std::function<void(const std::string& name)> known)
{
    std::string name;
    try {
        name = co_await BlockingCall<std::string>(worker_, Worker::Lane::shortRead, alive_,
                                                  [] { return gitkit::firstBranchName({}); });
    } catch (const std::exception&) { // as without git, which making the repository will say
        co_return;
    }
    known(name);
}

void RepositoryMaker::clone(gitkit::CloneRequest request, Made made)
{
    const std::filesystem::path folder = request.folder;
    launch(running(
        MakerTexts::tr("Cloning…"), folder,
        [request = std::move(request)](const gitkit::RunContext& context) {
            return gitkit::cloneRepository(request, context).problem;
        },
        std::move(made)));
}

void RepositoryMaker::create(std::filesystem::path folder, std::string branch, Made made)
{
    const auto work = [folder, branch = std::move(branch)](const gitkit::RunContext& context) {
        gitkit::createRepository(folder, branch, context);
        return std::string();
    };
    launch(running(MakerTexts::tr("Making the repository…"), folder, work, std::move(made)));
}

QCoro::Task<> RepositoryMaker::running(QString title, std::filesystem::path folder, Work work, Made made)
{
    stop_ = std::stop_source();
    gitkit::RunContext context{.listener = listener(), .stop = stop_.get_token()};
    signIn_ = signIns_.begin(title, openSignIn_, context);
    failure = std::nullopt;
    progress = QString();
    isRunning = true;
    std::string problem;
    std::optional<Failure> failed;
    try {
        problem = co_await BlockingCall<std::string>(
            worker_, Worker::Lane::network, alive_,
            [context, work = std::move(work), token = GitAccess::underWay()] { return work(context); });
    } catch (const std::exception& thrown) {
        failed = toldFirst(failureOf(thrown));
    }
    signIns_.end(signIn_);
    const bool isCancelled = std::exchange(stop_, std::stop_source()).stop_requested();
    isCancelling = false;
    isRunning = false;
    if (!failed)
        made(folder, withStandIns(withoutSecrets(exactText(problem))));
    else if (!isCancelled)
        failure = std::move(failed);
}

/// Progress is told on the threads of the runs, possibly after this was destroyed.
std::shared_ptr<gitkit::RunListener> RepositoryMaker::listener()
{
    const auto tell = [this, alive = std::weak_ptr(alive_)](const std::string& line) {
        const auto show = [this, alive, text = shownText(line)] {
            if (!alive.expired())
                progress = text;
        };
        if (QCoreApplication* const application = QCoreApplication::instance())
            QMetaObject::invokeMethod(application, show, Qt::QueuedConnection);
    };
    return std::make_shared<ActionRuns>(log_.listener(), tell);
}

void RepositoryMaker::cancel()
{
    if (!isRunning.value())
        return;
    stop_.request_stop();
    isCancelling = true;
    signIns_.refuse(signIn_);
}

void RepositoryMaker::cancelPrompt(quint64 id)
{
    const std::optional<SignIns::Cancelled> cancelled = signIns_.cancel(id);
    // A program that waits for a security key does not notice that its question was refused.
    if (cancelled && cancelled->kind == SignInKind::notice)
        cancel();
}

} // namespace plovik

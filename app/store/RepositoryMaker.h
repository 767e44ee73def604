// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CloneRequest.h"
#include "app/await/Await.h"
#include "app/await/Worker.h"
#include "app/store/CommandLog.h"
#include "app/store/Failure.h"
#include "app/store/Observed.h"
#include "app/store/SignIns.h"

#include <QCoroTask>
#include <QString>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>

namespace gitkit {
class RunListener;
struct RunContext;
} // namespace gitkit

namespace plovik {

/// Clones or makes a repository, which has no store before it is there. One at a time; owned by the dialog that shows it.
/// When it is destroyed, git is ended, and what it has begun is removed; the process must stay for that as long as
/// GitAccess::areChangesUnderWay(). Main thread.
class RepositoryMaker {
public:
    /// Is called with the repository's folder, and with a sentence on what could not be brought, or an empty one.
    using Made = std::function<void(const std::filesystem::path& folder, const QString& problem)>;

    RepositoryMaker(Worker& worker, OpenSignIn signIn);
    ~RepositoryMaker();
    RepositoryMaker(const RepositoryMaker&) = delete;
    RepositoryMaker& operator=(const RepositoryMaker&) = delete;

    Observed<bool, RepositoryMaker> isRunning{false};
    Observed<bool, RepositoryMaker> isCancelling{false};
    Observed<QString, RepositoryMaker> progress; ///< git's own line; empty while it says nothing
    /// Why it was not made; nullopt when nothing has failed or it was cancelled.
    Observed<std::optional<Failure>, RepositoryMaker> failure;
    const Observed<std::optional<SignInPrompt>, SignIns>& prompt() const { return signIns_.prompt; }

    /// Returns the name of the folder into which git would clone from an address; empty when the address names none.
    static std::string folderNameOf(const std::string& address);
    /// Calls `known` with the name that the user's configuration gives to a first branch, soon.
    void askFirstBranch(std::function<void(const std::string& name)> known);

    void clone(gitkit::CloneRequest request, Made made);
    void create(std::filesystem::path folder, std::string branch, Made made);
    void cancel();

    void answerPrompt(quint64 id, const QString& text) { signIns_.answer(id, text); }
    void cancelPrompt(quint64 id);

private:
    /// Makes it, blocking, and returns what git says of what it could not bring.
    using Work = std::function<std::string(const gitkit::RunContext& context)>;

    QCoro::Task<> running(QString title, std::filesystem::path folder, Work work, Made made);
    QCoro::Task<> askingFirstBranch(std::function<void(const std::string& name)> known);
    std::shared_ptr<gitkit::RunListener> listener();

    Worker& worker_;
    OpenSignIn openSignIn_;
    CommandLog log_; ///< which the listener to progress needs
    SignIns signIns_;
    SignIns::Number signIn_ = 0;
    std::stop_source stop_;
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/instance/SingleInstance.h"

#include "GitKit/runner/GitEnvironment.h"

#include <QCoreApplication>

#include <utility>

namespace plovik {

namespace {

constexpr const char* tokenVariable = "XDG_ACTIVATION_TOKEN";
constexpr const char* startupIdVariable = "DESKTOP_STARTUP_ID";

std::vector<std::unique_ptr<LaunchMeeting>> usualMeetings()
{
    std::vector<std::unique_ptr<LaunchMeeting>> meetings;
    meetings.push_back(meetingOnBus());
    meetings.push_back(meetingOnSocket());
    return meetings;
}

/// Makes the folders absolute, since the running application has another working folder.
std::vector<std::filesystem::path> absolute(std::vector<std::filesystem::path> folders)
{
    std::error_code ignored;
    for (auto& folder : folders)
        folder = std::filesystem::absolute(folder, ignored);
    return folders;
}

} // namespace

ActivationToken ActivationToken::current()
{
    return {qgetenv(tokenVariable).toStdString(), qgetenv(startupIdVariable).toStdString()};
}

void ActivationToken::lend(const std::function<void()>& show) const
{
    gitkit::setApplicationVariable(tokenVariable, token);
    gitkit::setApplicationVariable(startupIdVariable, startupId);
    show();
    gitkit::setApplicationVariable(tokenVariable, {});
    gitkit::setApplicationVariable(startupIdVariable, {});
}

SingleInstance::SingleInstance() : SingleInstance(usualMeetings()) {}

SingleInstance::SingleInstance(std::vector<std::unique_ptr<LaunchMeeting>> meetings) : meetings_(std::move(meetings)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::handOver(const std::vector<std::filesystem::path>& folders, std::chrono::milliseconds timeout)
{
    return handOver({.kind = folders.empty() ? LaunchRequest::Kind::activate : LaunchRequest::Kind::open,
                     .folders = absolute(folders)},
                    timeout);
}

bool SingleInstance::handOverAction(const LaunchAction& action, std::chrono::milliseconds timeout)
{
    return handOver({.kind = LaunchRequest::Kind::action, .action = action}, timeout);
}

bool SingleInstance::handOver(LaunchRequest request, std::chrono::milliseconds timeout)
{
    const ActivationToken given = ActivationToken::current();
    request.activationToken = given.token;
    request.startupId = given.startupId;
    for (const auto& meeting : meetings_) {
        const auto claim = meeting->claim([this](LaunchRequest received) { this->received(std::move(received)); });
        if (claim == LaunchMeeting::Claim::unavailable)
            continue;
        if (claim == LaunchMeeting::Claim::first)
            return false;
        if (meeting->hand(request, timeout))
            return true;
        problem_ = QCoreApplication::translate(
            "SingleInstance", "Plovik is already running but does not answer, so it was opened a second time.");
        return false;
    }
    return false;
}

void SingleInstance::listen(Callbacks callbacks)
{
    callbacks_ = std::move(callbacks);
    listening_ = true;
    for (LaunchRequest& request : std::exchange(waiting_, {}))
        received(std::move(request));
}

void SingleInstance::received(LaunchRequest request)
{
    if (!listening_) {
        waiting_.push_back(std::move(request));
        return;
    }
    // This is queued so that the other process has its answer before windows are made.
    QMetaObject::invokeMethod(
        &receiver_, [this, request = std::move(request)] { carryOut(request); }, Qt::QueuedConnection);
}

void SingleInstance::carryOut(const LaunchRequest& request)
{
    ActivationToken{request.activationToken, request.startupId}.lend([this, &request] { callBack(request); });
}

void SingleInstance::callBack(const LaunchRequest& request)
{
    switch (request.kind) {
    case LaunchRequest::Kind::activate:
        if (callbacks_.activate)
            callbacks_.activate();
        break;
    case LaunchRequest::Kind::open:
        if (callbacks_.open)
            callbacks_.open(request.folders);
        break;
    case LaunchRequest::Kind::action:
        if (callbacks_.action)
            callbacks_.action(request.action);
        break;
    }
}

} // namespace plovik

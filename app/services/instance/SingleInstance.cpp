// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/instance/SingleInstance.h"

#include <utility>

namespace plovik {

namespace {

constexpr const char* kToken = "XDG_ACTIVATION_TOKEN";
constexpr const char* kStartupId = "DESKTOP_STARTUP_ID";

std::vector<std::unique_ptr<LaunchMeeting>> usualMeetings()
{
    std::vector<std::unique_ptr<LaunchMeeting>> meetings;
    meetings.push_back(meetingOnBus());
    meetings.push_back(meetingOnSocket());
    return meetings;
}

/// Where the running application stands is not where this one was launched.
std::vector<std::filesystem::path> absolute(std::vector<std::filesystem::path> folders)
{
    std::error_code ignored;
    for (auto& folder : folders)
        folder = std::filesystem::absolute(folder, ignored);
    return folders;
}

void setEnvironment(const char* name, const std::string& value)
{
    if (value.empty())
        qunsetenv(name);
    else
        qputenv(name, QByteArray::fromStdString(value));
}

} // namespace

SingleInstance::SingleInstance() : SingleInstance(usualMeetings()) {}

SingleInstance::SingleInstance(std::vector<std::unique_ptr<LaunchMeeting>> meetings) : meetings_(std::move(meetings)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::handOver(const std::vector<std::filesystem::path>& folders, std::chrono::milliseconds timeout)
{
    return handOver({.kind = folders.empty() ? LaunchRequest::Kind::Activate : LaunchRequest::Kind::Open,
                     .folders = absolute(folders)},
                    timeout);
}

bool SingleInstance::handOverAction(const std::string& name, std::chrono::milliseconds timeout)
{
    return handOver({.kind = LaunchRequest::Kind::Action, .action = name}, timeout);
}

bool SingleInstance::handOver(LaunchRequest request, std::chrono::milliseconds timeout)
{
    request.activationToken = qgetenv(kToken).toStdString();
    request.startupId = qgetenv(kStartupId).toStdString();
    for (const auto& meeting : meetings_) {
        const auto claim = meeting->claim([this](LaunchRequest received) { this->received(std::move(received)); });
        if (claim == LaunchMeeting::Claim::Unavailable)
            continue;
        if (claim == LaunchMeeting::Claim::First)
            return false;
        if (meeting->hand(request, timeout))
            return true;
        problem_ = "Plovik is already running but does not answer, so it was opened a second time.";
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
    // Later, so that the other process has its answer before windows are made.
    QMetaObject::invokeMethod(
        &receiver_, [this, request = std::move(request)] { carryOut(request); }, Qt::QueuedConnection);
}

void SingleInstance::carryOut(const LaunchRequest& request)
{
    setEnvironment(kToken, request.activationToken);
    setEnvironment(kStartupId, request.startupId);
    switch (request.kind) {
    case LaunchRequest::Kind::Activate:
        if (callbacks_.activate)
            callbacks_.activate();
        break;
    case LaunchRequest::Kind::Open:
        if (callbacks_.open)
            callbacks_.open(request.folders);
        break;
    case LaunchRequest::Kind::Action:
        if (callbacks_.action)
            callbacks_.action(request.action);
        break;
    }
    // No token outlives its launch: a stale one must not travel to a program that is started later.
    setEnvironment(kToken, {});
    setEnvironment(kStartupId, {});
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace plovik {

/// One launch's wish, as it travels from the process that was launched to the one that runs.
struct LaunchRequest {
    enum class Kind { Activate, Open, Action };

    Kind kind = Kind::Activate;
    /// For Open.
    std::vector<std::filesystem::path> folders = {};
    /// For Action.
    std::string action = {};
    /// What lets a window come to the front, as the launching desktop gave them; either may be empty.
    std::string activationToken = {};
    std::string startupId = {};
};

/// How launches of one session meet; each kind has the first one serve and the others ask.
class LaunchMeeting {
public:
    enum class Claim { First, Taken, Unavailable };

    virtual ~LaunchMeeting() = default;

    /// Becomes the one that others ask, or finds that another already is. Requests that come are kept until the event
    /// loop runs, then given to `received` on the main thread.
    virtual Claim claim(std::function<void(LaunchRequest)> received) = 0;

    /// Hands `request` to the one that runs; false when it does not confirm in time.
    virtual bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) = 0;
};

/// Over the session bus, as org.freedesktop.Application.
std::unique_ptr<LaunchMeeting> meetingOnBus();

/// Over a socket in `folder`, which only the user can write to; without one, in the user's runtime folder.
std::unique_ptr<LaunchMeeting> meetingOnSocket(const std::filesystem::path& folder = {});

/// Makes Plovik one process a session: a second launch hands its folders to the first and ends.
///
/// Main thread only. Over the session bus where there is one, otherwise over a socket in the user's runtime folder.
class SingleInstance {
public:
    struct Callbacks {
        std::function<void(const std::vector<std::filesystem::path>& folders)> open;
        std::function<void()> activate;
        std::function<void(const std::string& name)> action = {};
    };

    SingleInstance();
    /// With meetings to try in their order, for tests.
    explicit SingleInstance(std::vector<std::unique_ptr<LaunchMeeting>> meetings);
    ~SingleInstance();

    /// Hands `folders` (none: the wish to come to the front) to the running application; true when it took them and
    /// this process has nothing left to do. False for the first one, and when the running one does not answer within
    /// `timeout`: problem() then says so, and this process serves its user by itself.
    bool handOver(const std::vector<std::filesystem::path>& folders,
                  std::chrono::milliseconds timeout = std::chrono::seconds(2));
    /// The same for one of the desktop entry's actions.
    bool handOverAction(const std::string& name, std::chrono::milliseconds timeout = std::chrono::seconds(2));

    /// A sentence for the user, when there is something to say after handOver().
    const std::string& problem() const { return problem_; }

    /// From now on `callbacks` get what later launches hand over, and what they did since handOver(), out of the event
    /// loop. While one runs, the environment holds the launch's activation token, for the toolkit to use.
    void listen(Callbacks callbacks);

private:
    bool handOver(LaunchRequest request, std::chrono::milliseconds timeout);
    void received(LaunchRequest request);
    void carryOut(const LaunchRequest& request);

    QObject receiver_;
    Callbacks callbacks_;
    bool listening_ = false;
    std::vector<LaunchRequest> waiting_;
    std::string problem_;
    std::vector<std::unique_ptr<LaunchMeeting>> meetings_;
};

} // namespace plovik

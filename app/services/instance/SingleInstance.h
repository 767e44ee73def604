// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QString>

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace plovik {

/// One of the actions of the desktop entry or of the command line tool, with what it is about.
struct LaunchAction {
    std::string name = {}; ///< empty for none
    std::string argument = {};
    std::vector<std::filesystem::path> folders = {}; ///< absolute

    bool operator==(const LaunchAction&) const = default;
};

/// What a launch asks of the process that already runs.
struct LaunchRequest {
    enum class Kind { activate, open, action };

    Kind kind = Kind::activate;
    /// For `open`.
    std::vector<std::filesystem::path> folders = {};
    /// For `action`.
    LaunchAction action = {};
    /// These let a window come to the front. The launching desktop gives them; either may be empty.
    std::string activationToken = {};
    std::string startupId = {};
};

/// What the desktop gives a launch so that its window may come to the front. The toolkit looks for it in the environment
/// when a window is shown or activated.
struct ActivationToken {
    std::string token = {};
    std::string startupId = {};

    /// Returns what the environment holds now.
    static ActivationToken current();
    /// Calls `show` while the environment holds this. A program that is started later must not inherit it.
    void lend(const std::function<void()>& show) const;
};

/// A way for the launches of one session to meet: the first one serves, and the others ask it.
class LaunchMeeting {
public:
    enum class Claim { first, taken, unavailable };

    virtual ~LaunchMeeting() = default;

    /// Becomes the one that others ask, or finds that another is that already. Requests that arrive are kept until the
    /// event loop runs, and then given to `received` on the main thread.
    virtual Claim claim(std::function<void(LaunchRequest)> received) = 0;

    /// Hands `request` to the one that runs. Returns false when it does not confirm in time.
    virtual bool hand(const LaunchRequest& request, std::chrono::milliseconds timeout) = 0;
};

/// Over the session bus, as org.freedesktop.Application.
std::unique_ptr<LaunchMeeting> meetingOnBus();

/// Over a socket in `folder`, which only the user can write to; in the user's runtime folder if it is empty. For
/// sessions without a bus: a remote display, a container, a bare window manager.
std::unique_ptr<LaunchMeeting> meetingOnSocket(const std::filesystem::path& folder = {});

/// Makes Plovik one process a session, so that no repository has two windows: a second launch hands its folders to the
/// first and ends. Uses the session bus where there is one, otherwise a socket in the user's runtime folder. Main
/// thread.
class SingleInstance {
public:
    struct Callbacks {
        std::function<void(const std::vector<std::filesystem::path>& folders)> open;
        std::function<void()> activate;
        std::function<void(const LaunchAction& action)> action = {};
    };

    SingleInstance();
    /// With meetings to try in their order, for tests.
    explicit SingleInstance(std::vector<std::unique_ptr<LaunchMeeting>> meetings);
    ~SingleInstance();

    /// Hands `folders` to the running application; no folders ask it to come to the front. Returns true when it took
    /// them and this process has nothing left to do. Returns false in the first process, and when the running one does
    /// not answer within `timeout`: problem() then says so, and this process serves its user by itself.
    bool handOver(const std::vector<std::filesystem::path>& folders,
                  std::chrono::milliseconds timeout = std::chrono::seconds(2));
    /// The same for an action.
    bool handOverAction(const LaunchAction& action, std::chrono::milliseconds timeout = std::chrono::seconds(2));

    /// A sentence for the user after handOver(); empty when all is well.
    const QString& problem() const { return problem_; }

    /// From now on the event loop passes the requests of later launches to `callbacks`, beginning with those that came
    /// since handOver(). While a callback runs, the environment holds the launch's activation token for the toolkit.
    void listen(Callbacks callbacks);

private:
    bool handOver(LaunchRequest request, std::chrono::milliseconds timeout);
    void received(LaunchRequest request);
    void carryOut(const LaunchRequest& request);
    void callBack(const LaunchRequest& request);

    QObject receiver_;
    Callbacks callbacks_;
    bool listening_ = false;
    std::vector<LaunchRequest> waiting_;
    QString problem_;
    std::vector<std::unique_ptr<LaunchMeeting>> meetings_;
};

} // namespace plovik

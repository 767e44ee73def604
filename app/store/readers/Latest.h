// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Failure.h"
#include "app/store/GitAccess.h"

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>
#include <variant>

namespace plovik {

/// Reads one thing after another for a view, off the main thread. The newest request wins: an overtaken one is dropped
/// and its git ended. The last result stays until the next one has arrived.
///
/// Owned by the view that shows the result; `git` outlives it. Main thread. Its destructor ends the reading.
template <typename Request, typename Result>
class Latest {
public:
    /// Calls `changed` when a request has been answered or has failed. `changed` may ask again.
    ///
    /// `read` runs on the worker's threads. Its git never asks the user anything. One that walks the history belongs in
    /// the lane of long reads.
    Latest(const GitAccess& git, Result (*read)(const gitkit::GitRepository&, const Request&),
           std::function<void()> changed, Worker::Lane lane = Worker::Lane::shortRead)
        : Latest(
              git, std::move(changed),
              [read](const auto& repo, const auto& request, const auto& /*stop*/) { return read(repo, request); }, lane)
    {}

    /// The same, but `read` gets only the base class of the request, and `digest` makes the result on the same thread.
    template <typename Read, typename Part>
    Latest(const GitAccess& git, Read (*read)(const gitkit::GitRepository&, const Part&),
           Result (*digest)(Read, const Request&), std::function<void()> changed,
           Worker::Lane lane = Worker::Lane::shortRead)
        : Latest(
              git, std::move(changed),
              [read, digest](const auto& repo, const auto& request, const auto& /*stop*/) {
                  return digest(read(repo, request), request);
              },
              lane)
    {}

    /// The same for `work` that needs no repository. It must end soon after the stop is requested.
    Latest(const GitAccess& git, Result (*work)(const Request&, const std::stop_token&), std::function<void()> changed)
        : Latest(git, std::move(changed),
                 [work](const auto&, const auto& request, const std::stop_token& stop) { return work(request, stop); })
    {}

    ~Latest() { stop_.request_stop(); }
    Latest(const Latest&) = delete;
    Latest& operator=(const Latest&) = delete;

    /// Makes a request. Does nothing when it equals the newest request and that has not failed.
    void ask(Request request)
    {
        if (asked_ == request && !failure_)
            return;
        asked_ = std::move(request);
        start();
    }

    /// Makes a request even if it equals the newest one, because its answer may have changed. If the same request is
    /// being read, that reading is finished first, so that a long one is not restarted again and again.
    void askAgain(Request request)
    {
        if (isReading_ && asked_ == request) {
            isOld_ = true;
            return;
        }
        asked_ = std::move(request);
        start();
    }

    /// Ends the reading and drops request, result and failure.
    void forget()
    {
        stop_.request_stop();
        isReading_ = isOld_ = false;
        ++number_;
        asked_.reset();
        answered_.reset();
        result_.reset();
        failure_.reset();
    }

    bool isReading() const { return isReading_; }
    /// Returns the newest request.
    const std::optional<Request>& asked() const { return asked_; }
    /// Returns the newest result; answered() is its request. The result is outdated while answered() differs from
    /// asked().
    std::optional<Result>& result() { return result_; }
    const std::optional<Result>& answer() const { return result_; } ///< the same, to be looked at only
    const std::optional<Request>& answered() const { return answered_; }
    /// Returns why the newest request failed, or nullopt when it has not.
    const std::optional<Failure>& failure() const { return failure_; }

private:
    using Job = std::function<Result(const gitkit::GitRepository&, const Request&, std::stop_token)>;

    Latest(const GitAccess& git, std::function<void()> changed, Job job, Worker::Lane lane = Worker::Lane::shortRead)
        : git_(git), changed_(std::move(changed)), job_(std::move(job)), lane_(lane)
    {}

    void start()
    {
        stop_.request_stop();
        stop_ = std::stop_source();
        isReading_ = true;
        isOld_ = false;
        failure_.reset();
        launch(reading(*asked_, ++number_));
    }

    QCoro::Task<> reading(Request request, qint64 number)
    {
        const std::weak_ptr alive(alive_);
        std::optional<Result> result;
        std::optional<Failure> failure;
        try {
            const std::stop_token stop = stop_.get_token();
            std::optional<Turnstile::Pass> pass;
            if (lane_ == Worker::Lane::longRead)
                pass.emplace(co_await git_.longReadTurn());
            if (alive.expired() || number != number_)
                co_return;
            result = co_await git_.template readWith<Result>(
                lane_,
                [job = job_, request, stop](const gitkit::GitRepository& repo) { return job(repo, request, stop); },
                stop);
        } catch (const std::exception& thrown) {
            failure = failureOf(thrown);
        }
        if (alive.expired() || number != number_)
            co_return;
        isReading_ = false;
        failure_ = std::move(failure);
        if (result) {
            answered_ = std::move(request);
            result_ = std::move(result);
        }
        const bool isOld = std::exchange(isOld_, false);
        changed_();
        if (isOld && !alive.expired() && !isReading_ && asked_)
            start();
    }

    const GitAccess& git_;
    std::function<void()> changed_;
    Job job_;
    Worker::Lane lane_;
    std::optional<Request> asked_;
    std::optional<Request> answered_;
    std::optional<Result> result_;
    std::optional<Failure> failure_;
    std::stop_source stop_;
    qint64 number_ = 0; ///< number of the newest reading
    bool isReading_ = false;
    bool isOld_ = false; ///< the same request was made again during the reading
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Await.h"
#include "app/await/Turnstile.h"
#include "app/await/Worker.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <stop_token>
#include <type_traits>
#include <utility>
#include <vector>

namespace gitkit {
class CommitGraphCache;
class CommitGraphGuard;
class GitRepository;
class ProgramGuard;
struct ConfiguredProgram;
struct RunContext;
} // namespace gitkit

namespace plovik {

class CommandLog;

/// The store's access to its repository: runs blocking calls on the worker and resumes on the main thread. Each store
/// has one, shared by its parts and by the readers that views own. Coroutines that await here unwind with OwnerGone
/// once the store is gone. Main thread.
///
/// This header only declares the repository's type, so that a view that owns a reader cannot ask git itself.
class GitAccess {
public:
    /// `root` is a working tree's top level. Every command is recorded in `log`. Commit-graphs are kept in `graphs`, if
    /// that is not empty.
    GitAccess(std::filesystem::path root, Worker& worker, const CommandLog& log, std::filesystem::path graphs = {});
    ~GitAccess();
    GitAccess(const GitAccess&) = delete;
    GitAccess& operator=(const GitAccess&) = delete;

    const std::filesystem::path& root() const;
    Worker& worker() const { return worker_; }
    const AliveToken& alive() const { return alive_; }

    /// Ends the git of all reads. From now on every coroutine that awaits through this unwinds instead of resuming.
    void close()
    {
        alive_.reset();
        closing_.request_stop();
    }

    /// Awaits a place among the few reads of this repository that may walk its history at the same time. Hold the pass
    /// while one walks.
    Turnstile::Turn longReadTurn() const { return longReads_.enter(); }

    /// Returns the repository for a read that outlasts one call. Its git ends soon after `stop` is requested or the
    /// store is closed, and never asks the user anything.
    std::shared_ptr<const gitkit::GitRepository> repository(std::stop_token stop) const;

    /// Awaits a function of the repository, with copies of the arguments. Its git never asks the user anything.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> read(Result (*function)(const gitkit::GitRepository&, Parameters...),
                              Arguments&&... arguments) const
    {
        return readUntil({}, function, std::forward<Arguments>(arguments)...);
    }

    /// The same, but its git ends soon after `stop` is requested, and the call then throws gitkit::RunStopped.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> readUntil(std::stop_token stop,
                                   Result (*function)(const gitkit::GitRepository&, Parameters...),
                                   Arguments&&... arguments) const
    {
        return readIn(Worker::Lane::shortRead, std::move(stop), function, std::forward<Arguments>(arguments)...);
    }

    /// The same for a function that walks the history.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> readLong(std::stop_token stop, Result (*function)(const gitkit::GitRepository&, Parameters...),
                                  Arguments&&... arguments) const
    {
        return readIn(Worker::Lane::longRead, std::move(stop), function, std::forward<Arguments>(arguments)...);
    }

    /// Awaits one of the repository's methods in the same way, with copies of the arguments.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> read(Result (gitkit::GitRepository::*verb)(Parameters...) const,
                              Arguments&&... arguments) const
    {
        return BlockingCall<Result>(worker_, Worker::Lane::shortRead, alive_,
                                    [repo = repository({}), verb,
                                     ... copies = std::decay_t<Arguments>(std::forward<Arguments>(
                                         arguments))]() -> Result { return ((*repo).*verb)(copies...); });
    }

    /// The same as readUntil() for what may take many seconds: it keeps no other read waiting.
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> readAside(std::stop_token stop,
                                   Result (*function)(const gitkit::GitRepository&, Parameters...),
                                   Arguments&&... arguments) const
    {
        return readIn(Worker::Lane::network, std::move(stop), function, std::forward<Arguments>(arguments)...);
    }

    /// The same for a function object that copies what it needs. For Latest.
    template <typename Result>
    BlockingCall<Result> readWith(Worker::Lane lane, std::function<Result(const gitkit::GitRepository&)> job,
                                  std::stop_token stop) const
    {
        return BlockingCall<Result>(worker_, lane, alive_,
                                    [repo = repository(std::move(stop)), job = std::move(job)] { return job(*repo); });
    }

    /// Awaits a function object that needs no repository.
    template <typename Result>
    BlockingCall<Result> run(Worker::Lane lane, std::function<Result()> job) const
    {
        return BlockingCall<Result>(worker_, lane, alive_, std::move(job));
    }

    /// A function that changes the repository.
    using Operation = std::function<void(const gitkit::GitRepository&)>;
    /// What a change does with the programs that the repository's configuration names.
    enum class Programs {
        run,       ///< they run; the change fails when there are any that are not trusted
        fetchless, ///< those that fetch are kept off while they are not trusted; the change runs no others
    };
    /// Awaits an operation whose runs share a context. For Changes alone.
    BlockingCall<void> change(Worker::Lane lane, const gitkit::RunContext& context, Programs programs,
                              Operation operation) const;

    /// Returns the commit-graph that reads see while it is in use. For CommitIndex alone.
    const std::shared_ptr<gitkit::CommitGraphCache>& graph() const { return graph_; }

    /// Returns the programs of the repository's configuration that reads are kept from running.
    std::vector<gitkit::ConfiguredProgram> keptOff() const;
    /// Sets the function that decides whether programs may run. It is called on any thread. For Trust alone.
    void setTrusted(std::function<bool(const std::vector<gitkit::ConfiguredProgram>&)> isTrusted) const;

    /// Returns whether operations of any store have not ended. They outlive their store. Any thread.
    static bool areChangesUnderWay();
    /// Returns what an operation holds until it has ended. Any thread.
    static std::shared_ptr<const std::monostate> underWay();

private:
    template <typename Result, typename... Parameters, typename... Arguments>
    BlockingCall<Result> readIn(Worker::Lane lane, std::stop_token stop,
                                Result (*function)(const gitkit::GitRepository&, Parameters...),
                                Arguments&&... arguments) const
    {
        return BlockingCall<Result>(worker_, lane, alive_,
                                    [repo = repository(std::move(stop)), function,
                                     ... copies = std::decay_t<Parameters>(std::forward<Arguments>(
                                         arguments))]() -> Result { return function(*repo, copies...); });
    }

    static constexpr int mostLongReads = 3;

    std::stop_source closing_;
    std::shared_ptr<gitkit::ProgramGuard> guard_;
    std::shared_ptr<gitkit::CommitGraphCache> graph_;
    std::shared_ptr<gitkit::CommitGraphGuard> readGuard_; ///< for reads alone
    std::shared_ptr<const gitkit::GitRepository> repo_;
    Worker& worker_;
    const CommandLog& log_;
    mutable Turnstile longReads_{mostLongReads};
    AliveToken alive_ = std::make_shared<const std::monostate>();
};

} // namespace plovik

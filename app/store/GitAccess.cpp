// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/GitAccess.h"

#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PartialClone.h"
#include "GitKit/repository/ProgramGuard.h"
#include "app/store/CommandLog.h"

#include <memory>
#include <variant>

namespace plovik {

namespace {

/// git starts no askpass program when its name is empty, whatever the user's settings name.
gitkit::RunContext readContext(const CommandLog& log, std::shared_ptr<gitkit::RunGuard> guard, std::stop_token stop)
{
    return {.listener = log.listener(),
            .stop = std::move(stop),
            .environment = {{"GIT_ASKPASS", ""}, {"SSH_ASKPASS_REQUIRE", "never"}},
            .guard = std::move(guard)};
}

/// A change is never kept from running a filter: what it writes, and what its hooks write, would be another content.
gitkit::RunContext changeContext(gitkit::RunContext context, gitkit::ProgramGuard& guard, GitAccess::Programs programs)
{
    if (programs == GitAccess::Programs::run) {
        guard.requireTrusted(context);
        return context;
    }
    const gitkit::Restriction restriction = guard.before({}, context);
    context.environment.insert(context.environment.end(), restriction.environment.begin(),
                               restriction.environment.end());
    return context;
}

/// Requests its own stop when one of two others is requested.
struct EitherStop {
    struct Request {
        std::stop_source& either;
        void operator()() const { either.request_stop(); }
    };

    EitherStop(std::stop_token one, std::stop_token other)
        : first(std::move(one), Request{either}), second(std::move(other), Request{either})
    {}

    std::stop_source either;
    std::stop_callback<Request> first;
    std::stop_callback<Request> second;
};

struct Reading {
    std::shared_ptr<const EitherStop> stops;
    gitkit::GitRepository repo;
};

/// Shared by the operations that have not ended.
const std::shared_ptr<const std::monostate>& sharedUnderWay()
{
    static const auto token = std::make_shared<const std::monostate>();
    return token;
}

} // namespace

GitAccess::GitAccess(std::filesystem::path root, Worker& worker, const CommandLog& log, std::filesystem::path graphs)
    : guard_(std::make_shared<gitkit::ProgramGuard>(root)),
      graph_(std::make_shared<gitkit::CommitGraphCache>(std::move(graphs))),
      readGuard_(std::make_shared<gitkit::CommitGraphGuard>(std::make_shared<gitkit::PartialCloneGuard>(guard_, root),
                                                            graph_)),
      repo_(std::make_shared<const gitkit::GitRepository>(std::move(root),
                                                          readContext(log, readGuard_, closing_.get_token()))),
      worker_(worker), log_(log)
{}

GitAccess::~GitAccess() = default;

const std::filesystem::path& GitAccess::root() const { return repo_->root(); }

std::shared_ptr<const gitkit::GitRepository> GitAccess::repository(std::stop_token stop) const
{
    if (!stop.stop_possible())
        return repo_;
    const auto stops = std::make_shared<EitherStop>(std::move(stop), closing_.get_token());
    const auto reading =
        std::make_shared<Reading>(Reading{stops, repo_->in(readContext(log_, readGuard_, stops->either.get_token()))});
    return {reading, &reading->repo};
}

BlockingCall<void> GitAccess::change(Worker::Lane lane, const gitkit::RunContext& context, Programs programs,
                                     Operation operation) const
{
    return BlockingCall<void>(
        worker_, lane, alive_,
        [root = root(), context, guard = guard_, programs, operation = std::move(operation), token = underWay()] {
            operation(gitkit::GitRepository(root, changeContext(context, *guard, programs)));
        });
}

std::vector<gitkit::ConfiguredProgram> GitAccess::keptOff() const { return guard_->keptOff(); }

void GitAccess::setTrusted(std::function<bool(const std::vector<gitkit::ConfiguredProgram>&)> isTrusted) const
{
    guard_->setTrusted(std::move(isTrusted));
}

bool GitAccess::areChangesUnderWay() { return sharedUnderWay().use_count() > 1; }

std::shared_ptr<const std::monostate> GitAccess::underWay() { return sharedUnderWay(); }

} // namespace plovik

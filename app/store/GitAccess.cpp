// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/GitAccess.h"

#include "GitKit/repository/GitRepository.h"
#include "app/store/CommandLog.h"

#include <memory>
#include <variant>

namespace plovik {

namespace {

/// git starts no askpass program when its name is empty, whatever the user's settings name.
gitkit::RunContext readContext(const CommandLog& log, std::stop_token stop)
{
    return {.listener = log.listener(),
            .stop = std::move(stop),
            .environment = {{"GIT_ASKPASS", ""}, {"SSH_ASKPASS_REQUIRE", "never"}}};
}

/// Shared by the operations that have not ended.
const std::shared_ptr<const std::monostate>& underWay()
{
    static const auto token = std::make_shared<const std::monostate>();
    return token;
}

} // namespace

GitAccess::GitAccess(std::filesystem::path root, Worker& worker, const CommandLog& log)
    : repo_(std::make_shared<const gitkit::GitRepository>(std::move(root), readContext(log, {}))), worker_(worker),
      log_(log)
{}

GitAccess::~GitAccess() = default;

const std::filesystem::path& GitAccess::root() const { return repo_->root(); }

std::shared_ptr<const gitkit::GitRepository> GitAccess::reading(std::stop_token stop) const
{
    if (!stop.stop_possible())
        return repo_;
    return std::make_shared<const gitkit::GitRepository>(repo_->in(readContext(log_, std::move(stop))));
}

BlockingCall<void> GitAccess::change(Worker::Lane lane, const gitkit::RunContext& context, Operation operation) const
{
    return BlockingCall<void>(
        worker_, lane, alive_,
        [repo = repo_->in(context), operation = std::move(operation), token = underWay()] { operation(repo); });
}

bool GitAccess::areChangesUnderWay() { return underWay().use_count() > 1; }

} // namespace plovik

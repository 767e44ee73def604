// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/ActionRuns.h"

#include "GitKit/runner/Progress.h"

#include <utility>

namespace plovik {

ActionRuns::ActionRuns(std::shared_ptr<RunListener> log, std::function<void(std::string)> progress)
    : log_(std::move(log)), progress_(std::move(progress))
{}

std::optional<CommandLog::Number> ActionRuns::failed() const
{
    const Run run = failed_;
    return run == 0 ? std::nullopt : std::optional(run);
}

void ActionRuns::began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory)
{
    log_->began(run, arguments, directory);
}

void ActionRuns::printed(Run run, Stream stream, std::string_view bytes)
{
    log_->printed(run, stream, bytes);
    if (stream != Stream::error)
        return;
    if (auto line = gitkit::lastProgress(bytes))
        progress_(std::move(*line));
}

void ActionRuns::ended(Run run, const gitkit::RunEnd& end)
{
    log_->ended(run, end);
    if (end.status != 0 || !end.problem.empty())
        failed_ = run;
}

} // namespace plovik

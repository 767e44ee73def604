// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/ActionRuns.h"

#include "GitKit/runner/Progress.h"

#include <algorithm>
#include <chrono>
#include <utility>

namespace plovik {

namespace {

std::optional<gitkit::HookRun> newestRunning(const std::vector<gitkit::HookRun>& hooks)
{
    const auto found = std::find_if(hooks.rbegin(), hooks.rend(), [](const auto& hook) { return !hook.took; });
    return found == hooks.rend() ? std::nullopt : std::optional(*found);
}

} // namespace

ActionRuns::ActionRuns(std::shared_ptr<RunListener> log, std::function<void(std::string)> progress,
                       std::function<void(Run, std::optional<gitkit::HookRun>)> hooks)
    : log_(std::move(log)), progress_(std::move(progress)), hooks_(std::move(hooks))
{}

std::optional<CommandLog::Number> ActionRuns::failed() const
{
    const Run run = failed_;
    return run == 0 ? std::nullopt : std::optional(run);
}

void ActionRuns::began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory)
{
    {
        const std::lock_guard lock(mutex_);
        runs_.push_back(run);
    }
    log_->began(run, arguments, directory);
}

bool ActionRuns::has(CommandLog::Number command) const
{
    const std::lock_guard lock(mutex_);
    return std::ranges::find(runs_, command) != runs_.end();
}

std::optional<CommandLog::Number> ActionRuns::last() const
{
    const std::lock_guard lock(mutex_);
    return runs_.empty() ? std::nullopt : std::optional(runs_.back());
}

void ActionRuns::traced(Run run, std::string_view bytes)
{
    std::vector<gitkit::HookRun> hooks;
    {
        const std::lock_guard lock(mutex_);
        gitkit::HookTrace& trace = traces_[run];
        if (!trace.read(bytes, std::chrono::steady_clock::now()))
            return;
        hooks = trace.hooks();
    }
    log_->hooked(run, hooks);
    if (hooks_)
        hooks_(run, newestRunning(hooks));
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
    bool hadHook = false;
    {
        const std::lock_guard lock(mutex_);
        const auto trace = traces_.find(run);
        hadHook = trace != traces_.end() && newestRunning(trace->second.hooks()).has_value();
        if (trace != traces_.end())
            traces_.erase(trace);
    }
    // A git that was ended does not say that its hook has ended.
    if (hadHook && hooks_)
        hooks_(run, std::nullopt);
    if (end.status != 0 || !end.problem.empty())
        failed_ = run;
}

} // namespace plovik

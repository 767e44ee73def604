// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/parsers/HookTrace.h"
#include "GitKit/runner/RunContext.h"
#include "app/store/CommandLog.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// Listens to the runs of one change and passes them on to the log. It remembers the run that failed and reports git's
/// lines of progress. Any thread.
class ActionRuns : public gitkit::RunListener {
public:
    /// `progress` is called on the threads of the runs.
    /// `hooks` is called on the same threads when one has begun or ended: with the newest one that runs, and its command.
    ActionRuns(std::shared_ptr<RunListener> log, std::function<void(std::string line)> progress,
               std::function<void(Run, std::optional<gitkit::HookRun>)> hooks = {});

    /// Returns the last run that failed, or nullopt.
    std::optional<CommandLog::Number> failed() const;
    /// Returns whether a command is one of these runs.
    bool has(CommandLog::Number command) const;
    /// Returns the last command of these runs, or nullopt.
    std::optional<CommandLog::Number> last() const;

    void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) override;
    void printed(Run run, Stream stream, std::string_view bytes) override;
    void ended(Run run, const gitkit::RunEnd& end) override;
    bool followsPrograms() const override { return true; }
    void traced(Run run, std::string_view bytes) override;

private:
    std::shared_ptr<RunListener> log_;
    std::function<void(std::string)> progress_;
    std::function<void(Run, std::optional<gitkit::HookRun>)> hooks_;
    std::atomic<Run> failed_ = 0;
    mutable std::mutex mutex_;
    std::vector<Run> runs_;                   ///< all that have begun
    std::map<Run, gitkit::HookTrace> traces_; ///< of those that have not ended
};

} // namespace plovik

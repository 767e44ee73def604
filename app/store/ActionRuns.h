// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/RunContext.h"
#include "app/store/CommandLog.h"

#include <atomic>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace plovik {

/// Listens to the runs of one change and passes them on to the log. It remembers the run that failed and reports git's
/// lines of progress. Any thread.
class ActionRuns : public gitkit::RunListener {
public:
    /// `progress` is called on the threads of the runs.
    ActionRuns(std::shared_ptr<RunListener> log, std::function<void(std::string line)> progress);

    /// Returns the last run that failed, or nullopt.
    std::optional<CommandLog::Number> failed() const;

    void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) override;
    void printed(Run run, Stream stream, std::string_view bytes) override;
    void ended(Run run, const gitkit::RunEnd& end) override;

private:
    std::shared_ptr<RunListener> log_;
    std::function<void(std::string)> progress_;
    std::atomic<Run> failed_ = 0;
};

} // namespace plovik

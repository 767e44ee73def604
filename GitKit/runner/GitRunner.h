// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitOutput.h"
#include "GitKit/runner/GitStream.h"
#include "GitKit/runner/RunContext.h"

#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// How one run differs from the ordinary one.
struct RunOptions {
    /// Bytes for git's standard input; absent for the null device.
    std::optional<std::string> input = {};
    /// Exit statuses that count as success.
    std::vector<int> accepting = {0};
    /// Environment entries for this run alone, set after all others.
    std::vector<std::pair<std::string, std::string>> environment = {};
    /// Git settings for this run alone, as NAME=value, which beat all others.
    std::vector<std::string> settings = {};
    /// When the output exceeds this, reading stops and git is ended. Used where only a beginning is shown.
    std::optional<OutputLimit> limit = {};
    /// Of what is printed without end only the beginning and the end are kept, some mebibytes each.
    bool dropsMiddle = false;
    /// Runs only while nothing else wants the processor or the disk.
    bool isIdle = false;
};

/// Runs git in one folder, with the options and the environment that every run shares (GitEnvironment.h).
///
/// An immutable value. Every call blocks its thread until git has ended; any number of calls may run at once. Throws
/// RunStopped once the context requests a stop.
class GitRunner {
public:
    explicit GitRunner(std::filesystem::path directory, RunContext context = {});

    const RunContext& context() const { return context_; }

    /// The raw result, whatever the exit status. Throws LaunchError when git cannot be started.
    GitOutput output(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

    /// The raw result of a run that succeeded. Throws GitError for an exit status that is not accepted.
    GitOutput accepted(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

    /// What git printed, as bytes. Throws as accepted() does.
    std::string bytes(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

    /// What git printed, repaired for showing. Throws as accepted() does.
    std::string run(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

    /// Starts a run whose output is taken piece by piece. Throws LaunchError when git cannot be started.
    GitStream stream(const std::vector<std::string>& arguments) const;

    /// The same for a command that is written to meanwhile, with GitStream::write(). `options.input` is not used.
    GitStream dialogue(const std::vector<std::string>& arguments, const RunOptions& options = {}) const;

private:
    GitStream started(const std::vector<std::string>& arguments, const RunOptions& options) const;
    std::optional<GitOutput> misplaced() const;
    Restriction restriction(const std::vector<std::string>& arguments) const;

    std::filesystem::path directory_;
    RunContext context_;
};

} // namespace gitkit

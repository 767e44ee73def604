// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Run.h"

#include <exception>
#include <filesystem>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

/// Hears of runs of git as they happen. Called on the threads of the runs, several at once; it must not throw, and it
/// must be quick: git waits for it.
class RunListener {
public:
    using Run = gitkit::Run;
    enum class Stream { output, error };

    virtual ~RunListener() = default;

    /// `arguments` are what git is given, without its own name.
    virtual void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) = 0;
    /// Bytes as they came; a chunk may end anywhere.
    virtual void printed(Run run, Stream stream, std::string_view bytes) = 0;
    /// Called once for each run that began.
    virtual void ended(Run run, const RunEnd& end) = 0;
};

/// What all runs of one action share.
struct RunContext {
    std::shared_ptr<RunListener> listener = {};
    /// Once it is requested, git is asked to end, with all that it has started, and made to after two seconds; no
    /// further run starts.
    std::stop_token stop = {};
    /// Environment entries, set after all others but those of a single run.
    std::vector<std::pair<std::string, std::string>> environment = {};
};

/// The caller asked for the end of a run, and it has ended.
class RunStopped : public std::exception {
public:
    const char* what() const noexcept override { return "The command was cancelled."; }
};

} // namespace gitkit

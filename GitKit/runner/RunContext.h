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

/// Is told of runs of git as they happen. The methods are called on the threads of the runs, several at once. They must
/// not throw, and they must be quick because git waits for them.
class RunListener {
public:
    using Run = gitkit::Run;
    enum class Stream { output, error };

    virtual ~RunListener() = default;

    /// `arguments` are those of git, without the program's name.
    virtual void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) = 0;
    /// `bytes` are unchanged; a chunk may end anywhere.
    virtual void printed(Run run, Stream stream, std::string_view bytes) = 0;
    /// Called once for each run that began.
    virtual void ended(Run run, const RunEnd& end) = 0;

    /// Returns whether git tells this listener which programs it starts. Streams do not.
    virtual bool followsPrograms() const { return false; }
    /// Is told of it in git's lines of JSON; a chunk may end anywhere.
    virtual void traced(Run /*run*/, std::string_view /*bytes*/) {}
    /// Is told by another listener, which has read such lines, of all hooks that a run has started, the oldest first.
    virtual void hooked(Run /*run*/, const std::vector<HookRun>& /*hooks*/) {}
};

/// What one run gets so that programs that a repository's configuration names do not run.
struct Restriction {
    std::vector<std::pair<std::string, std::string>> settings = {};    ///< git settings, which beat all files
    std::vector<std::pair<std::string, std::string>> environment = {}; ///< entries of the environment
};

struct RunContext;

/// Is asked before each run what it must be kept from. The method is called on the threads of the runs, several at
/// once, and may run git itself.
class RunGuard {
public:
    virtual ~RunGuard() = default;

    /// `command` is git's subcommand; `context` is that of the run.
    virtual Restriction before(const std::string& command, const RunContext& context) = 0;
};

/// What all runs of one action share.
struct RunContext {
    std::shared_ptr<RunListener> listener = {};
    /// When a stop is requested, git and everything that it started is asked to end and is killed after two seconds. No
    /// further run starts.
    std::stop_token stop = {};
    /// The top level that git must find from its folder; anything else fails as if there were no repository. For folders
    /// whose names cannot be told to git as a limit of its search.
    std::filesystem::path requiredTopLevel = {};
    /// Environment entries. Only those of a single run are set later.
    std::vector<std::pair<std::string, std::string>> environment = {};
    /// Without one, git runs what the repository's configuration names.
    std::shared_ptr<RunGuard> guard = {};
};

/// A run has ended because the caller requested a stop.
class RunStopped : public std::exception {
public:
    const char* what() const noexcept override { return "The command was cancelled."; }
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Run.h"
#include "app/store/Observed.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {
class RunListener;
} // namespace gitkit

namespace plovik {

/// The last thousand git commands that a window has run, with their output. Main thread, except for the listener.
/// Memory is limited: the log keeps the beginning and the end of each output, and of old commands no output.
class CommandLog {
public:
    using Number = gitkit::Run;

    /// A command without what it printed.
    struct Command {
        Number number = 0;
        std::vector<std::string> arguments; ///< without git's own name
        std::filesystem::path directory;
        std::chrono::system_clock::time_point began;
        std::optional<gitkit::RunEnd> end;       ///< nullopt while it runs
        std::vector<gitkit::HookRun> hooks = {}; ///< that it has started, the oldest first
    };

    /// The bytes that a command printed on both streams. Views repair them and mask secrets.
    struct Output {
        std::string beginning;
        std::size_t leftOut = 0; ///< the number of bytes between the two that were not kept
        std::string ending;
    };

    CommandLog();
    ~CommandLog();
    CommandLog(const CommandLog&) = delete;
    CommandLog& operator=(const CommandLog&) = delete;

    /// Returns all commands, the newest first.
    std::vector<Command> commands() const;
    struct Changes {
        std::uint64_t revision = 0;
        Number oldest = 0;             ///< of the commands still in the log
        std::vector<Command> commands; ///< the commands that began or ended, the oldest first
    };
    /// Returns what has changed since a revision; since 0, everything.
    Changes changesSince(std::uint64_t revision) const;
    /// Returns the output of a command, or nullopt when the command has left the log. When bytes are left out, the two
    /// pieces end and begin with whole lines.
    std::optional<Output> output(Number number) const;

    /// Grows on the main thread soon after the log has changed.
    Observed<qint64, CommandLog> generation{0};

    /// Returns the listener that records runs. It may outlive the log and be called on any thread.
    std::shared_ptr<gitkit::RunListener> listener() const;

private:
    class Record;
    std::shared_ptr<Record> record_;
};

} // namespace plovik

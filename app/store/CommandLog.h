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

/// Every git command that a window ran, the last thousand of them, with what they printed. Main thread; what it learns
/// comes from the threads of the runs. Its memory has a limit: of each command the beginning and the end of the output
/// are kept, and of old commands only how they ended.
class CommandLog {
public:
    using Number = gitkit::Run;

    /// A command without what it printed.
    struct Command {
        Number number = 0;
        std::vector<std::string> arguments; ///< what git was given, without its own name
        std::filesystem::path directory;
        std::chrono::system_clock::time_point began;
        std::optional<gitkit::RunEnd> end; ///< absent while it runs
    };

    /// What a command printed on both streams, as bytes, to be repaired and masked where they are shown.
    struct Output {
        std::string beginning;
        std::size_t leftOut = 0; ///< bytes between the two that are not kept
        std::string ending;
    };

    CommandLog();
    ~CommandLog();
    CommandLog(const CommandLog&) = delete;
    CommandLog& operator=(const CommandLog&) = delete;

    /// The newest first.
    std::vector<Command> commands() const;
    struct Changes {
        std::uint64_t revision = 0;
        Number oldest = 0;             ///< of those still in the log
        std::vector<Command> commands; ///< those that began or ended, the oldest first
    };
    /// Returns what is new since a revision, everything since 0.
    Changes changesSince(std::uint64_t revision) const;
    /// Returns nothing for a command that has left the log. Where bytes are left out, the two pieces end and begin with
    /// whole lines, so that no line is shown in half.
    std::optional<Output> output(Number number) const;

    /// Grows on the main thread soon after there is something new.
    Observed<qint64, CommandLog> generation{0};

    /// Records the runs that it hears of; it may outlive the log. Any thread.
    std::shared_ptr<gitkit::RunListener> listener() const;

private:
    class Record;
    std::shared_ptr<Record> record_;
};

} // namespace plovik

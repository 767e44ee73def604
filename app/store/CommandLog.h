// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/RunContext.h"

#include <QProperty>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// Every git command that a window ran, the last thousand of them, with what they printed. Hears of runs on their own
/// threads; everything else is for the main thread. What is large is kept in part, so that its memory has a limit:
/// of each command the beginning and the end, and of old commands nothing but how they went.
class CommandLog : public gitkit::RunListener, public std::enable_shared_from_this<CommandLog> {
public:
    using Number = Run;

    /// A command without what it printed.
    struct Command {
        Number number = 0;
        std::vector<std::string> arguments; ///< what git was given, without its own name
        std::filesystem::path directory;
        std::chrono::system_clock::time_point began;
        std::optional<gitkit::RunEnd> end; ///< it still runs without
    };

    /// What a command printed on both streams, as it came: bytes, for repairing and masking where they are shown.
    struct Output {
        std::string beginning;
        std::size_t leftOut = 0; ///< bytes between the two that are not kept
        std::string ending;
    };

    /// The newest first.
    std::vector<Command> commands() const;
    /// What is new since a revision; everything since none.
    struct Changes {
        std::uint64_t revision = 0;
        Number oldest = 0;             ///< that is still in the log
        std::vector<Command> commands; ///< that began or ended, the oldest first
    };
    Changes changesSince(std::uint64_t revision) const;
    /// Nothing for a command that is not in the log any more. Where bytes are left out it ends and begins with whole
    /// lines, so that nothing is told from half of one.
    std::optional<Output> output(Number number) const;

    /// Grows, soon after and on the main thread, when there is something new.
    QProperty<qint64> generation{0};

    void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) override;
    void printed(Run run, Stream stream, std::string_view bytes) override;
    void ended(Run run, const gitkit::RunEnd& end) override;

private:
    struct Entry {
        Command command;
        Output output;
        std::uint64_t revision = 0; ///< when it began or ended
    };
    Entry* find(Number number);
    void dropOld();
    void announce();

    mutable std::mutex mutex_;
    std::deque<Entry> entries_; ///< the oldest first
    std::size_t kept_ = 0;      ///< bytes of output
    std::uint64_t revision_ = 0;
    std::atomic<bool> isAnnounced_ = false;
};

/// Hears of one action's runs and passes them on: finds the one that failed, and how far git says it has come.
class ActionRuns : public gitkit::RunListener {
public:
    /// `progress` is called on the threads of the runs.
    ActionRuns(std::shared_ptr<RunListener> log, std::function<void(std::string line)> progress);

    /// The last run that failed; nothing when none has.
    std::optional<Run> failed() const;

    void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) override;
    void printed(Run run, Stream stream, std::string_view bytes) override;
    void ended(Run run, const gitkit::RunEnd& end) override;

private:
    std::shared_ptr<RunListener> log_;
    std::function<void(std::string)> progress_;
    std::atomic<Run> failed_ = 0;
};

} // namespace plovik

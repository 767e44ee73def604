// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/CommandLog.h"

#include "GitKit/runner/RunContext.h"

#include <QCoreApplication>

#include <algorithm>
#include <atomic>
#include <deque>
#include <mutex>
#include <ranges>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t mostCommands = 1000;
constexpr std::size_t mostOfBeginning = 32 * 1024;
constexpr std::size_t mostOfEnding = 32 * 1024;
constexpr std::size_t mostOutput = 8 * 1024 * 1024; ///< of all commands together

std::size_t sizeOf(const CommandLog::Output& output) { return output.beginning.size() + output.ending.size(); }

void append(CommandLog::Output& output, std::string_view bytes)
{
    const std::size_t first = std::min(bytes.size(), mostOfBeginning - output.beginning.size());
    output.beginning += bytes.substr(0, first);
    bytes.remove_prefix(first);
    if (bytes.size() > mostOfEnding) {
        output.leftOut += bytes.size() - mostOfEnding;
        bytes.remove_prefix(bytes.size() - mostOfEnding);
    }
    output.ending += bytes;
    // Cutting only at twice the limit is cheaper than cutting at every line.
    if (output.ending.size() > 2 * mostOfEnding) {
        output.leftOut += output.ending.size() - mostOfEnding;
        output.ending.erase(0, output.ending.size() - mostOfEnding);
    }
}

/// Removes the rest of a line that was cut; a piece without any line end is removed as a whole.
CommandLog::Output wholeLines(CommandLog::Output output)
{
    if (output.leftOut == 0)
        return output;
    const std::size_t end = output.beginning.rfind('\n') + 1; // 0 when there is no line end
    output.leftOut += output.beginning.size() - end;
    output.beginning.resize(end);
    const std::size_t begin = std::min(output.ending.find('\n'), output.ending.size() - 1) + 1;
    output.leftOut += begin;
    output.ending.erase(0, begin);
    return output;
}

} // namespace

/// The part of the log that is shared with the threads of the runs.
class CommandLog::Record : public gitkit::RunListener, public std::enable_shared_from_this<Record> {
public:
    explicit Record(CommandLog* log) : log_(log) {}

    /// Called when the log is destroyed; announces nothing from then on. Main thread.
    void detach() { log_ = nullptr; }

    std::vector<Command> commands() const;
    Changes changesSince(std::uint64_t revision) const;
    std::optional<Output> output(Number number) const;

    void began(Run run, const std::vector<std::string>& arguments, const std::filesystem::path& directory) override;
    void printed(Run run, Stream stream, std::string_view bytes) override;
    void ended(Run run, const gitkit::RunEnd& end) override;
    void hooked(Run run, const std::vector<gitkit::HookRun>& hooks) override;

private:
    struct Entry {
        Command command;
        Output output;
        std::uint64_t revision = 0; ///< of the last time it began or ended
    };
    Entry* find(Number number);
    void dropOld();
    void announce();

    CommandLog* log_; ///< used on the main thread only
    mutable std::mutex mutex_;
    std::deque<Entry> entries_; ///< the oldest first
    std::size_t kept_ = 0;      ///< bytes of output
    std::uint64_t revision_ = 0;
    std::atomic<bool> isAnnounced_ = false;
};

std::vector<CommandLog::Command> CommandLog::Record::commands() const
{
    const std::lock_guard lock(mutex_);
    std::vector<Command> all;
    all.reserve(entries_.size());
    for (const Entry& entry : std::views::reverse(entries_))
        all.push_back(entry.command);
    return all;
}

std::optional<CommandLog::Output> CommandLog::Record::output(Number number) const
{
    const std::lock_guard lock(mutex_);
    const Entry* const entry = const_cast<Record*>(this)->find(number);
    return entry ? std::optional(wholeLines(entry->output)) : std::nullopt;
}

CommandLog::Changes CommandLog::Record::changesSince(std::uint64_t revision) const
{
    const std::lock_guard lock(mutex_);
    Changes changes;
    changes.revision = revision_;
    changes.oldest = entries_.empty() ? 0 : entries_.front().command.number;
    for (const Entry& entry : entries_) {
        if (entry.revision > revision)
            changes.commands.push_back(entry.command);
    }
    return changes;
}

// Searches from the end, where commands are that run or have just ended.
CommandLog::Record::Entry* CommandLog::Record::find(Number number)
{
    const auto found = std::find_if(entries_.rbegin(), entries_.rend(),
                                    [number](const Entry& entry) { return entry.command.number == number; });
    return found == entries_.rend() ? nullptr : &*found;
}

void CommandLog::Record::began(Run run, const std::vector<std::string>& arguments,
                               const std::filesystem::path& directory)
{
    {
        const std::lock_guard lock(mutex_);
        entries_.push_back(
            {{run, arguments, directory, std::chrono::system_clock::now(), std::nullopt, {}}, {}, ++revision_});
        dropOld();
    }
    announce();
}

void CommandLog::Record::printed(Run run, Stream, std::string_view bytes)
{
    {
        const std::lock_guard lock(mutex_);
        Entry* const entry = find(run);
        if (!entry)
            return;
        kept_ -= sizeOf(entry->output);
        append(entry->output, bytes);
        kept_ += sizeOf(entry->output);
        dropOld();
    }
    announce();
}

void CommandLog::Record::ended(Run run, const gitkit::RunEnd& end)
{
    {
        const std::lock_guard lock(mutex_);
        if (Entry* const entry = find(run)) {
            entry->command.end = end;
            entry->revision = ++revision_;
        }
    }
    announce();
}

void CommandLog::Record::hooked(Run run, const std::vector<gitkit::HookRun>& hooks)
{
    {
        const std::lock_guard lock(mutex_);
        if (Entry* const entry = find(run)) {
            entry->command.hooks = hooks;
            entry->revision = ++revision_;
        }
    }
    announce();
}

void CommandLog::Record::dropOld()
{
    while (entries_.size() > mostCommands) {
        kept_ -= sizeOf(entries_.front().output);
        entries_.pop_front();
    }
    for (auto entry = entries_.begin(); kept_ > mostOutput && entry + 1 < entries_.end(); ++entry) {
        kept_ -= sizeOf(entry->output);
        const std::size_t all = sizeOf(entry->output) + entry->output.leftOut;
        entry->output = {.beginning = {}, .leftOut = all, .ending = {}};
    }
}

void CommandLog::Record::announce()
{
    QCoreApplication* const application = QCoreApplication::instance();
    if (!application || isAnnounced_.exchange(true))
        return;
    QMetaObject::invokeMethod(
        application,
        [weak = weak_from_this()] {
            const auto record = weak.lock();
            if (!record || !record->log_)
                return;
            record->isAnnounced_ = false;
            record->log_->generation = record->log_->generation.value() + 1;
        },
        Qt::QueuedConnection);
}

CommandLog::CommandLog() : record_(std::make_shared<Record>(this)) {}

CommandLog::~CommandLog() { record_->detach(); }

std::vector<CommandLog::Command> CommandLog::commands() const { return record_->commands(); }

CommandLog::Changes CommandLog::changesSince(std::uint64_t revision) const { return record_->changesSince(revision); }

std::optional<CommandLog::Output> CommandLog::output(Number number) const { return record_->output(number); }

std::shared_ptr<gitkit::RunListener> CommandLog::listener() const { return record_; }

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoLog.h"

#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <charconv>
#include <chrono>

namespace gitkit {

namespace {

/// Reads "SECONDS" as git prints a date.
Date dateOf(std::string_view seconds)
{
    std::int64_t count = 0;
    std::from_chars(seconds.data(), seconds.data() + seconds.size(), count);
    return Date(std::chrono::seconds(count));
}

} // namespace

std::vector<RefLogEntry> refLog(const GitRepository& repo, const std::string& ref, std::size_t most)
{
    // With a date for the selector, that of the entry stands in it: "HEAD@{1700000000}".
    const GitOutput log =
        repo.runner().output({"log", "-g", "-z", "--no-decorate", "--date=unix", "--max-count=" + std::to_string(most),
                              "--format=%H%x1f%gd%x1f%gs", ref, "--"},
                             helperOptions());
    std::vector<RefLogEntry> entries;
    if (log.status != 0)
        return entries;
    Pieces records(log.stdoutBytes, '\0');
    while (const auto record = records.next()) {
        const auto fields = splitFields<3>(*record, '\x1f');
        if (!fields)
            continue;
        const std::string_view selector = (*fields)[1];
        entries.push_back(
            {std::string((*fields)[0]), dateOf(selector.substr(selector.rfind('{') + 1)), std::string((*fields)[2])});
    }
    return entries;
}

void appendUndoEntry(const GitRepository& repo, const std::string& commit, const std::string& text)
{
    repo.runner().accepted({"update-ref", "--create-reflog", "-m", text, undoRef, commit}, helperOptions());
}

std::vector<UndoEntry> undoEntries(const GitRepository& repo, std::size_t most)
{
    // Without a single entry git would fail.
    if (repo.runner().output({"rev-parse", "--verify", "--quiet", undoRef}, helperOptions()).status != 0)
        return {};
    // The two texts may hold any byte but the zero byte. The first is one line, and the second begins with another.
    const std::string log =
        repo.runner().bytes({"log", "-g", "-z", "--no-decorate", "--max-count=" + std::to_string(most),
                             "--format=%H%x1f%ct%x1f%gs%n%B", undoRef, "--"},
                            helperOptions());
    std::vector<UndoEntry> entries;
    Pieces records(log, '\0');
    while (const auto record = records.next()) {
        const std::size_t line = record->find('\n');
        const auto fields = splitFields<3>(record->substr(0, line), '\x1f');
        if (!fields || line == std::string_view::npos)
            continue;
        entries.push_back({std::string((*fields)[0]), dateOf((*fields)[1]), std::string((*fields)[2]),
                           std::string(record->substr(line + 1))});
    }
    return entries;
}

} // namespace gitkit

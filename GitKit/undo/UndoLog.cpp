// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoLog.h"

#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/HelperRuns.h"

#include <charconv>
#include <chrono>

namespace gitkit {

void appendUndoEntry(const GitRepository& repo, const std::string& commit, const std::string& text)
{
    repo.runner().accepted({"update-ref", "--create-reflog", "-m", text, undoRef, commit}, helperOptions());
}

std::vector<UndoEntry> undoEntries(const GitRepository& repo)
{
    // Without a single entry git would fail.
    if (repo.runner().output({"rev-parse", "--verify", "--quiet", undoRef}, helperOptions()).status != 0)
        return {};
    // The text stands last, because it may hold the byte between the fields.
    const std::string log = repo.runner().bytes(
        {"log", "-g", "-z", "--no-decorate", "--format=%H%x1f%ct%x1f%gs", undoRef, "--"}, helperOptions());
    std::vector<UndoEntry> entries;
    Pieces records(log, '\0');
    while (const auto record = records.next()) {
        const auto fields = splitFields<3>(*record, '\x1f');
        if (!fields)
            continue;
        std::int64_t seconds = 0;
        const std::string_view date = (*fields)[1];
        std::from_chars(date.data(), date.data() + date.size(), seconds);
        entries.push_back({std::string((*fields)[0]), Date(std::chrono::seconds(seconds)), std::string((*fields)[2])});
    }
    return entries;
}

} // namespace gitkit

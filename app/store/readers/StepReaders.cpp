// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/StepReaders.h"

#include "GitKit/undo/UndoJournal.h"
#include "GitKit/undo/UndoLog.h"

namespace plovik {

namespace {

constexpr std::size_t mostSteps = 500;
constexpr std::size_t mostEntries = 300;

} // namespace

std::vector<gitkit::UndoStep> readSteps(const gitkit::GitRepository& repo)
{
    return gitkit::undoSteps(repo, mostSteps);
}

std::vector<HeadLogEntry> readHeadLog(const gitkit::GitRepository& repo)
{
    std::vector<HeadLogEntry> entries;
    for (gitkit::RefLogEntry& entry : gitkit::refLog(repo, "HEAD", mostEntries)) {
        if (!entries.empty())
            entries.back().from = entry.hash;
        entries.push_back({.from = {}, .to = std::move(entry.hash), .date = entry.date, .text = std::move(entry.text)});
    }
    return entries;
}

} // namespace plovik

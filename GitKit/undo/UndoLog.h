// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <cstddef>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// The log of what can be taken back: the reflog of a ref beside HEAD, which each working tree has of its own. What it
// names is kept by git for as long as its entries are, about thirty days, and is not seen by other programs, servers,
// clones or bundles. All functions block and throw as the methods of GitRepository do; callers keep the writers of one
// repository apart.

/// The ref whose reflog it is.
inline constexpr const char* undoRef = "PLOVIK_UNDO_HEAD";

struct UndoEntry {
    std::string commit; ///< full hash
    Date date;
    std::string text;   ///< one line
    std::string record; ///< message of the commit
};

/// A ref was moved.
struct RefLogEntry {
    std::string hash; ///< full, of where it was moved to
    Date date;
    std::string text; ///< one line
};
/// Returns the newest entries of a ref's log, at most so many, the newest first; none for a ref without a log.
std::vector<RefLogEntry> refLog(const GitRepository& repo, const std::string& ref, std::size_t most);

/// Adds an entry. `text` is one line. Two entries in a row must have different commits: git notes no others.
void appendUndoEntry(const GitRepository& repo, const std::string& commit, const std::string& text);

/// Returns the newest entries, at most so many, the newest first; none before the first one was made.
std::vector<UndoEntry> undoEntries(const GitRepository& repo, std::size_t most);

} // namespace gitkit

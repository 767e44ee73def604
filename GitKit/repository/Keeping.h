// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/Kept.h"

#include <exception>
#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What an action takes from the user's files is kept in the folder `plovik/kept` of the repository, with its modes, links
// and index entries, so that it can be brought back: also after a crash, and for files of any size, which are linked where
// the file system can and copied elsewhere. What is older than thirty days is removed when something new is kept.
//
// `gitDirectory` is what gitDirectories() calls the working tree's own. Everything here blocks and changes files; callers
// keep the writers of one repository apart. Throws as the methods of GitRepository do, and GitError where files cannot be
// read or written.

enum class Taking {
    discard, ///< files go back to HEAD or to what is staged: index entries are kept, and what fails half-way is put back
    step,    ///< git goes on with an operation, and may stop again: only the files are kept
};

/// What keeping() has kept, if anything was taken, and the exception of what took it.
struct Keeping {
    std::optional<Kept> kept = {};
    std::exception_ptr failure = {};
};

/// Keeps `files`, runs `take`, and notes what then stands in their places. When a discard throws, a tracked file that is
/// neither as it was nor as HEAD has it is put back. Throws before `take` when the files cannot be kept.
Keeping keeping(const GitRepository& repo, const std::filesystem::path& gitDirectory,
                const std::vector<FileChange>& files, Taking taking, const std::function<void()>& take);

/// Returns everything that is kept, the oldest first.
std::vector<Kept> allKept(const std::filesystem::path& gitDirectory);

/// Puts the files back, and their index entries where they have not changed since. A file that has changed since is
/// merged where that makes no conflict. What is back is kept no longer. Throws the first failure after all files were
/// tried; those that failed stay kept.
BroughtBack bringBack(const GitRepository& repo, const std::filesystem::path& gitDirectory, const Kept& kept);

/// Writes copies of the kept files elsewhere: of one file to `place`, replacing what is there; of several into the folder
/// `place`, with their paths. Throws before it writes when one of several is there already.
void saveKept(const std::filesystem::path& gitDirectory, const Kept& kept, const std::filesystem::path& place);

/// Removes what is kept for good.
void forget(const std::filesystem::path& gitDirectory, const Kept& kept);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CloneRequest.h"
#include "GitKit/runner/RunContext.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace gitkit {

// How repositories come to be. Any thread; all but folderNameOf() run git and block until it has ended.

/// What is missing in a clone that is there all the same.
struct Cloned {
    std::string problem; ///< what git says of submodules or files that it could not bring; empty when all is there
};

/// Clones into `request.folder`, which is made with its parents where it is missing. When the clone fails or is stopped,
/// whatever was made for it is removed again; a folder that was there before stays. Throws GitError, with
/// ErrorKind::alreadyExists when there is something in the folder, LaunchError, and RunStopped.
Cloned cloneRepository(const CloneRequest& request, const RunContext& context);

/// Makes an empty repository in `folder`, an absolute path, whose first commit will be on `branch`. Files that are there
/// stay. Throws as cloneRepository() does, with ErrorKind::alreadyExists when the folder is a repository.
void createRepository(const std::filesystem::path& folder, const std::string& branch, const RunContext& context);

/// Returns the name that the user's configuration gives to a first branch, or "main".
std::string firstBranchName(const RunContext& context);

/// Returns the name of the folder into which git would clone from an address; empty when the address names none.
std::string folderNameOf(std::string_view address);

} // namespace gitkit

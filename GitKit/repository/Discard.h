// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/Trash.h"

#include <vector>

namespace gitkit {

class GitRepository;

/// Brings files back to what is staged of them, one after another, and stops at the first that fails. What git does not
/// know is moved to the Trash. Blocks; throws as GitRepository::discard() does.
void discardUnstaged(const GitRepository& repo, const std::vector<FileChange>& files, const Trash& trash);

} // namespace gitkit

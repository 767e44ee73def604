// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/FileStamp.h"

#include <vector>

namespace gitkit {

class GitRepository;

/// The stamps of the files and of the old names of renamed ones, for a question whose answer comes later. Any thread; blocks and
/// throws as the methods of GitRepository do.
std::vector<FileStamp> fileStamps(const GitRepository& repo, const std::vector<FileChange>& files);

/// Throws unless all stamped files still are as they were.
void requireUnchanged(const GitRepository& repo, const std::vector<FileStamp>& stamps);

} // namespace gitkit

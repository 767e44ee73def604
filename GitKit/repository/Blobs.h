// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffSides.h"
#include "GitKit/records/FileSample.h"
#include "GitKit/records/SideSizes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// The contents of files, as bytes, in git's own store and in the working tree. Any thread; these block and throw as the
// methods of GitRepository do.

/// Blobs by their hashes, in the order asked for; nullopt for one that is missing or larger than `limit` bytes.
std::vector<std::optional<std::string>> blobs(const GitRepository& repo, const std::vector<std::string>& hashes,
                                              std::size_t limit);

/// The whole files that a diff compares, those of up to `limit` bytes.
DiffSides diffSides(const GitRepository& repo, const DiffSource& source, std::size_t limit);

/// How large the files that a diff compares are, whatever their size.
SideSizes diffSizes(const GitRepository& repo, const DiffSource& source);

/// What stands at a path of `revision`, or of the working tree when there is none, and up to `bytes` of its beginning.
FileSample fileSample(const GitRepository& repo, const std::string& path, const std::optional<std::string>& revision,
                      std::size_t bytes);

} // namespace gitkit

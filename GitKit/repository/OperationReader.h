// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"

#include <filesystem>
#include <optional>
#include <string>

namespace gitkit {

/// Returns what is in progress according to the files in a working tree's own git directory. Runs nothing and never
/// throws. Leaves out what is missing, huge, damaged or written by a later version.
///
/// Returns a bisect only when nothing else is in progress. The files do not tell its `stepsLeft`. They do not tell how
/// many commits have been picked or reverted either, so `progress` counts only the remaining ones.
std::optional<OperationInProgress> readOperation(const std::filesystem::path& gitDirectory);

/// Returns whether something has this name, a link without a target included. Never throws.
bool isThere(const std::filesystem::path& path);

/// Returns the commit on which picking or reverting several commits began; nullopt when none is in progress.
std::optional<std::string> sequenceStart(const std::filesystem::path& gitDirectory);

/// Returns the message that git has prepared for the next commit, with its comments; empty when there is none.
/// `operation` is the result of readOperation().
std::string readPreparedMessage(const std::filesystem::path& gitDirectory,
                                const std::optional<OperationInProgress>& operation);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"

#include <filesystem>
#include <optional>
#include <string>

namespace gitkit {

/// What is in progress according to the files in a working tree's own git directory. Runs nothing and
/// never throws: what is missing, huge, damaged or of a later version is left out.
///
/// A bisect is only told of when nothing else is in progress. Its `stepsLeft` are not in the files, and neither is how
/// many of several commits have been picked or reverted: `progress` then counts what is left only.
std::optional<OperationInProgress> readOperation(const std::filesystem::path& gitDirectory);

/// The commit from which several commits are being picked or reverted; nothing when there is no such place.
std::optional<std::string> sequenceStart(const std::filesystem::path& gitDirectory);

/// The message that git has prepared for the next commit, its comments included; empty for none. `operation` is what
/// readOperation() found.
std::string readPreparedMessage(const std::filesystem::path& gitDirectory,
                                const std::optional<OperationInProgress>& operation);

} // namespace gitkit

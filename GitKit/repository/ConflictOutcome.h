// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/records/ErrorKind.h"
#include "GitKit/records/FileStamp.h"
#include "GitKit/repository/Stages.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// What ending a conflict writes, for Resolving.cpp and ConflictAnswers.cpp. They throw GitError.

/// What the index and the working tree are to have at paths.
struct ConflictOutcome {
    std::map<std::string, std::optional<Stage>> paths = {}; ///< nullopt: nothing
    std::map<std::string, Stages> conflicts = {};           ///< that are left; their files stay as they are
    std::vector<std::string> folders = {};                  ///< that make room for a file
    std::size_t hashSize = 40;
};

/// Returns its entries as `update-index -z --index-info` reads them.
std::string entriesOf(const ConflictOutcome& outcome);

/// Throws where one of them is resolved already, perhaps in another window.
void requireConflicts(const GitRepository& repo, const std::vector<Conflict>& conflicts);

/// Writes the index first, then the files. Throws before that where a file cannot be replaced.
void apply(const GitRepository& repo, const ConflictOutcome& outcome);

/// What may stand where a file is written or removed.
enum class Replaceable { file, fileOrLink };

/// Throws where anything else stands there, or in the place of a folder above.
void requireReplaceable(const GitRepository& repo, const std::string& path, Replaceable allowed);

/// Removes a file, and the folders above it that are empty then, as git does.
void removeWorkingFile(const GitRepository& repo, const std::string& path);

/// Stores bytes as they are and returns the hash.
std::string storedBlob(const GitRepository& repo, const std::string& bytes);

/// The mode that a merge gives a file: that of the side that has changed it.
std::string mergedMode(const Conflict& conflict);
std::size_t hashSizeOf(const Conflict& conflict);
inline Stage stageOf(const ConflictVersion& version) { return {version.mode, version.hash}; }

[[noreturn]] void refuseToResolve(const std::string& sentence, ErrorKind kind = ErrorKind::other);

} // namespace gitkit

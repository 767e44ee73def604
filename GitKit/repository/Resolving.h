// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"
#include "GitKit/records/FileStamp.h"
#include "GitKit/records/MergedSides.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {

class GitRepository;

// Ending conflicts, and beginning them anew. These block, and throw as the methods of GitRepository do; callers keep the
// writers of one repository apart, and keep what stands in the working files so that it can be brought back.
//
// Where something else than a file stands in a file's place, a folder, a pipe, a link, or a link in the place of a folder
// above it, nothing is done and GitError says so. So does ErrorKind::changedMeanwhile where a stamp is given and the working
// file has changed since, and where a conflict is there no longer.

/// Returns the stamp of a working file.
FileStamp workingStamp(const GitRepository& repo, const std::string& path);

/// Resolves a conflict of text with these bytes, as they are to be in the repository; the working file gets them with its
/// own line ends and encoding.
void resolveWith(const GitRepository& repo, const Conflict& conflict, const std::string& bytes,
                 const std::optional<FileStamp>& seen = {});

/// Writes a result that is not done yet into the working file, so that it outlives the program. The conflict stays. Returns
/// the file's new stamp.
FileStamp keepResult(const GitRepository& repo, const Conflict& conflict, const std::string& bytes,
                     const std::optional<FileStamp>& seen = {});

/// Resolves conflicts as answered. Of a file that both sides have renamed, an answer chooses the name: the text has the
/// changes of both; where they clash, a conflict of text is left under that name. Throws when the answer fits none of the
/// conflicts: see answersTo(). `label` tells the right side's file apart where both stay under one name.
void answerConflicts(const GitRepository& repo, const std::vector<Conflict>& conflicts, ConflictAnswer answer,
                     const std::string& label);

/// Returns the paths that an answer may write or remove.
std::vector<std::string> pathsOfAnswer(const Conflict& conflict, ConflictAnswer answer, const std::string& label);

/// Makes conflicts of these paths again, as git left them, whether they are resolved or begun. Paths without a conflict
/// are left alone. The working files are written anew, with these markers.
void startOver(const GitRepository& repo, const std::vector<std::string>& paths, const MergeMarkers& markers);

/// Returns the paths that were in conflict and are resolved, since the last commit.
std::vector<std::string> resolvedPaths(const GitRepository& repo);

/// Has git forget how it resolved a conflict, and starts over.
void forgetResolution(const GitRepository& repo, const std::string& path, const MergeMarkers& markers);

/// Returns what stands at the markers that git would have written for these sides.
MergeMarkers markersFor(const ConflictNames& names, int size = 7);

} // namespace gitkit

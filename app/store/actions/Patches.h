// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/Patch.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace plovik::actions {

// Patches as they are mailed, and packs of files. Hashes are full. Failures are reported.

/// Returns why no patch can be made of these commits, as a sentence; empty where one can.
QString cannotMakePatch(const std::vector<gitkit::Commit>& commits);
/// Returns the name that is suggested for the file of a patch.
QString patchFileName(const gitkit::Commit& commit);

/// Calls `copy` with the patch of a commit. Where its message would not survive, asks whether the changes alone are wanted.
void copyPatch(Actors actors, const std::string& commit, std::function<void(const QString& patch)> copy);
/// The same into a file, which is replaced.
void savePatch(Actors actors, const std::string& commit, const std::filesystem::path& file);
/// Writes a file for each commit, the oldest first, into a folder, where none of them may be yet.
void savePatches(Actors actors, const std::vector<std::string>& commits, const std::filesystem::path& folder);

/// Asks how a file with patches is applied, after a look into it.
void askToApply(Actors actors, const std::filesystem::path& file);

/// Writes the files of a commit into a pack, below a folder called `name`, and tells what it lacks.
void saveArchive(Actors actors, const std::string& commit, gitkit::ArchiveFormat format, const std::string& name,
                 const std::filesystem::path& file);

} // namespace plovik::actions

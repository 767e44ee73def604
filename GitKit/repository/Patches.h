// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Patch.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// Patches as they are mailed, and packs of files. Hashes are full. Any thread; these block and throw as the methods of
// GitRepository do.

/// Returns whether a commit's message holds a line at which the reader of a mailed patch takes the message to end.
bool endsPatchEarly(std::string_view message);

/// Returns a commit as a mail, whatever the settings for mails are. Throws for a merge, of which git would print the patch of
/// another commit.
std::string mailedPatch(const GitRepository& repo, const std::string& commit);
/// Returns the changes of a commit alone, as a patch that can be applied.
std::string barePatch(const GitRepository& repo, const std::string& commit);

/// Writes a file for each commit, the oldest first, into a folder. Throws when one of them is there, before any is written.
/// Returns their names.
std::vector<std::string> saveMailedPatches(const GitRepository& repo, const std::vector<std::string>& commits,
                                           const std::filesystem::path& folder);

/// Reads what a patch holds. Throws when git finds no patch in it.
PatchContents patchContents(const GitRepository& repo, const std::string& patch);

/// Changes the files of the working tree. Throws before anything has changed when the patch does not fit; by a three-way
/// merge it may leave conflicts, which throws ErrorKind::conflicts.
void applyPatch(const GitRepository& repo, const std::string& patch, PatchWay way);

/// Makes commits of mailed patches. Stops where one does not fit, like a rebase does.
void applyMails(const GitRepository& repo, const std::string& mails);

/// Writes the files of a commit, below a folder of this name, into a file. What was there is replaced at the end.
void writeArchive(const GitRepository& repo, const std::string& commit, ArchiveFormat format, const std::string& name,
                  const std::filesystem::path& file);
LeftOut leftOutOfArchive(const GitRepository& repo, const std::string& commit);

} // namespace gitkit

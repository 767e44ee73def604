// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Absorb.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// Changes of lines without context, and where they stand in older texts. The functions that read block and throw as the
// methods of GitRepository do; any thread.

/// Where lines of one side stand in place of lines of the other. A start is the number of the line above where no line is
/// counted.
struct ZeroHunk {
    int oldStart = 0;
    int oldCount = 0;
    int newStart = 0;
    int newCount = 0;
    std::vector<std::string> gone = {};
    std::vector<std::string> come = {};
};

/// Reads the hunks of a diff of one file without context.
std::vector<ZeroHunk> zeroHunks(std::string_view diff);
/// Returns how a file differs between HEAD and the index. Empty for what git calls binary.
std::vector<ZeroHunk> stagedHunks(const GitRepository& repo, const std::string& path);

/// Returns the lines of a text with their ends.
std::vector<std::string> linesOfText(std::string_view text);
std::string textOf(const std::vector<std::string>& lines);

/// Returns the blob that a file is in each of the commits; empty where it is none.
std::vector<std::string> blobsIn(const GitRepository& repo, const std::vector<std::string>& commits,
                                 const std::string& path);

/// The text that a file was once, and what has changed in it up to HEAD.
struct OlderText {
    std::vector<std::string> lines;
    std::vector<ZeroHunk> since;
};
/// Both are hashes of blobs.
OlderText olderText(const GitRepository& repo, const std::string& blob, const std::string& now);

/// Returns how many lines of the older text stand before a change that was made against HEAD. Returns nullopt where its
/// lines are not there one after another as they are in HEAD.
std::optional<int> placeIn(const OlderText& text, const AbsorbHunk& hunk);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

/// A commit as its bytes say it, taken apart as far as a new one needs it. A value. Everything is bytes in the commit's
/// own encoding.
struct CommitText {
    std::string tree;
    std::vector<std::string> parents;
    std::string author;    ///< the line without its name
    std::string committer; ///< the same
    std::string encoding;  ///< empty for UTF-8
    std::string others;    ///< further lines of the header, each with its end; without signatures and merged tags
    std::string message;

    bool operator==(const CommitText&) const = default;
};

/// Takes the bytes of a commit apart.
CommitText commitText(std::string_view bytes);
/// Returns the bytes of a commit. What was taken apart comes out the same, but for signatures and merged tags.
std::string bytesOf(const CommitText& commit);
/// Returns the commit with author and message in UTF-8; as it is where its encoding is not known.
CommitText inUtf8(CommitText commit);

/// Reads many commits at once. Any thread; blocks and throws as the methods of GitRepository do, and where one is missing.
std::map<std::string, CommitText> readCommits(const GitRepository& repo, const std::vector<std::string>& hashes,
                                              const RunOptions& options = {});

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitFile.h"

namespace gitkit {

/// One entry of a file's history: a commit, and the file as that commit changed it, with its path there.
struct FileRevision {
    Commit commit;
    CommitFile file;

    const std::string& id() const { return commit.hash; }

    bool operator==(const FileRevision&) const = default;
};

} // namespace gitkit

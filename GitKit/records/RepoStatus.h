// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"

#include <cstddef>
#include <optional>
#include <string>

namespace gitkit {

/// The working tree as one status read found it; of a bare repository, which has none, branch and commit of HEAD.
struct RepoStatus {
    std::optional<std::string> branch;   ///< short name; absent while HEAD is detached
    std::optional<std::string> oid;      ///< full hash of HEAD; absent before the first commit
    std::optional<std::string> upstream; ///< short name, such as origin/main
    ChangedFiles files;                  ///< in display order
    bool isBare = false;
    std::string warnings; ///< what git complained of although it succeeded, such as a folder it cannot read

    bool hasCommits() const { return oid.has_value(); }
    bool isDetached() const { return !branch && oid; }
    std::ptrdiff_t stagedCount() const { return files.stagedCount(); }

    bool operator==(const RepoStatus&) const = default;
};

} // namespace gitkit

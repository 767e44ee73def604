// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// One file that a commit touched.
struct CommitFile {
    char status = 'M'; ///< git's name-status letter: A, M, D, R, C, T
    std::string path;
    std::optional<std::string> originalPath; ///< before a rename or copy
    std::optional<std::string> source;       ///< the revision with the content, if it is another than the commit

    const std::string& id() const { return path; }

    bool operator==(const CommitFile&) const = default;
};

} // namespace gitkit

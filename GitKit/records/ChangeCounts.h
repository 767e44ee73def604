// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// How many lines of one file a commit adds and removes; both are absent for a binary file.
struct ChangeCounts {
    std::string path; ///< after the commit
    std::optional<int> added;
    std::optional<int> removed;

    const std::string& id() const { return path; }

    bool operator==(const ChangeCounts&) const = default;
};

} // namespace gitkit

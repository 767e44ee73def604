// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// The file that lines of a blame come from, and where it was before their commit changed it.
struct BlameOrigin {
    /// A file in a commit.
    struct Place {
        std::string hash;
        std::string path; ///< as bytes

        bool operator==(const Place&) const = default;
    };

    std::string path;              ///< in the commit that wrote the lines, as bytes
    std::optional<Place> previous; ///< absent when that commit created the file

    bool operator==(const BlameOrigin&) const = default;
};

} // namespace gitkit

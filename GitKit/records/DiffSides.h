// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// The whole files that a diff compares, as bytes. A side is absent when there is no file, when the file is larger than
/// the limit that was asked for, and when it cannot be read.
struct DiffSides {
    std::optional<std::string> before;
    std::optional<std::string> after;

    bool operator==(const DiffSides&) const = default;
};

/// The files that a diff was made from, to find them again.
struct DiffSource {
    std::optional<std::string> before, after; ///< blobs, as ParsedDiff names them
    std::optional<std::string> workingPath;   ///< where the new side stands when it is no blob

    bool operator==(const DiffSource&) const = default;
};

} // namespace gitkit

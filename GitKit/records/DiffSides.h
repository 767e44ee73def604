// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// The whole files that a diff compares, as bytes. A side is nothing where there is no file, or where it is larger than
/// was asked for or not to be had.
struct DiffSides {
    std::optional<std::string> before;
    std::optional<std::string> after;

    bool operator==(const DiffSides&) const = default;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>

namespace gitkit {

/// How many bytes the two files have that a diff compares; absent when there is no file and when the size is unknown.
struct SideSizes {
    std::optional<std::uint64_t> before;
    std::optional<std::uint64_t> after;

    bool operator==(const SideSizes&) const = default;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace gitkit {

/// The directories that hold a working tree's own git data and the data that it shares with other working trees, as
/// absolute paths. Both are the same in an ordinary repository.
struct GitDirectories {
    std::filesystem::path own;
    std::filesystem::path common;

    bool operator==(const GitDirectories&) const = default;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// Returns how many columns lie between two tab stops in a file, as the files ".editorconfig" of the working tree say:
/// those in the file's folder and in the folders above it up to `root`. Nullopt when none of them says so. `path` is the
/// file's below `root`, as bytes; it need not exist. Blocks, but never waits for another program; does not throw. Any
/// thread.
std::optional<int> editorTabWidth(const std::filesystem::path& root, std::string_view path);

/// Returns whether the glob of a section in a file ".editorconfig" matches a path below the folder of that file. The
/// cost is the product of the two lengths at most. Pure.
bool editorGlobMatches(std::string_view glob, std::string_view path);

} // namespace gitkit

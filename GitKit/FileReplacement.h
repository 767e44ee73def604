// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

// Writing files of a working tree in one step: whatever fails, what stood at the path stands there unchanged, with its
// bytes, mode, owner and times. Any thread. These return false, with errno set, when nothing was written.

/// Puts bytes in the place of a file, which may be missing. An existing file's mode and extended attributes are kept,
/// and its owner where the system allows that; a new file gets what the user's mask allows. `isExecutable` sets or
/// removes the right to execute.
bool replaceFile(const std::filesystem::path& file, std::string_view bytes,
                 const std::optional<bool>& isExecutable = {});

/// Puts a symbolic link in the place of a file or link, which may be missing.
bool replaceByLink(const std::filesystem::path& link, const std::string& target);

} // namespace gitkit

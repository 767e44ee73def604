// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/UniqueFd.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

namespace gitkit {

// Reading files of a working tree, where anything may stand in a file's place: opening a pipe, a socket or a device
// could block a thread for good. Any thread.

/// Opens a regular file, or the one that a link leads to. Not open, with errno set, when there is none. Never waits.
UniqueFd openRegularFile(const std::filesystem::path& file);

/// Returns up to `limit` bytes from the beginning of a regular file; nullopt when it cannot be read.
std::optional<std::string> regularFileBytes(const std::filesystem::path& file, std::uintmax_t limit = UINTMAX_MAX);

} // namespace gitkit

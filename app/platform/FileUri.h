// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace plovik {

/// Returns the "file" URI of an absolute path, whose bytes need not be UTF-8; empty for a path that is not absolute.
std::string fileUri(const std::filesystem::path& path);

/// Returns the path that a "file" URI names on this machine, byte for byte; nullopt for anything else.
std::optional<std::filesystem::path> pathOfFileUri(const std::string& uri);

} // namespace plovik

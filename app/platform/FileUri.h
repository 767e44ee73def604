// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace plovik {

/// The "file" URI of an absolute path: every byte that is not plain is percent-encoded, so that it holds any name.
std::string fileUri(const std::filesystem::path& path);

/// The path that a "file" URI names on this machine, byte for byte; none for anything else.
std::optional<std::filesystem::path> pathOfFileUri(std::string_view uri);

} // namespace plovik

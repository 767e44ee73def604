// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace plovik {

/// Moves a file, a folder or a link itself to the desktop's Trash. Returns once its place is empty and the Trash has
/// all of it; otherwise throws std::runtime_error with a sentence for the user. Blocks; any thread.
void moveToTrash(const std::filesystem::path& path);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>

namespace gitkit {

/// Moves a file or folder to the Trash. Throws and leaves it where it is when it cannot be moved.
using Trash = std::function<void(const std::filesystem::path&)>;

} // namespace gitkit

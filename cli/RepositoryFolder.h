// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace plovik {

/// Thrown for a folder that cannot be opened. what() is a sentence for the user that names the folder.
struct UnopenableFolder : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// Returns the folder that `name` means, absolute and without links: `name` itself, or its parent if it is a file. Runs
/// git, and throws UnopenableFolder unless the folder is in a repository's working tree.
std::filesystem::path repositoryFolder(const std::string& name);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

namespace plovik {

/// A folder that cannot be opened; what() is a sentence for the user that names it.
struct UnopenableFolder : std::runtime_error {
    using std::runtime_error::runtime_error;
};

/// The folder that `name` stands for, absolute and without links: itself, or the one that holds it when it is a file.
/// Runs git and throws UnopenableFolder unless the folder is in a repository's working tree.
std::filesystem::path repositoryFolder(const std::string& name);

} // namespace plovik

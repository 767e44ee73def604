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
/// git, and throws UnopenableFolder unless the folder is in a repository's working tree or in a bare repository.
std::filesystem::path repositoryFolder(const std::string& name);

/// Returns the folder that a clone of `address` goes to, absolute: `name`, or where that is empty a new one in the current
/// folder. Throws UnopenableFolder when there is something in it, or the address names none.
std::filesystem::path folderForClone(const std::string& address, const std::string& name);

/// Returns the folder in which a repository can be made, absolute. Throws UnopenableFolder when it is one already.
std::filesystem::path folderForInit(const std::string& name);

/// Returns the address as it is understood from any folder: that of a repository on this machine becomes absolute.
std::string addressFromAnywhere(const std::string& address);

} // namespace plovik

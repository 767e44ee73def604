// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

// Files of the working tree as what they are: regular files with their modes, and symbolic links as links, which are never
// followed. Any thread. Functions that write put a file in place in one step, or throw GitError and leave what was there.

enum class FileKind { none, regular, link, folder, other };

/// What stands at a path.
FileKind kindAt(const std::filesystem::path& path);

/// Tells one state of a file from another without reading it; empty when nothing is there.
std::string identityOf(const std::filesystem::path& path);

/// Returns the bytes of a regular file of at most `limit` bytes, or a link's target; nullopt for everything else. Never
/// waits for a writer, whatever stands at the path.
std::optional<std::string> bytesOf(const std::filesystem::path& path, std::uintmax_t limit);

/// Whether both are one file, or have the same bytes, of at most `limit`, and the same mode.
bool isSameFile(const std::filesystem::path& one, const std::filesystem::path& other, std::uintmax_t limit);

/// Makes `copy`, which is not there yet: a second name for the same file where the file system can and the file has no
/// other, and otherwise a copy.
void keepCopy(const std::filesystem::path& file, const std::filesystem::path& copy);

/// Puts a copy of a regular file or link in the place of `file`, with its mode; or the copy itself, where it is large or
/// cannot be copied.
void putCopy(const std::filesystem::path& copy, const std::filesystem::path& file);

/// The same, but the copy always stays.
void saveCopy(const std::filesystem::path& copy, const std::filesystem::path& file);

/// Writes bytes to a new file, without waiting for the disk. Returns whether all of them are there.
bool writeNew(std::string_view bytes, const std::filesystem::path& file);

/// Puts bytes in the place of a regular file, whose mode stays.
void putBytes(std::string_view bytes, const std::filesystem::path& file);

/// Makes the folders above `root`/`path` that are missing. Returns false when a link or a file stands in the place of one.
bool makeParents(const std::filesystem::path& root, const std::string& path);

} // namespace gitkit

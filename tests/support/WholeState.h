// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "tests/support/TestRepository.h"

#include <filesystem>
#include <string>

/// The bytes of a file; none for one that is not there.
std::string bytesAt(const std::filesystem::path& file);

/// Everything that must be equal when a state was brought back: index, status, refs, HEAD, stashes, settings, what git
/// remembers of an operation, and the bytes, targets and modes of all files.
std::string wholeState(const TestRepository& repo);

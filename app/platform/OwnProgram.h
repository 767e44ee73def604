// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace plovik {

/// Returns the folder of the program that this process runs, absolute and without links; empty when the system does not
/// tell.
std::filesystem::path ownProgramFolder();

} // namespace plovik

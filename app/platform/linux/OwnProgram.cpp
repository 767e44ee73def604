// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/OwnProgram.h"

#include <system_error>

namespace plovik {

std::filesystem::path ownProgramFolder()
{
    std::error_code unknown;
    return std::filesystem::read_symlink("/proc/self/exe", unknown).parent_path();
}

} // namespace plovik

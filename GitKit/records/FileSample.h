// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// What stands at a path, and how a file there begins.
struct FileSample {
    enum class Kind { missing, file, folder, submodule };

    Kind kind = Kind::missing;
    std::string beginning; ///< bytes of a file, or of the path that a symbolic link points to

    bool operator==(const FileSample&) const = default;
};

} // namespace gitkit

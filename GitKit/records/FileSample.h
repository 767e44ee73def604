// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// What is at a path, and the beginning of the file there.
struct FileSample {
    enum class Kind { missing, file, folder, submodule };

    Kind kind = Kind::missing;
    std::string beginning; ///< bytes of a file, or of the path that a symbolic link points to

    bool operator==(const FileSample&) const = default;
};

} // namespace gitkit

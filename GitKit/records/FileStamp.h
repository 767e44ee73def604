// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>

namespace gitkit {

/// Tells whether a file of the working tree, or what is staged of it, was changed since the stamp was taken.
struct FileStamp {
    std::string path;
    std::uint64_t inode = 0; ///< 0 when nothing stands there
    std::int64_t size = 0;
    std::int64_t modified = 0; ///< in nanoseconds since 1970, as the next one
    std::int64_t changed = 0;
    std::string staged; ///< how the index differs from HEAD there; empty when it does not

    bool operator==(const FileStamp&) const = default;
};

} // namespace gitkit

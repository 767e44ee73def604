// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// Whose list a pattern goes to.
enum class IgnorePlace {
    repository, ///< .gitignore at the top level, which is committed
    own,        ///< info/exclude, which nobody else gets
};

/// What is to be ignored from now on. Paths are bytes; that of a folder ends with a slash.
struct IgnoreRequest {
    std::vector<std::string> patterns;
    std::vector<std::string> files; ///< that the patterns are meant for
    IgnorePlace place = IgnorePlace::repository;
    bool stopsTracking = false; ///< takes those of the files that git tracks out of the index, and leaves them on disk

    bool operator==(const IgnoreRequest&) const = default;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <string>

namespace gitkit {

/// How much of a history a clone brings. `filesWhenNeeded` brings all commits, and contents when they are asked for.
enum class CloneDepth { everything, newestOnly, filesWhenNeeded };

/// What is cloned, and how.
struct CloneRequest {
    std::string address;          ///< as git takes it: a URL, host:path, or a path
    std::filesystem::path folder; ///< absolute; a new one or an empty one
    bool withSubmodules = false;
    CloneDepth depth = CloneDepth::everything;
    std::string branch = {}; ///< what is checked out; empty for what the remote proposes
};

} // namespace gitkit

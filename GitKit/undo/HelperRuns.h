// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

namespace gitkit {

/// Adds to the options of a run that keeps or restores a state: no hook hears of it, and it needs no identity of the
/// user's.
inline RunOptions helperOptions(RunOptions options = {})
{
    options.settings.emplace_back("core.hooksPath=/dev/null");
    for (const char* role : {"GIT_AUTHOR_", "GIT_COMMITTER_"}) {
        options.environment.emplace_back(std::string(role) + "NAME", "Plovik");
        options.environment.emplace_back(std::string(role) + "EMAIL", "undo@plovik.invalid");
    }
    return options;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/Text.h"
#include "GitKit/runner/GitError.h"

#include <string>

namespace gitkit {

/// The error for a patch whose file is no longer what the patch was made from.
inline GitError staleChange()
{
    return {"apply", 1,
            "The file has changed since its changes were shown. Nothing was done; look at it again and repeat.",
            ErrorKind::changedMeanwhile};
}

/// The error for staging a submodule that has no new commit.
inline GitError dirtySubmodule(const char* command, const std::string& path)
{
    return {command, 1,
            inQuotes(path) + " is a submodule whose own files have changed. Commit them in its own window first."};
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitError.h"

namespace gitkit {

/// The error for a patch whose file is no longer what the patch was made from.
inline GitError staleChange()
{
    return {"apply", 1,
            "The file has changed since its changes were shown. Nothing was done; look at it again and repeat.",
            ErrorKind::changedMeanwhile};
}

} // namespace gitkit

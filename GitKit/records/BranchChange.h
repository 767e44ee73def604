// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// What happens to HEAD once a branch has been created.
enum class AfterCreating { stay, checkOut };

/// Whether a branch with commits that are not merged anywhere is deleted too.
enum class Deletion { ifMerged, force };

/// How a pull joins what both sides have: as the configuration says, or as somebody has chosen.
enum class PullBy { setting, merging, rebasing };

} // namespace gitkit

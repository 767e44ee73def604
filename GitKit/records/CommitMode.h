// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// Whether a commit is added to HEAD or takes HEAD's place.
enum class CommitMode { create, amend };

/// Whether the hooks that may refuse a commit run.
enum class CommitHooks { run, skip };

} // namespace gitkit

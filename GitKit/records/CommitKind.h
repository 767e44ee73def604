// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// How a commit is read: a stash also has a commit of its untracked files.
enum class CommitKind { ordinary, stash };

} // namespace gitkit

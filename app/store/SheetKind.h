// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Identity.h"

#include <optional>
#include <string>
#include <variant>

namespace plovik {

/// The modal sheet that a window shows.
struct NewBranchSheet {
    std::optional<std::string> startPoint; ///< nullopt for HEAD
    bool operator==(const NewBranchSheet&) const = default;
};
struct RenameBranchSheet {
    std::string branch; ///< without refs/heads
    bool operator==(const RenameBranchSheet&) const = default;
};
struct NewTagSheet {
    std::string target; ///< full commit hash
    bool operator==(const NewTagSheet&) const = default;
};
/// Asks how the current branch is moved to a commit, and says what each way loses.
struct ResetSheet {
    std::string target; ///< full commit hash
    bool operator==(const ResetSheet&) const = default;
};
struct StashSheet {
    bool operator==(const StashSheet&) const = default;
};
struct GoToCommitSheet {
    bool operator==(const GoToCommitSheet&) const = default;
};
/// Shows what is sent to have a commit message written.
struct SentChangesSheet {
    bool operator==(const SentChangesSheet&) const = default;
};
/// Lists what was discarded and is kept.
struct DiscardedSheet {
    bool operator==(const DiscardedSheet&) const = default;
};
/// Asks who makes the commits, and then has the commit made that git refused without it.
struct IdentitySheet {
    gitkit::Identity known; ///< what the configuration says already
    bool operator==(const IdentitySheet&) const = default;
};
using SheetKind = std::variant<NewBranchSheet, NewTagSheet, StashSheet, GoToCommitSheet, SentChangesSheet,
                               DiscardedSheet, IdentitySheet, ResetSheet, RenameBranchSheet>;

} // namespace plovik

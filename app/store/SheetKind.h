// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <variant>

namespace plovik {

/// The modal sheet that a window shows.
struct NewBranchSheet {
    std::optional<std::string> startPoint; ///< nullopt for HEAD
    bool operator==(const NewBranchSheet&) const = default;
};
struct NewTagSheet {
    std::string target; ///< full commit hash
    bool operator==(const NewTagSheet&) const = default;
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
using SheetKind =
    std::variant<NewBranchSheet, NewTagSheet, StashSheet, GoToCommitSheet, SentChangesSheet, DiscardedSheet>;

} // namespace plovik

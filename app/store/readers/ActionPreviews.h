// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Merge.h"
#include "GitKit/records/Pick.h"
#include "GitKit/records/Push.h"
#include "GitKit/records/Reset.h"
#include "app/store/Drops.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

// What sheets say an action would do, for Latest. The functions may be called on any thread, block, and throw
// gitkit::GitError.

/// Reads what moving HEAD to a commit would lose. `target` is a full hash.
gitkit::ResetLoss readResetLoss(const gitkit::GitRepository& repo, const std::string& target);

/// Reads what a push would do, from what was fetched.
gitkit::PushPreview readPushPreview(const gitkit::GitRepository& repo, const gitkit::PushQuestion& question);

/// Reads which of these branches, by their full names, is to be pushed after they were rewritten; nullopt where no remote has
/// what they were before.
std::optional<gitkit::RewrittenBranch> readRewritten(const gitkit::GitRepository& repo,
                                                     const std::vector<std::string>& branches);

/// Reads what merging a ref into HEAD would do. `ref` is a full name.
gitkit::MergePreview readMergePreview(const gitkit::GitRepository& repo, const std::string& ref);

/// An action that puts changes together, and what with.
struct ForetoldQuestion {
    enum class Act : std::uint8_t { merge, rebase, pull, cherryPick, revert, applyStash };

    Act act = Act::merge;
    std::string ref = {};   ///< full name of what is merged, or rebased onto; full hash of the stash
    gitkit::Pick pick = {}; ///< for picks and reverts

    bool operator==(const ForetoldQuestion&) const = default;
};

using Foretold = std::variant<std::monostate, gitkit::MergePreview, gitkit::RebasePreview, gitkit::PickPreview>;

/// Reads what an action would do, in memory. Of a pull it tells what has been fetched already. It walks the history.
Foretold readForetold(const gitkit::GitRepository& repo, const ForetoldQuestion& question);

/// What is asked about a drop before it happens.
struct DropQuestion {
    Drop::Act act = Drop::Act::nothing;
    std::string ref; ///< full name
    std::string to;  ///< full name or full hash

    bool operator==(const DropQuestion&) const = default;
};

/// How far a branch would be moved.
struct MovePreview {
    int comes = 0; ///< commits that it leads to then and did not before
    int left = 0;  ///< commits that nothing leads to then
    int own = 0;   ///< commits that it has and the other one has not
    bool operator==(const MovePreview&) const = default;
};

using DropPreview = std::variant<std::monostate, gitkit::MergePreview, gitkit::RebasePreview, MovePreview>;

/// Reads what a drop would do, where more can be told than its name.
DropPreview readDropPreview(const gitkit::GitRepository& repo, const DropQuestion& question);

} // namespace plovik

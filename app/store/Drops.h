// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangedFiles.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/Movable.h"
#include "GitKit/records/Push.h"
#include "app/store/Verb.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// What the pointer drags. Value; names are bytes.
struct Dragged {
    enum class Kind : std::uint8_t { ref, commits, files, stash, commitFile };

    Kind kind = Kind::ref;
    /// The full name of the ref; full hashes of commits, the newest first; paths of changed files; the hash of the stash; the
    /// path of the file of a commit.
    std::vector<std::string> names = {};
    std::string revision = {}; ///< full hash of the commit that has the file
    bool hasMerge = false;     ///< among the commits

    bool operator==(const Dragged&) const = default;
};

/// What the pointer holds it over.
struct DropTarget {
    enum class Kind : std::uint8_t { ref, remote, commit, aboveCommit, stashes, workingCopy };

    Kind kind = Kind::ref;
    /// Full name of the ref, name of the remote, full hash of the commit; empty for the place beneath all that can be moved.
    std::string name = {};

    bool operator==(const DropTarget&) const = default;
};

/// What is known of the repository. Refers to it.
struct DropFacts {
    const std::vector<gitkit::GitRef>& branches;
    const std::vector<gitkit::GitRef>& remoteBranches;
    const std::vector<std::string>& remotes;
    const gitkit::ChangedFiles& files;
    std::string head; ///< full hash of HEAD's commit; empty before the first one
    const std::vector<gitkit::MovableCommit>* movable = nullptr; ///< that a plan may change; null for none
};

/// What letting go would do. Value.
struct Drop {
    enum class Act : std::uint8_t {
        nothing,
        merge,
        squash,
        rebase,
        push,
        askPush,
        fastForward,
        cherryPick,
        moveBranch,
        askReset,
        stashFiles,
        applyStash,
        popStash,
        takeFile,
        planSquash,
        planFixUp,
        planMove,
    };

    Act act = Act::nothing;
    gitkit::GitRef ref = {}; ///< that is merged, rebased onto, pushed, or moved
    gitkit::Push push = {};  ///< for push and askPush
    /// Full name of the ref, or full hash of the commit, that a branch is moved to, or that commits go into or above.
    std::string to = {};
    std::vector<std::string> names = {}; ///< commits, the newest first; files; the stash
    std::string revision = {};           ///< the commit that has the file
    std::string subject = {};            ///< of the commit that others go into or above

    bool operator==(const Drop&) const = default;
};

/// Returns what dragging something onto a target does. `isOther` asks for the other way of doing it, where there is one.
/// Pure: what runs just now is for dropVerb() and obstacle() to say.
Drop dropOf(const Dragged& dragged, const DropTarget& target, const DropFacts& facts, bool isOther);

/// Returns the verb by which a drop changes the repository, nullopt for one that only shows a sheet.
std::optional<Verb> dropVerb(Drop::Act act);

} // namespace plovik

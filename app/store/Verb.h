// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

namespace plovik {

/// Everything that changes the repository.
enum class Verb {
    fetch,
    pull,
    push,
    pushTag,
    deleteOnRemote,
    checkOut,
    checkOutRequest,
    createBranch,
    deleteBranch,
    renameBranch,
    setUpstream,
    editRemote,
    createTag,
    deleteTag,
    merge,
    rebase,
    rewrite,
    fastForward,
    moveBranch,
    pullOther,
    reset,
    cherryPick,
    revert,
    saveStash,
    applyStash,
    dropStash,
    commit,
    amend,
    continueOperation,
    skipStep,
    endOperation,
    markBisect,
    stage,
    unstage,
    discard,
    undoDiscard,
    undo,
    takeSide,
    takeFile,
    addWorktree,
    changeWorktree,
    runOwnCommand,
    ignore,
    applyPatch,
    applyMails,
    updateSubmodules,
};

/// The parts of a repository that a verb may change, and the network that it may use.
enum class Touch : std::uint8_t {
    index = 1,
    workingTree = 2,
    refs = 4,
    stashes = 8,
    network = 16,
};

bool touches(Verb verb, Touch touch);

/// Returns whether the verb must wait for its turn: it touches the index, the working tree or the stashes.
bool takesTurn(Verb verb);

} // namespace plovik

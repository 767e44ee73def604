// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// Why something that was asked of git was not done. A caller decides by this fact and never by the sentence beside it.
enum class ErrorKind {
    other,
    notARepository,
    refusedBySafeDirectory, ///< the repository belongs to another user
    bareRepository,         ///< there is no working tree here
    noSuchRef,              ///< no branch, tag or commit has this name
    ambiguousName,          ///< more than one object's hash begins with this name
    fileGone,               ///< a file of the working tree is not there any more
    noSuchPath,             ///< the commit, or the index, has no file of this name
    ignoreListMissing,      ///< the file that names the commits for blame to pass over is not there
    insideSubmodule,        ///< the path belongs to a repository inside this one
    invalidName,            ///< no branch or tag can be named so
    alreadyExists,          ///< a branch or tag of this name is there
    notFullyMerged,
    notFastForward, ///< the two sides have diverged, or the remote has commits that are not here
    rejectedByHook,
    authentication,
    hostKey,
    hostKeyChanged, ///< the remote is not the one that was known, or its key was renewed
    network,
    lockHeld, ///< another git is at work, or one that crashed left its lock
    conflicts,
    nothingToDo,
    wouldOverwriteLocalChanges, ///< of files that git knows; they can be stashed
    wouldOverwriteUnknownFiles, ///< that are untracked or ignored
    notCommitted,               ///< changes stand in the way of going on that are to be staged or committed first
    operationUnfinished,        ///< a merge, cherry-pick or revert would be ended without a word
    indexNotRestorable,         ///< what was staged in a stash cannot be staged again; nothing was changed
    changedMeanwhile,           ///< the file, stash or branch is no longer what the caller saw; nothing was changed
    contentsNotHere,            ///< a partial clone has not fetched them yet
    missingObject,              ///< the repository is damaged or incomplete
    identityUnknown,            ///< git knows neither name nor address for a commit
    checkedOutElsewhere,
    noUpstream,
};

/// Whose words a failure is told in.
enum class Speaker { plovik, git, hook };

/// Why git could not be started at all.
enum class LaunchCause { gitMissing, gitTooOld, folderMissing, notPermitted, other };

} // namespace gitkit

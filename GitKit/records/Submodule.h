// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RepoStatus.h"

#include <algorithm>
#include <string>
#include <vector>

namespace gitkit {

/// A repository inside a working tree, whose commit the index records.
struct Submodule {
    std::string path = {};      ///< from the root of the working tree
    std::string name = {};      ///< in .gitmodules; empty where that does not know it
    std::string url = {};       ///< as .gitmodules has it
    std::string recorded = {};  ///< the commit in the index
    bool isInitialised = false; ///< there is a repository in its folder

    bool operator==(const Submodule&) const = default;
};

enum class SubmoduleState {
    notInitialised, ///< there is no repository in its folder
    atRecorded,     ///< it has checked out the recorded commit
    otherCommit,    ///< it has checked out another one
    changedInside,  ///< at the recorded commit, with changes that are not committed there
    conflicted,
};

/// Returns the state of a submodule, which the status of the repository around it tells.
inline SubmoduleState stateOf(const Submodule& submodule, const RepoStatus& status)
{
    using enum SubmoduleState;
    const FileChange* const change = status.files.find(submodule.path);
    if (change && change->isConflicted)
        return conflicted;
    if (!submodule.isInitialised)
        return notInitialised;
    if (!change || !change->isSubmodule || change->worktree == '.')
        return atRecorded;
    return change->isDirtyInside ? changedInside : otherCommit;
}

/// Commits that updating a submodule would leave on no branch.
struct StrayCommits {
    std::string path = {};
    std::string head = {}; ///< the newest of them
    int count = 0;

    /// The branch that keepStrayCommits() makes.
    std::string branch() const { return "kept-" + head.substr(0, 10); }

    bool operator==(const StrayCommits&) const = default;
};

/// What a submodule goes through from one commit to another.
struct SubmoduleLog {
    struct Row {
        std::string hash = {};
        std::string subject = {};
        bool isRemoved = false; ///< only the old side has it

        bool operator==(const Row&) const = default;
    };
    enum class Missing { nothing, repository, commits };

    Missing missing = Missing::nothing; ///< what is not here, so that there are no rows
    std::vector<Row> rows = {};         ///< the newest first; not all of very many
    int ahead = 0;                      ///< commits that only the new side has
    int behind = 0;                     ///< commits that only the old side has

    bool operator==(const SubmoduleLog&) const = default;
};

} // namespace gitkit

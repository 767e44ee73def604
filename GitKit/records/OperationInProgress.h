// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// How far an operation of several steps has come.
struct OperationProgress {
    int step = 0; ///< of the one that git stopped at, from 1
    int total = 0;

    bool operator==(const OperationProgress&) const = default;
};

/// The commit or command that git stopped at.
struct OperationStop {
    std::string hash; ///< full where git wrote it so; empty for what is no commit
    std::string subject;

    bool operator==(const OperationStop&) const = default;
};

/// What a bisect knows so far.
struct BisectProgress {
    std::string good = "good", bad = "bad"; ///< the words for the two sides
    bool isGoodKnown = false;
    bool isBadKnown = false;
    std::optional<int> stepsLeft = {};       ///< roughly
    std::optional<OperationStop> found = {}; ///< the first bad commit, once that is known
    std::uintmax_t logSize = 0;              ///< grows with every mark

    bool operator==(const BisectProgress&) const = default;
};

/// What git was in the middle of when it stopped, as far as its own files tell. They may be another version's, or half
/// written: what they do not tell is absent. Names and subjects are bytes.
struct OperationInProgress {
    enum class Kind { merge, rebase, applyPatches, cherryPick, revert, bisect };

    using Progress = OperationProgress;
    using Stop = OperationStop;
    using Bisect = BisectProgress;

    Kind kind = Kind::merge;
    std::optional<std::string> branch = {};  ///< a rebase's: the short name of the branch that is being moved
    std::vector<std::string> others = {};    ///< full hashes of what is merged, or of what a rebase goes onto
    std::optional<std::string> mergeOf = {}; ///< the name of what is merged, as the message that git prepared has it
    std::optional<Progress> progress = {};
    std::optional<Stop> stop = {};
    std::optional<std::string> meldsInto = {}; ///< the commit that a rebase's stopped step becomes a part of
    std::optional<Bisect> bisect = {};         ///< of a bisect only
    bool appliesPatches = false;               ///< git keeps each commit's author and message beside, not for `commit`
    bool isIncomplete = false;                 ///< files that git needs to go on or back are missing or damaged

    /// Whether git knows `--continue` and `--skip` for it.
    bool canContinue() const { return kind != Kind::bisect; }
    bool canSkip() const { return kind != Kind::merge && kind != Kind::bisect; }

    bool operator==(const OperationInProgress&) const = default;
};

/// How an operation goes on: to its next step, without the stopped commit, back to where it began. `forget` leaves
/// everything as it is and ends the operation all the same.
enum class OperationStep { proceed, skip, abort, forget };

/// What a bisect is told of the commit that is checked out.
enum class BisectMark { good, bad, skip };

/// One of the two sides of a conflict.
enum class ConflictSide { ours, theirs };

/// The work that aborting an operation would lose and that git could not bring back.
struct AbortLoss {
    std::vector<std::string> paths; ///< resolved or otherwise changed since git stopped
    int steps = 0;                  ///< that were done before the one it stopped at

    bool isNothing() const { return paths.empty() && steps == 0; }

    bool operator==(const AbortLoss&) const = default;
};

} // namespace gitkit

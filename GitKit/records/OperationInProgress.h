// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// How far an operation of several steps has come.
struct OperationProgress {
    int step = 0; ///< number of the step that git stopped at, from 1
    int total = 0;

    bool operator==(const OperationProgress&) const = default;
};

/// The commit or command that git stopped at.
struct OperationStop {
    std::string hash; ///< abbreviated where git wrote it so; empty when git stopped at a command
    std::string subject;

    bool operator==(const OperationStop&) const = default;
};

/// What a bisect knows so far.
struct BisectProgress {
    std::string good = "good", bad = "bad"; ///< the words for the two sides
    bool isGoodKnown = false;
    bool isBadKnown = false;
    std::optional<int> stepsLeft = {};       ///< git's estimate
    std::optional<OperationStop> found = {}; ///< the first bad commit, once that is known
    std::uintmax_t logSize = 0;              ///< grows with every mark

    bool operator==(const BisectProgress&) const = default;
};

/// The operation that git stopped in, read from git's own files. Another version may have written them, or only half of
/// them may be there, so everything that could not be read is absent. Names and subjects are bytes.
struct OperationInProgress {
    enum class Kind { merge, rebase, applyPatches, cherryPick, revert, bisect };

    using Progress = OperationProgress;
    using Stop = OperationStop;
    using Bisect = BisectProgress;

    Kind kind = Kind::merge;
    std::optional<std::string> branch = {};  ///< short name of the branch that a rebase moves
    std::vector<std::string> others = {};    ///< full hashes of the merged commits, or of a rebase's new base
    std::optional<std::string> mergeOf = {}; ///< name of the merged ref in the message that git prepared
    std::optional<Progress> progress = {};
    std::optional<Stop> stop = {};
    std::optional<std::string> meldsInto = {}; ///< the commit that a rebase's stopped step is folded into
    /// The commit behind which a rebase has stopped so that it can be changed: full hash. HEAD may have moved since.
    std::optional<std::string> edits = {};
    std::optional<Bisect> bisect = {}; ///< set for a bisect only
    bool appliesPatches = false;       ///< git keeps author and message where `git commit` does not look
    bool isIncomplete = false;         ///< files that git needs to continue or abort are missing or damaged

    /// Whether git has `--continue` and `--skip` for this operation.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

/// A part of what a commit changes.
struct CommitPart {
    std::string patch = {};              ///< as bytes, against the commit's parent
    std::vector<std::string> files = {}; ///< paths, as bytes, of which it has all that the commit changes

    bool operator==(const CommitPart&) const = default;
};

/// What becomes of one commit. Hashes are full, and messages UTF-8.
struct RewriteStep {
    enum class Act {
        pick,   ///< it stays a commit of its own
        squash, ///< its change goes into the one before it, and its message after that one's
        fixUp,  ///< its change goes into the one before it, and its message goes
        drop,   ///< it goes
        split,  ///< it becomes two
        edit,   ///< git stops behind it
    };

    Act act = Act::pick;
    std::string commit;
    std::optional<std::string> message = {}; ///< new words of its own; nullopt: it keeps its words
    CommitPart part = {};                    ///< for a split: what the first of the two has
    std::string partMessage = {};            ///< for a split: the first one's words

    bool operator==(const RewriteStep&) const = default;
};

/// What is to become of the newest commits of a branch. A value, which knows nothing of their contents.
struct RewritePlan {
    std::string branch;               ///< full name; empty while HEAD is detached
    std::string base;                 ///< the commit beneath the oldest one; empty where that is a root
    std::vector<std::string> commits; ///< as they are, the oldest first
    std::vector<RewriteStep> steps;   ///< as they are to be, the oldest first
    /// Those that were asked to move, so that of two that have changed places the one is told that the user has moved.
    std::vector<std::string> asked = {};
    bool isElsewhere = false; ///< the branch is not checked out: neither index nor files follow it
    std::string onto = {};    ///< the commit that they are put on; empty: they stay on the base

    bool operator==(const RewritePlan&) const = default;
    std::string tip() const { return commits.empty() ? base : commits.back(); }
    const std::string& foundation() const { return onto.empty() ? base : onto; }
};

/// How many commits a plan does something to.
struct RewriteCounts {
    int moved = 0;
    int squashed = 0; ///< fixed up, too
    int reworded = 0;
    int dropped = 0;
    int split = 0;
    int stops = 0;

    bool operator==(const RewriteCounts&) const = default;
};

using Hashes = std::vector<std::string>;

RewritePlan untouchedPlan(std::string branch, std::string base, Hashes commits);
bool isUntouched(const RewritePlan& plan);
/// Returns whether nothing would be left of the commits.
bool dropsAll(const RewritePlan& plan);
RewriteCounts countsOf(const RewritePlan& plan);
/// Returns the commits that are in another order than before: as few as explain it, those that were asked to move before
/// others.
Hashes movedCommits(const RewritePlan& plan);
/// Returns the commits of a plan that do not stay as they are, and all that stand on those, the oldest first.
Hashes affectedCommits(const RewritePlan& plan);
/// Returns the plan up to the `changed`th step that does not leave its commit as it is, with what is squashed into that.
RewritePlan firstSteps(const RewritePlan& plan, std::size_t changed);

const RewriteStep* stepOf(const RewritePlan& plan, std::string_view commit);
/// Returns the commit into which this one goes; empty when it stays one of its own.
std::string squashedInto(const RewritePlan& plan, std::string_view commit);

// The following return the plan after a change of it. What is squashed into a commit goes with it, unless it is named, too.
// Commits that the plan does not have are passed over.

/// Places commits right above another one, in their order; above the base where `below` is empty.
RewritePlan moved(const RewritePlan& plan, const Hashes& commits, const std::string& below);
/// Places them one further up, which is the newer side, or one further down.
RewritePlan movedUp(const RewritePlan& plan, const Hashes& commits);
RewritePlan movedDown(const RewritePlan& plan, const Hashes& commits);
/// `act` is squash or fixUp.
RewritePlan squashed(const RewritePlan& plan, const Hashes& commits, const std::string& into, RewriteStep::Act act);
/// The same, each into the one beneath them that stays.
RewritePlan squashedIntoParent(const RewritePlan& plan, const Hashes& commits, RewriteStep::Act act);
RewritePlan dropped(const RewritePlan& plan, const Hashes& commits);
/// Makes them commits of their own again, with their own words.
RewritePlan kept(const RewritePlan& plan, const Hashes& commits);
/// Gives a commit, and what is squashed into it, one message.
RewritePlan reworded(const RewritePlan& plan, const std::string& commit, std::string message);
RewritePlan split(const RewritePlan& plan, const std::string& commit, CommitPart part, std::string partMessage,
                  std::string message);
RewritePlan stoppingAt(const RewritePlan& plan, const std::string& commit);

} // namespace gitkit

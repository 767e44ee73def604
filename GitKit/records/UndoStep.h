// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// A ref and the values that it must have and is to get, as full hashes.
struct RefUpdate {
    std::string name;                ///< full name
    std::optional<std::string> from; ///< nullopt: it must not exist
    std::optional<std::string> to;   ///< nullopt: it is deleted

    bool operator==(const RefUpdate&) const = default;
};

/// Where HEAD stands.
struct HeadPlace {
    std::string branch; ///< full name; empty while HEAD is detached
    std::string hash;   ///< of the commit; empty before the first one

    bool operator==(const HeadPlace&) const = default;
};

/// A commit that git's list of stashes has, and its line there.
struct KeptStash {
    std::string hash;
    std::string message;

    bool operator==(const KeptStash&) const = default;
};

/// A setting of the repository's own configuration.
struct Setting {
    std::string key; ///< as git lists it
    std::string value;

    auto operator<=>(const Setting&) const = default;
};

/// What a step keeps of one moment, before or after it. Trees are full hashes.
struct UndoPoint {
    HeadPlace head;
    /// What the tracked files follow where nothing local was changed; empty: the step moves none.
    std::string filesTree;
    std::string indexTree; ///< of what is staged, without conflicts; empty: the step leaves the index alone
    std::vector<std::string> conflicts; ///< entries of the index as "MODE HASH STAGE\tPATH"
    std::string overlay; ///< of the files whose bytes are kept, as writeOverlay() makes it; empty when there are none
    std::vector<std::string> absent;                     ///< paths among those that had no file at this moment
    std::vector<std::pair<std::string, unsigned>> modes; ///< of the files of the overlay, as the system has them
    std::string
        operation; ///< tree of the files in which git remembers an unfinished operation; empty when there is none
    std::vector<std::pair<std::string, std::string>> operationRefs; ///< the same for what git keeps as refs
    std::optional<std::vector<KeptStash>> stashes;                  ///< the newest first; nullopt: left alone
    std::optional<std::vector<Setting>> settings;                   ///< of branches and remotes; nullopt: left alone

    bool operator==(const UndoPoint&) const = default;
};

/// One action that can be taken back.
struct UndoStep {
    std::string id;
    std::string kind;  ///< a word of the caller's, like "merge"
    std::string title; ///< as it is shown
    Date began;
    Date date; ///< when it ended; when it began while that is not known
    UndoPoint before;
    std::optional<UndoPoint> after; ///< nullopt: the program or git ended in the middle
    std::vector<RefUpdate> refs;    ///< that have moved, from what they were; without an end, those that may have
    std::vector<std::string> aside; ///< ignored or untracked files that were moved out of the way
    std::string target;             ///< tree to which the action moved the files, where that was known; empty otherwise
    std::string message;            ///< that the user had typed for it, as for a commit
    std::string kept;               ///< name of what keeping() has kept of the user's files; empty when nothing
    std::string record;             ///< hash of the commit that holds it; empty while it is recorded
    std::string undoes;             ///< id of the step that this one took back; empty for an action of the user's

    bool operator==(const UndoStep&) const = default;
    /// Whether it has ended with the same state, as far as that is known.
    bool isSame() const { return after && refs.empty() && *after == before && aside.empty(); }
};

/// Why a step cannot be taken back as things are now.
enum class UndoRefusal {
    otherHead,   ///< another branch or commit is checked out
    movedRefs,   ///< refs are no longer where the step left them
    takenNames,  ///< refs were made again since
    otherState,  ///< an operation has begun, gone on or ended since
    editedFiles, ///< files were edited or staged since; it can be done all the same
    inTheWay,    ///< files that git does not know stand where others would come; the same
    checkedOut,  ///< another working tree has the branch checked out
    noEnd,       ///< the program ended in the middle of the step
};

/// Returns whether a step was told to others, so that it cannot be taken back from here.
bool isPublished(const UndoStep& step);
/// Returns whether a step is of those that can be taken back only as long as nothing else has happened since.
bool isPassing(const UndoStep& step);

/// Returns what a step has to do with in the end: itself, or what it has taken back or done again. `steps` are the newest
/// first, here and below.
const UndoStep& actionOf(const std::vector<UndoStep>& steps, const UndoStep& step);

/// Returns the step that undo takes back next, or null: an action, or what has done it again.
const UndoStep* nextUndo(const std::vector<UndoStep>& steps);
/// Returns the step whose taking back does again what was taken back last, or null when nothing was, or when something
/// has been done since.
const UndoStep* nextRedo(const std::vector<UndoStep>& steps);
/// Returns whether a step was taken back and not done again.
bool isTakenBack(const std::vector<UndoStep>& steps, const UndoStep& step);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"
#include "GitKit/undo/RefTransaction.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// Where HEAD stands.
struct HeadPlace {
    std::string branch; ///< full name; empty while HEAD is detached
    std::string hash;   ///< of the commit; empty before the first one

    bool operator==(const HeadPlace&) const = default;
};

/// What a step keeps of one moment, before or after it. Trees are full hashes.
struct UndoPoint {
    HeadPlace head;
    std::string
        filesTree; ///< that the tracked files follow where nothing local was changed; empty: the step moves none
    std::string indexTree; ///< of what is staged, without conflicts; empty: the step leaves the index alone
    std::string overlay;   ///< of the files whose bytes are kept, as writeOverlay() makes it; empty when there are none
    std::vector<std::string> absent;                     ///< paths among those that had no file at this moment
    std::vector<std::pair<std::string, unsigned>> modes; ///< of the files of the overlay, as the system has them

    bool operator==(const UndoPoint&) const = default;
};

/// One action that can be taken back.
struct UndoStep {
    std::string id;
    std::string kind;  ///< a word of the caller's, like "merge"
    std::string title; ///< as it is shown
    Date date;
    UndoPoint before;
    std::optional<UndoPoint> after; ///< nullopt: the program or git ended in the middle
    std::vector<RefUpdate> refs;    ///< that have moved, from what they were
    std::vector<std::string> aside; ///< ignored or untracked files that were moved out of the way
    std::string record;             ///< hash of the commit that holds it; empty while it is recorded
    std::string undoes;             ///< id of the step that this one took back; empty for an action of the user's
};

/// Returns the step that undo takes back next, or null. `steps` are the newest first.
const UndoStep* nextUndo(const std::vector<UndoStep>& steps);
/// Returns the step whose taking back does again what was taken back last, or null when nothing was, or when something
/// has been done since.
const UndoStep* nextRedo(const std::vector<UndoStep>& steps);

} // namespace gitkit

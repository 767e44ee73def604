// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Absorb.h"
#include "GitKit/records/CommitMode.h"
#include "app/store/actions/Actors.h"

#include <QString>

#include <functional>
#include <optional>
#include <string>

namespace plovik::actions {

// Putting what is staged into commits that are there already. Files and index stay as they are, and undo takes each of these
// back in one step. Main thread.

/// Returns a sentence that says why nothing that is staged can go into a commit now; empty when it can.
QString whyNotInto(const Changes& changes, const Snapshot& snapshot, const Rewriting& rewriting);

/// Puts the changes into the commits that the proposal has for them. When a hook refuses, the alert offers to do it without
/// hooks.
void absorb(Actors actors, const gitkit::AbsorbProposal& proposal,
            gitkit::CommitHooks hooks = gitkit::CommitHooks::run);

/// A commit that takes what is staged.
struct IntoCommit {
    std::string commit;                      ///< full hash
    std::string subject = {};                ///< its own, UTF-8
    std::optional<std::string> message = {}; ///< its new words, UTF-8; nullopt: it keeps its own
    std::function<void()> done = {};         ///< called after success, also of a fixup commit
};

/// Puts all that is staged into one commit. Where it does not fit there, it asks whether a commit is to be made on top that
/// is squashed into it later.
void commitStagedInto(Actors actors, const IntoCommit& into, gitkit::CommitHooks hooks = gitkit::CommitHooks::run);

} // namespace plovik::actions

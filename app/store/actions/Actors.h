// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/GitAccess.h"
#include "app/store/StoreServices.h"

namespace plovik {

class Changes;
class CommitDraft;
class Conflicts;
class Discards;
class Rewriting;
class Snapshot;
class WindowState;

/// The parts of a store that actions use. Made by the store for one call; main thread.
struct Actors {
    const GitAccess& git;
    const StoreServices& services;
    WindowState& window;
    const Snapshot& snapshot;
    Changes& changes;
    Discards& discards;
    CommitDraft& draft;
    Conflicts& conflicts;
    Rewriting& rewriting;
};

} // namespace plovik

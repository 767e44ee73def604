// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace plovik {

class RepositoryStore;

/// Opens a list of the branches below a button, and checks out the one that is chosen by typing a part of its name: the
/// checked out one, those that were checked out last, and then the rest, local ones before those of remotes. `store`
/// outlives the button. Main thread.
void chooseBranch(RepositoryStore& store, QWidget& button);

} // namespace plovik

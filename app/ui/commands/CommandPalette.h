// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenuBar;

namespace plovik {

class RepositoryStore;

/// Opens a list over the window of `bar` from which every command of its menus can be chosen, and every branch and tag,
/// which is then selected in the sidebar. Commands that are not possible now stand in it with the reason. Main thread.
void showCommandPalette(QMenuBar& bar, RepositoryStore& store);

} // namespace plovik

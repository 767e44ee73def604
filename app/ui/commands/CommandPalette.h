// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenuBar;

namespace plovik {

class MenuTarget;
class RepositoryStore;

/// Opens a list over the window of `bar` in which everything can be found by typing a part of its name: the commands of
/// the menus, the open and the recent repositories, branches and tags, which are then selected in the sidebar, files,
/// and the newest commits. Commands that are not possible now stand in it with the reason. Main thread.
void showCommandPalette(QMenuBar& bar, MenuTarget& target, RepositoryStore& store);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace plovik {

class MenuTarget;
class RepositoryStore;

/// Lists the pinned, the open and the recent repositories below a button, with what can be seen of each at a glance. The
/// one that is chosen is opened, or its window comes to the front; Ctrl+P pins one, and unpins it. Main thread; both
/// outlive the list.
void chooseRepository(RepositoryStore& store, MenuTarget& target, QWidget& button);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QMenu;

namespace plovik {

/// A widget that has a context menu for what is selected in it. Commands of the menu bar are carried out by the entries
/// of such menus (SelectionActions). Main thread.
class ContextMenuSource {
public:
    virtual ~ContextMenuSource() = default;

    /// Returns a new menu that the widget owns until it is deleted, or null while nothing is selected.
    virtual QMenu* makeContextMenu() = 0;
};

} // namespace plovik

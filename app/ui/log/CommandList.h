// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/ContextMenuSource.h"
#include "app/ui/widgets/RowList.h"

namespace plovik {

class CommandLogModel;

/// Lists the commands of a CommandLogModel with their time, a failure or cancellation, and their duration. "Copy" takes
/// the current command as a line for a shell. Main thread.
class CommandList : public RowList, public ContextMenuSource {
    Q_OBJECT

public:
    /// `model` must outlive the list.
    CommandList(CommandLogModel& model, QWidget* parent);

    /// Updates the model. The selected row stays where it is on the screen; without one the visible rows do, unless the
    /// newest command is visible.
    void update();
    using RowList::update;

public Q_SLOTS:
    void copy();

    QMenu* makeContextMenu() override;

Q_SIGNALS:
    void outputWanted();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QModelIndex keptIndex() const;

    CommandLogModel& model_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/RowList.h"

namespace plovik {

class CommandLogModel;

/// The rows of a CommandLogModel: when, what, how it ended if not well, and how long it took. Copying takes the current
/// command as a line for a shell. Main thread.
class CommandList : public RowList {
    Q_OBJECT

public:
    /// `model` outlives the list.
    CommandList(CommandLogModel& model, QWidget* parent);

    /// Takes over what is new; the selected row, or else all in sight, stay where they are, unless those are the
    /// newest.
    void update();
    using RowList::update;

public Q_SLOTS:
    void copy();

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

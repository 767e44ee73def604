// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListView>

namespace plovik {

/// A list of equally high rows that scrolls by pixel and draws no frame of its own. Main thread.
class RowList : public QListView {
    Q_OBJECT

public:
    /// `name` is the list's accessible name.
    explicit RowList(const QString& name, QWidget* parent = nullptr);
};

} // namespace plovik

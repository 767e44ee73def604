// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace plovik {

/// Lets F6 and Shift+F6 move the keyboard focus round the panes of a window: the lists, texts and diffs that show a focus
/// ring, and the message that is being written; from left to right, and from above to below. Main thread.
class PaneCycle : public QObject {
    Q_OBJECT

public:
    /// `window` owns the cycle.
    explicit PaneCycle(QWidget& window);

private:
    void move(int step);

    QWidget& window_;
};

/// Makes a widget without a focus ring a pane of its own.
void makePane(QWidget& widget);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace plovik {

class RepositoryStore;

/// Lets the mouse's back and forward buttons go through the places of a window, wherever in it the pointer is: views
/// would take them for clicks. Main thread.
class NavigationButtons : public QObject {
    Q_OBJECT

public:
    /// Owned by `window`; `store` may go before it.
    NavigationButtons(RepositoryStore& store, QWidget& window);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    RepositoryStore& store_;
    QWidget& window_;
};

} // namespace plovik

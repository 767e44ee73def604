// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QObject>
#include <QPointer>
#include <QPropertyNotifier>

class QAction;
class QMenu;
class QWidget;

namespace plovik {

/// What "Undo" does: a commit message that was written for the user gives way to what stood there before; the text with
/// the focus undoes its own changes as long as it has any; then the store takes back its last discard. Main thread.
class UndoCommand : public QObject {
public:
    /// Names, enables and answers `action`, which stands in `menu` and has the key of "Undo". The menu owns the
    /// command; the store may go before it.
    UndoCommand(QAction& action, QMenu& menu, RepositoryStore& store);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Target { nothing, writtenMessage, text, discard };
    Target target() const;
    void show();
    void run();
    void focusMoved(QWidget* focus);

    QAction& action_;
    QWidget* window_;
    RepositoryStore& store_;
    QPointer<QWidget> watched_; ///< the text with the focus
    QPropertyNotifier discardNotifier_;
    QPropertyNotifier messageNotifier_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/commands/Commands.h"

#include <QObject>
#include <QPointer>
#include <QPropertyNotifier>

#include <optional>

class QAction;
class QMenu;
class QWidget;

namespace plovik {

/// What "Undo" does: a commit message that was written for the user gives way to what stood there before; the text with
/// the focus undoes its own changes as long as it has any; then the store takes back its last step. "Redo" does the same
/// in the other direction, but brings no written message back. Main thread.
class UndoCommand : public QObject {
public:
    /// Names, enables and answers `action`, which stands in `menu` and has the key of `id`, either undo or redo. The menu
    /// owns the command; the store may go before it.
    UndoCommand(CommandId id, QAction& action, QMenu& menu, RepositoryStore& store);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class Target { nothing, writtenMessage, text, step };
    bool isUndo() const { return id_ == CommandId::undo; }
    std::optional<bool> textCan(const QWidget* widget) const;
    const std::optional<QString>& stepTitle() const;
    Target target() const;
    QString title(Target target) const;
    QString whyNot(Target target) const;
    void show();
    void run();
    void focusMoved(QWidget* focus);

    CommandId id_;
    QAction& action_;
    QWidget* window_;
    RepositoryStore& store_;
    QPointer<QWidget> watched_; ///< the text with the focus
    QPropertyNotifier stepNotifier_;
    QPropertyNotifier messageNotifier_;
    QPropertyNotifier runningNotifier_;
};

} // namespace plovik

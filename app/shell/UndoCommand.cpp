// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/UndoCommand.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <optional>

namespace plovik {

namespace {

/// Whether a text has something to undo; nothing for what is no text.
std::optional<bool> textCanUndo(const QWidget* widget)
{
    if (const auto* const line = qobject_cast<const QLineEdit*>(widget))
        return line->isUndoAvailable();
    if (const auto* const plain = qobject_cast<const QPlainTextEdit*>(widget))
        return !plain->isReadOnly() && plain->document()->isUndoAvailable();
    if (const auto* const rich = qobject_cast<const QTextEdit*>(widget))
        return !rich->isReadOnly() && rich->document()->isUndoAvailable();
    return std::nullopt;
}

} // namespace

UndoCommand::UndoCommand(QAction& action, QMenu& menu, RepositoryStore& store)
    : QObject(&menu), action_(action), window_(menu.parentWidget()->window()), store_(store),
      notifier_(store.canUndoDiscard.addNotifier([this] { show(); }))
{
    connect(&action, &QAction::triggered, this, &UndoCommand::run);
    connect(&menu, &QMenu::aboutToShow, this, &UndoCommand::show);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* focus) { focusMoved(focus); });
    show();
}

bool UndoCommand::takesBackDiscard() const
{
    return !textCanUndo(QApplication::focusWidget()).value_or(false) && store_.canUndoDiscard.value();
}

void UndoCommand::show()
{
    action_.setText(takesBackDiscard() ? QStringLiteral("Undo Discard") : QStringLiteral("Undo"));
    action_.setEnabled(store_.canUndoDiscard.value() || textCanUndo(QApplication::focusWidget()).value_or(false));
}

void UndoCommand::run()
{
    if (takesBackDiscard())
        store_.undoDiscard();
    else if (QWidget* const focus = QApplication::focusWidget(); textCanUndo(focus).value_or(false))
        QMetaObject::invokeMethod(focus, "undo");
}

void UndoCommand::focusMoved(QWidget* focus)
{
    if (watched_)
        watched_->removeEventFilter(this);
    watched_ = focus && focus->window() == window_ && textCanUndo(focus) ? focus : nullptr;
    if (watched_)
        watched_->installEventFilter(this);
    show();
}

bool UndoCommand::eventFilter(QObject* watched, QEvent* event)
{
    // A text claims the key even when it has nothing to undo; then it is left to the menu.
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo) &&
        takesBackDiscard())
    {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace plovik

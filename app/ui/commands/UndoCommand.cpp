// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/UndoCommand.h"

#include "app/ui/commands/Commands.h"
#include "app/ui/commands/SelectionActions.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/workingcopy/CommitBox.h"

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

/// Returns whether a text has something to undo, and nullopt for a widget that is no text.
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

bool isInCommitBox(const QWidget* widget)
{
    while (widget && !qobject_cast<const CommitBox*>(widget))
        widget = widget->parentWidget();
    return widget;
}

} // namespace

UndoCommand::UndoCommand(QAction& action, QMenu& menu, RepositoryStore& store)
    : QObject(&menu), action_(action), window_(menu.parentWidget()->window()), store_(store),
      discardNotifier_(store.discards().canUndo.addNotifier([this] { show(); })),
      messageNotifier_(store.draft().canUndoMessage.addNotifier([this] { show(); }))
{
    connect(&action, &QAction::triggered, this, &UndoCommand::run);
    connect(&menu, &QMenu::aboutToShow, this, &UndoCommand::show);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* focus) { focusMoved(focus); });
    show();
}

UndoCommand::Target UndoCommand::target() const
{
    const QWidget* const focus = focusBehindMenus();
    const bool textCan = textCanUndo(focus).value_or(false);
    // In the commit box the written message is the last change of both fields.
    if (store_.draft().canUndoMessage.value() && (!textCan || isInCommitBox(focus)))
        return Target::writtenMessage;
    if (textCan)
        return Target::text;
    return store_.discards().canUndo.value() ? Target::discard : Target::nothing;
}

void UndoCommand::show()
{
    const Target undone = target();
    action_.setText(undone == Target::discard          ? QCoreApplication::translate("Commands", "Undo Discard")
                    : undone == Target::writtenMessage ? QCoreApplication::translate("Commands", "Undo Written Message")
                                                       : command(CommandId::undo).title());
    action_.setEnabled(undone != Target::nothing);
    const QString whyNot = QCoreApplication::translate("Commands", "There is nothing to undo.");
    action_.setToolTip(plainToolTip(undone == Target::nothing ? whyNot : QString()));
}

void UndoCommand::run()
{
    switch (target()) {
    case Target::writtenMessage:
        return store_.draft().undoMessage();
    case Target::discard:
        return store_.discards().undo();
    case Target::text:
        QMetaObject::invokeMethod(focusBehindMenus(), "undo");
        return;
    case Target::nothing:
        return;
    }
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
    // A text claims the key even when the change to undo is the store's. Then the key is left to the menu.
    const auto isStores = [this] { return target() == Target::discard || target() == Target::writtenMessage; };
    if (event->type() == QEvent::ShortcutOverride && static_cast<QKeyEvent*>(event)->matches(QKeySequence::Undo) &&
        isStores())
    {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace plovik

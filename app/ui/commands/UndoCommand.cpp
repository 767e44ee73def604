// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/UndoCommand.h"

#include "app/store/Obstacles.h"
#include "app/ui/commands/SelectionActions.h"
#include "app/ui/merge/MergeEditor.h"
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

/// A menu with a longer title would be wider than the window.
constexpr qsizetype longestStepTitle = 60;

QString shortened(const QString& title)
{
    return title.size() <= longestStepTitle ? title : title.left(longestStepTitle - 1) + QChar(u'…');
}

bool documentCan(const QTextDocument& document, bool isUndo)
{
    return isUndo ? document.isUndoAvailable() : document.isRedoAvailable();
}

bool isInCommitBox(const QWidget* widget)
{
    while (widget && !qobject_cast<const CommitBox*>(widget))
        widget = widget->parentWidget();
    return widget;
}

} // namespace

UndoCommand::UndoCommand(CommandId id, QAction& action, QMenu& menu, RepositoryStore& store)
    : QObject(&menu), id_(id), action_(action), window_(menu.parentWidget()->window()), store_(store),
      stepNotifier_((isUndo() ? store.undo().undoTitle : store.undo().redoTitle).addNotifier([this] { show(); })),
      messageNotifier_(store.draft().canUndoMessage.addNotifier([this] { show(); })),
      runningNotifier_(store.changes().running.addNotifier([this] { show(); }))
{
    connect(&action, &QAction::triggered, this, &UndoCommand::run);
    connect(&menu, &QMenu::aboutToShow, this, &UndoCommand::show);
    connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* focus) { focusMoved(focus); });
    show();
}

/// Returns whether a text has something to undo or redo, and nullopt for a widget that is no text.
std::optional<bool> UndoCommand::textCan(const QWidget* widget) const
{
    if (const auto* const line = qobject_cast<const QLineEdit*>(widget))
        return isUndo() ? line->isUndoAvailable() : line->isRedoAvailable();
    if (const auto* const merge = qobject_cast<const MergeEditor*>(widget)) // its document knows nothing of it
        return isUndo() ? merge->canUndo() : merge->canRedo();
    if (const auto* const plain = qobject_cast<const QPlainTextEdit*>(widget))
        return !plain->isReadOnly() && documentCan(*plain->document(), isUndo());
    if (const auto* const rich = qobject_cast<const QTextEdit*>(widget))
        return !rich->isReadOnly() && documentCan(*rich->document(), isUndo());
    return std::nullopt;
}

const std::optional<QString>& UndoCommand::stepTitle() const
{
    return isUndo() ? store_.undo().undoTitle.value() : store_.undo().redoTitle.value();
}

UndoCommand::Target UndoCommand::target() const
{
    const QWidget* const focus = focusBehindMenus();
    const bool canText = textCan(focus).value_or(false);
    // In the commit box the written message is the last change of both fields.
    if (isUndo() && store_.draft().canUndoMessage.value() && (!canText || isInCommitBox(focus)))
        return Target::writtenMessage;
    if (canText)
        return Target::text;
    return stepTitle() ? Target::step : Target::nothing;
}

QString UndoCommand::title(Target target) const
{
    if (target == Target::writtenMessage)
        return QCoreApplication::translate("Commands", "Undo Written Message");
    if (target != Target::step)
        return command(id_).title();
    const QString named = isUndo() ? QCoreApplication::translate("Commands", "Undo %1", "what was done")
                                   : QCoreApplication::translate("Commands", "Redo %1", "what was undone");
    return plainMenuText(named.arg(shortened(*stepTitle())));
}

void UndoCommand::show()
{
    const Target now = target();
    const QString reason = whyNot(now);
    action_.setText(title(now));
    action_.setEnabled(reason.isEmpty());
    action_.setToolTip(plainToolTip(reason));
}

QString UndoCommand::whyNot(Target target) const
{
    if (target == Target::step)
        return obstacle(store_.changes(), store_.snapshot(), Verb::undo);
    if (target != Target::nothing)
        return {};
    return isUndo() ? store_.undo().whyNoUndo() : QCoreApplication::translate("Commands", "There is nothing to redo.");
}

void UndoCommand::run()
{
    switch (target()) {
    case Target::writtenMessage:
        return store_.draft().undoMessage();
    case Target::step:
        return isUndo() ? store_.undo().undo() : store_.undo().redo();
    case Target::text:
        QMetaObject::invokeMethod(focusBehindMenus(), isUndo() ? "undo" : "redo");
        return;
    case Target::nothing:
        return;
    }
}

void UndoCommand::focusMoved(QWidget* focus)
{
    if (watched_)
        watched_->removeEventFilter(this);
    watched_ = focus && focus->window() == window_ && textCan(focus) ? focus : nullptr;
    if (watched_)
        watched_->installEventFilter(this);
    show();
}

bool UndoCommand::eventFilter(QObject* watched, QEvent* event)
{
    // A text claims the key even when the change to undo is the store's. Then the key is left to the menu.
    const auto isMine = [this](const QKeyEvent& key) {
        return QKeySequence(key.keyCombination()) == action_.shortcut();
    };
    const auto isStores = [this] { return target() == Target::step || target() == Target::writtenMessage; };
    if (event->type() == QEvent::ShortcutOverride && isMine(*static_cast<QKeyEvent*>(event)) && isStores()) {
        event->ignore();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace plovik

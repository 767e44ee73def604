// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/StepMenu.h"

#include "app/store/Obstacles.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Steps.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/timeline/StepText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

#include <functional>
#include <utility>

namespace plovik {

namespace {

struct StepMenuTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::StepMenu)
};

using Kind = TimelineRow::Kind;

QString whyNotUndone(const TimelineRow& row)
{
    switch (row.kind) {
    case Kind::undone:
        return StepMenuTexts::tr("It was taken back already.");
    case Kind::undo:
        return StepMenuTexts::tr("It took another step back. Redo does that step again.");
    case Kind::terminal:
        return StepMenuTexts::tr("Another program did it.");
    case Kind::step:
        break;
    }
    if (gitkit::isPublished(row.step))
        return StepMenuTexts::tr("Others may have it by now.");
    return row.step.after ? QString() : StepMenuTexts::tr("It is not known what it has changed.");
}

QString whyNotRestored(const TimelineRow& row)
{
    const gitkit::UndoStep& step = row.step;
    const bool movesFiles = step.after && step.before.filesTree != step.after->filesTree;
    const bool restores = row.kind != Kind::terminal && (movesFiles || !step.before.overlay.empty());
    return restores ? QString() : StepMenuTexts::tr("It has changed no files that could be restored.");
}

QString whyNoBranch(const TimelineRow& row)
{
    return row.step.before.head.hash.empty() ? StepMenuTexts::tr("Nothing had been committed before it.") : QString();
}

QString whyNotForgotten(const TimelineRow& row)
{
    return row.kind == Kind::terminal ? StepMenuTexts::tr("Another program did it, and git itself keeps it.")
                                      : QString();
}

void beginBranch(RepositoryStore& store, const TimelineRow& row)
{
    if (row.kind == Kind::terminal)
        store.window().showSheet(NewBranchSheet{row.step.before.head.hash});
    else
        actions::newBranchBefore(store.actors(), row.step);
}

} // namespace

QMenu* makeStepMenu(RepositoryStore& store, const TimelineRow& row, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    const auto add = [menu](CommandId id, const QString& whyNot, std::function<void()> run) {
        QAction* const entry = menu->addAction(command(id).title(), menu, std::move(run));
        entry->setEnabled(whyNot.isEmpty());
        entry->setToolTip(plainToolTip(whyNot));
        markAs(id, entry);
    };
    const std::string& id = row.step.id;
    const QString inTheWay = obstacle(store.changes(), store.snapshot(), Verb::undo);
    const auto firstOf = [](const QString& one, const QString& other) { return one.isEmpty() ? other : one; };
    add(CommandId::undoToStep, firstOf(whyNotUndone(row), inTheWay), [&store, id] { store.undo().confirmUndoTo(id); });
    if (gitkit::isPublished(row.step))
        add(CommandId::revert, obstacle(store.changes(), store.snapshot(), Verb::revert),
            [&store, hash = stepText::hash(row)] { actions::revert(store.actors(), hash); });
    if (const auto lost = actions::lostByPush(store.snapshot(), row.step); !lost.empty())
        add(CommandId::pushStepBack, obstacle(store.changes(), store.snapshot(), Verb::pushTag),
            [&store, lost] { actions::confirmPushBack(store.actors(), lost); });
    add(CommandId::restoreStepFiles, firstOf(whyNotRestored(row), inTheWay),
        [&store, step = row.step] { actions::confirmRestoreFiles(store.actors(), step); });
    add(CommandId::newBranchBeforeStep, whyNoBranch(row), [&store, row] { beginBranch(store, row); });
    menu->addSeparator();
    const std::string hash = stepText::hash(row);
    add(CommandId::copyHash, hash.empty() ? StepMenuTexts::tr("It has reached no commit.") : QString(),
        [text = exactText(hash)] { QGuiApplication::clipboard()->setText(text); });
    menu->addSeparator();
    add(CommandId::forgetStep, firstOf(whyNotForgotten(row), inTheWay),
        [&store, step = row.step] { actions::confirmForget(store.actors(), store.undo(), step); });
    return menu;
}

} // namespace plovik

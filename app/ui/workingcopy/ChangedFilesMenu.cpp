// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFilesMenu.h"

#include "GitKit/records/OperationInProgress.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/ui/window/OperationText.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

bool isGone(const gitkit::FileChange& file)
{
    return file.worktree == 'D' || (file.index == 'D' && file.worktree == '.' && !file.isConflicted);
}

void copyPaths(const Staging::Files& files)
{
    QStringList paths;
    for (const gitkit::FileChange& file : files)
        paths.append(shownText(file.path));
    QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

/// Why a file's lines and history cannot be shown; empty when they can.
QString reasonAgainstInspecting(const RepositoryStore& store, const Staging::Files& files)
{
    if (files.size() != 1)
        return u"Select one file to look into."_s;
    const gitkit::FileChange& file = files.front();
    if (file.path.ends_with('/'))
        return u"This is a folder."_s;
    if (file.isSubmodule)
        return u"A submodule is a repository of its own."_s;
    if (file.isUntracked())
        return u"Git does not know this file yet."_s;
    return isGone(file) && !store.snapshot().status.value().oid ? u"Nothing has been committed yet."_s : QString();
}

void addInspection(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    const QString reason = reasonAgainstInspecting(store, files);
    const auto add = [&](const QString& title, InspectedFile::Tab tab) {
        QAction* const action = menu.addAction(title, &menu, [&store, file = files.front(), tab] {
            InspectedFile inspected{file.path, std::nullopt, tab};
            // What is no longer there is shown as HEAD has it.
            if (isGone(file))
                inspected.revision = store.snapshot().status.value().oid;
            store.window().inspect(std::move(inspected));
        });
        action->setEnabled(reason.isEmpty());
        if (!reason.isEmpty())
            action->setToolTip(reason);
    };
    add(u"Show Blame"_s, InspectedFile::Tab::blame);
    add(u"Show File History"_s, InspectedFile::Tab::history);
}

/// What ends a conflict, for those of the files that have one.
void addResolving(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    Staging::Files conflicted;
    std::ranges::copy_if(files, std::back_inserter(conflicted), &gitkit::FileChange::isConflicted);
    if (conflicted.empty())
        return;
    using Side = gitkit::ConflictSide;
    const auto add = [&](const QString& title, Side side) {
        QAction* const action =
            menu.addAction(title, &menu, [&store, conflicted, side] { store.staging().takeSide(conflicted, side); });
        action->setToolTip(operationText::side(store, side));
    };
    add(u"Use Ours"_s, Side::ours);
    add(u"Use Theirs"_s, Side::theirs);
    menu.addAction(u"Mark Resolved"_s, &menu, [&store, conflicted] { store.staging().stage(conflicted); })
        ->setToolTip(u"Stage what stands in the working copy"_s);
    menu.addSeparator();
}

} // namespace

QMenu* makeChangedFilesMenu(RepositoryStore& store, const Staging::Files& files, const QString& openTitle,
                            QWidget* parent)
{
    auto* menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    addResolving(*menu, store, files);
    const auto stateIs = [&store](gitkit::StageState state) {
        return
            [&store, state](const gitkit::FileChange& file) { return store.staging().shownStageState(file) == state; };
    };
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::full)))
        menu->addAction(u"Stage"_s, menu, [&store, files] { store.staging().stage(files); });
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::none)))
        menu->addAction(u"Unstage"_s, menu, [&store, files] { store.staging().unstage(files); });
    menu->addAction(Staging::discardTitle(files), menu, [&store, files] { store.staging().confirmDiscard(files); });
    menu->addSeparator();
    auto* open = menu->addAction(openTitle, menu, [&store, files] { actions::openInEditor(store.actors(), files); });
    auto* reveal =
        menu->addAction(u"Reveal in File Browser"_s, menu, [&store, files] { actions::reveal(store.actors(), files); });
    for (QAction* action : {open, reveal})
        action->setEnabled(!std::ranges::all_of(files, isGone));
    addInspection(*menu, store, files);
    menu->addAction(u"Copy Path"_s, menu, [files] { copyPaths(files); });
    return menu;
}

} // namespace plovik

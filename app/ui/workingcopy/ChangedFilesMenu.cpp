// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFilesMenu.h"

#include "GitKit/records/OperationInProgress.h"
#include "app/store/ConflictWords.h"
#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/store/actions/Ignoring.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/window/OperationText.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <vector>

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::ChangedFilesMenu)
};

bool isGone(const RepositoryStore& store, const gitkit::FileChange& file)
{
    // The letters of a conflict tell what the sides did. Git leaves the version of one side in place.
    std::error_code unreadable;
    if (file.isConflicted)
        return !std::filesystem::exists(std::filesystem::symlink_status(store.root() / file.path, unreadable));
    return file.worktree == 'D' || (file.index == 'D' && file.worktree == '.');
}

void copyPaths(const Staging::Files& files)
{
    QStringList paths;
    for (const gitkit::FileChange& file : files)
        paths.append(exactText(file.path));
    QGuiApplication::clipboard()->setText(paths.join(u'\n'));
}

/// Returns why a file's lines and history cannot be shown, or an empty string when they can.
QString reasonAgainstInspecting(const RepositoryStore& store, const Staging::Files& files)
{
    if (files.size() != 1)
        return Texts::tr("Select one file to look into.");
    const gitkit::FileChange& file = files.front();
    if (file.path.ends_with('/'))
        return Texts::tr("This is a folder.");
    if (file.isSubmodule)
        return Texts::tr("A submodule is a repository of its own.");
    if (file.isUntracked())
        return Texts::tr("Git does not know this file yet.");
    return isGone(store, file) && !store.snapshot().status.value().oid ? Texts::tr("Nothing has been committed yet.")
                                                                       : QString();
}

void addInspection(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    const QString reason = reasonAgainstInspecting(store, files);
    const auto add = [&](CommandId id, const QString& title, InspectedFile::Tab tab) {
        QAction* const action = menu.addAction(title, &menu, [&store, file = files.front(), tab] {
            InspectedFile inspected{file.path, std::nullopt, tab};
            // A file that is gone is shown as it is in HEAD.
            if (isGone(store, file))
                inspected.revision = store.snapshot().status.value().oid;
            store.window().inspect(std::move(inspected));
        });
        markAs(id, action)->setEnabled(reason.isEmpty());
        if (!reason.isEmpty())
            action->setToolTip(plainToolTip(reason));
    };
    add(CommandId::showBlame, Texts::tr("Show Blame"), InspectedFile::Tab::blame);
    add(CommandId::showFileHistory, Texts::tr("Show File History"), InspectedFile::Tab::history);
}

/// Returns the conflicts that files are in, each once; none while one of them is not known.
std::vector<gitkit::Conflict> conflictsOf(const RepositoryStore& store, const Staging::Files& conflicted)
{
    std::vector<gitkit::Conflict> conflicts;
    for (const gitkit::FileChange& file : conflicted) {
        const gitkit::Conflict* const found = store.conflicts().find(file.path);
        if (!found)
            return {};
        if (std::ranges::find(conflicts, found->path, &gitkit::Conflict::path) == conflicts.end())
            conflicts.push_back(*found);
    }
    return conflicts;
}

/// Adds the answers that all of these conflicts can have.
void addAnswers(QMenu& menu, RepositoryStore& store, const std::vector<gitkit::Conflict>& conflicts)
{
    using gitkit::ConflictAnswer;
    const gitkit::ConflictNames& names = store.conflicts().list.value().names;
    for (const ConflictAnswer answer : gitkit::answersTo(conflicts.front())) {
        const auto fits = [answer](const gitkit::Conflict& conflict) {
            const std::vector<ConflictAnswer> answers = gitkit::answersTo(conflict);
            return std::ranges::find(answers, answer) != answers.end();
        };
        if (!std::ranges::all_of(conflicts, fits))
            continue;
        // What a side has is told of one file; of several its name is enough.
        const QString title = conflictWords::answerTitle(
            conflicts.size() == 1 ? conflicts.front() : gitkit::Conflict{.path = {}}, names, answer);
        QAction* const action = menu.addAction(
            plainMenuText(title), &menu, [&store, conflicts, answer] { store.conflicts().answer(conflicts, answer); });
        action->setToolTip(plainToolTip(conflictWords::answerTip(conflicts.front(), answer)));
        if (answer == ConflictAnswer::left || answer == ConflictAnswer::right)
            markAs(answer == ConflictAnswer::left ? CommandId::useOurs : CommandId::useTheirs, action);
    }
}

/// The same while it is not known what the conflicts are.
void addSides(QMenu& menu, RepositoryStore& store, const Staging::Files& conflicted)
{
    using Side = gitkit::ConflictSide;
    for (const Side side : {Side::ours, Side::theirs})
        markAs(side == Side::ours ? CommandId::useOurs : CommandId::useTheirs,
               menu.addAction(plainMenuText(operationText::useSide(side, operationText::side(store, side))), &menu,
                              [&store, conflicted, side] { store.staging().takeSide(conflicted, side); }));
}

/// Adds the commands that resolve a conflict, for the files that have one.
void addResolving(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    if (files.conflicted().empty())
        return;
    Staging::Files::List found;
    for (const std::uint32_t place : files.conflicted())
        found.push_back(files[place]);
    const Staging::Files conflicted(std::move(found));
    if (const std::vector<gitkit::Conflict> conflicts = conflictsOf(store, conflicted); !conflicts.empty())
        addAnswers(menu, store, conflicts);
    else
        addSides(menu, store, conflicted);
    markAs(CommandId::markResolved, menu.addAction(Texts::tr("Mark Resolved"), &menu, [&store, conflicted] {
        store.staging().stage(conflicted);
    }))->setToolTip(Texts::tr("Stage what stands in the working copy"));
    menu.addSeparator();
}

/// Offers the user's own tool for diffs, or for merges where there is a conflict.
void addOutsideTool(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    const gitkit::FileChange& file = files.front();
    using gitkit::OutsideTool;
    const OutsideTool tool = file.isConflicted    ? OutsideTool::conflict
                             : file.hasUnstaged() ? OutsideTool::unstaged
                                                  : OutsideTool::staged;
    QAction* const entry = menu.addAction(
        tool == OutsideTool::conflict ? Texts::tr("Open in Mergetool") : Texts::tr("Open in Difftool"), &menu,
        [&store, tool, path = file.path] { actions::openInOutsideTool(store.actors(), tool, path); });
    markAs(CommandId::openInOutsideTool, entry);
    if (const QString reason = reasonAgainstInspecting(store, files); !reason.isEmpty()) {
        entry->setEnabled(false);
        entry->setToolTip(plainToolTip(reason));
    }
}

void addStashing(QMenu& menu, RepositoryStore& store, const Staging::Files& files)
{
    std::vector<gitkit::FileChange> stashed;
    for (const gitkit::FileChange& file : files) {
        if (!file.isSubmodule && !file.path.ends_with('/'))
            stashed.push_back(file);
    }
    const bool isPossible = !stashed.empty();
    QAction* const stash = addChange(menu, store, Verb::saveStash, Texts::tr("Stash…"), [&store, stashed] {
        store.window().showSheet(StashSheet{.files = stashed, .lines = {}});
    });
    markAs(CommandId::stashFiles, stash);
    if (!isPossible) {
        stash->setEnabled(false);
        stash->setToolTip(plainToolTip(Texts::tr("A submodule is a repository of its own.")));
    }
}

void addIgnoring(QMenu& parent, RepositoryStore& store, const Staging::Files& files)
{
    using gitkit::IgnorePlace;
    using What = actions::IgnoreWhat;
    QMenu& menu = *parent.addMenu(Texts::tr("Ignore"));
    menu.setToolTipsVisible(true);
    const auto add = [&](CommandId id, What what, IgnorePlace place) {
        const actions::IgnoreChoice choice = actions::ignoreChoice(files, what);
        const QString title =
            place == IgnorePlace::own ? Texts::tr("%1 in My Own List").arg(choice.title) : choice.title;
        QAction* const entry =
            markAs(id, addChange(menu, store, Verb::ignore, plainMenuText(title), [&store, files, what, place] {
                       actions::ignore(store.actors(), files, what, place);
                   }));
        if (entry->isEnabled())
            entry->setToolTip(plainToolTip(choice.whyNot.isEmpty()
                                               ? Texts::tr("Adds to the list:\n%1").arg(choice.patternsInLines)
                                               : choice.whyNot));
        entry->setEnabled(entry->isEnabled() && choice.whyNot.isEmpty());
    };
    add(CommandId::ignoreFiles, What::files, IgnorePlace::repository);
    add(CommandId::ignoreEnding, What::ending, IgnorePlace::repository);
    add(CommandId::ignoreFolder, What::folder, IgnorePlace::repository);
    menu.addSeparator();
    add(CommandId::ignoreFilesOwn, What::files, IgnorePlace::own);
    add(CommandId::ignoreEndingOwn, What::ending, IgnorePlace::own);
    add(CommandId::ignoreFolderOwn, What::folder, IgnorePlace::own);
}

} // namespace

QMenu* makeChangedFilesMenu(RepositoryStore& store, const Staging::Files& files, const QString& openTitle,
                            QWidget* parent)
{
    auto* menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    const auto add = [menu](CommandId id, const QString& title, auto run) {
        return markAs(id, menu->addAction(title, menu, std::move(run)));
    };
    addResolving(*menu, store, files);
    const auto stateIs = [&store](gitkit::StageState state) {
        return
            [&store, state](const gitkit::FileChange& file) { return store.staging().shownStageState(file) == state; };
    };
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::full)))
        add(CommandId::stageFiles, Texts::tr("Stage"), [&store, files] { store.staging().stage(files); });
    if (!std::ranges::all_of(files, stateIs(gitkit::StageState::none)))
        add(CommandId::unstageFiles, Texts::tr("Unstage"), [&store, files] { store.staging().unstage(files); });
    QAction* const discard = add(CommandId::discardFiles, Staging::discardTitle(files),
                                 [&store, files] { store.staging().confirmDiscard(files); });
    const QString reason = Staging::reasonAgainstDiscard(files);
    discard->setEnabled(reason.isEmpty());
    discard->setToolTip(plainToolTip(reason));
    addStashing(*menu, store, files);
    addIgnoring(*menu, store, files);
    menu->addSeparator();
    QAction* const open =
        add(CommandId::openInEditor, openTitle, [&store, files] { actions::openInEditor(store.actors(), files); });
    QAction* const reveal = add(CommandId::revealFile, Texts::tr("Reveal in File Browser"),
                                [&store, files] { actions::reveal(store.actors(), files); });
    if (std::ranges::all_of(files, [&store](const gitkit::FileChange& file) { return isGone(store, file); })) {
        for (QAction* const action : {open, reveal}) {
            action->setEnabled(false);
            action->setToolTip(Texts::tr("The file is not in the working tree now."));
        }
    }
    addOutsideTool(*menu, store, files);
    addInspection(*menu, store, files);
    add(CommandId::copyPath, Texts::tr("Copy Path"), [files] { copyPaths(files); });
    OwnCommandTarget own{.place = ownCommands::Entry::Place::file};
    for (const gitkit::FileChange& file : files)
        own.files.push_back(file.path);
    addOwnCommands(*menu, store, own);
    return menu;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/MainMenu.h"

#include "app/settings/RecentRepositories.h"
#include "app/store/ShownText.h"
#include "app/ui/commands/MenuItems.h"
#include "app/ui/commands/NavigationButtons.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/commands/RepositoryChoices.h"
#include "app/ui/history/HistoryColumns.h"
#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QShortcut>

namespace plovik::mainMenu {

namespace {

/// What the entries of a menu that is filled when it opens are for.
struct Around {
    MenuTarget& target;
    QWidget& window;
    RepositoryStore& store;
};

/// An item, a menu inside the menu, or a separator.
struct Entry {
    Entry(CommandId command) : id(command) {}
    Entry(const char* submenu, std::vector<Entry> inside) : title(submenu), entries(std::move(inside)) {}
    using Fill = void (*)(QMenu&, const Around&);
    Entry(const char* submenu, Fill make) : title(submenu), fill(make) {}
    Entry() = default;

    std::optional<CommandId> id = {};
    const char* title = nullptr; ///< untranslated, in the context "Commands"
    std::vector<Entry> entries = {};
    Fill fill = nullptr; ///< called when the menu opens
};

void addColumns(QMenu& menu, const Around& /*around*/) { addColumnChoices(menu); }

void addRecent(QMenu& menu, const Around& around) { addRecentRepositories(menu, around.target); }

void addOwn(QMenu& menu, const Around& around) { fillOwnCommands(menu, around.window, around.store, around.target); }

std::vector<Entry> layouts()
{
    using enum CommandId;
    const Entry line;
    return {
        {QT_TRANSLATE_NOOP("Commands", "File"),
         {openRepository,
          cloneRepository,
          newRepository,
          {QT_TRANSLATE_NOOP("Commands", "Open Recent"), &addRecent},
          switchRepository,
          line,
          openInEditor,
          revealFile,
          openInOutsideTool,
          showBlame,
          showFileHistory,
          linesHistory,
          blameBefore,
          copyPath,
          line,
          takeFile,
          openVersion,
          saveVersion,
          copyFileLink,
          openFileOnWeb,
          line,
          closeWindow,
          quit}},
        {QT_TRANSLATE_NOOP("Commands", "Edit"),
         {undo, redo, line, cut, copy, paste, selectAll, line, find, line, copyShellLine, copyOutput, line,
          showSettings}},
        {QT_TRANSLATE_NOOP("Commands", "View"),
         {showWorkingCopy,
          showHistory,
          showStashes,
          showTimeline,
          showRefLog,
          line,
          back,
          forward,
          goToCommit,
          line,
          allFiles,
          filesAsTree,
          sideBySide,
          ignoreWhiteSpace,
          wholeFile,
          wrapLines,
          {QT_TRANSLATE_NOOP("Commands", "Code Size"), {largerCode, smallerCode, standardCodeSize}},
          line,
          nextChange,
          previousChange,
          goToMovedLine,
          showMoreAbove,
          showMoreBelow,
          line,
          {QT_TRANSLATE_NOOP("Commands", "Columns"), &addColumns},
          commandLog}},
        {QT_TRANSLATE_NOOP("Commands", "Repository"),
         {refresh,
          line,
          fetch,
          pull,
          push,
          pushTo,
          cancelAction,
          line,
          {QT_TRANSLATE_NOOP("Commands", "Remotes"), {addRemote, editRemote}},
          line,
          stashChanges,
          applyStash,
          popStash,
          branchFromStash,
          dropStash,
          line,
          {QT_TRANSLATE_NOOP("Commands", "Step of the Timeline"),
           {undoToStep, restoreStepFiles, newBranchBeforeStep, pushStepBack, line, forgetStep}},
          applyPatch,
          cleanUntracked,
          {QT_TRANSLATE_NOOP("Commands", "Ignore"),
           {ignoreFiles, ignoreEnding, ignoreFolder, line, ignoreFilesOwn, ignoreEndingOwn, ignoreFolderOwn}},
          restoreDiscarded,
          {QT_TRANSLATE_NOOP("Commands", "Working Trees"),
           {worktrees, newWorktree, line, openWorktree, lockWorktree, unlockWorktree, removeWorktree}},
          {QT_TRANSLATE_NOOP("Commands", "Submodules"), {updateAllSubmodules, line, openSubmodule, updateSubmodule}},
          line,
          {QT_TRANSLATE_NOOP("Commands", "Own Commands"), &addOwn},
          openTerminal}},
        {QT_TRANSLATE_NOOP("Commands", "Branch"),
         {switchBranch,
          newBranch,
          newTag,
          checkOutRequest,
          newRequestOnWeb,
          line,
          checkOutRef,
          mergeRef,
          mergeRefHow,
          rebaseOntoRef,
          rebaseRef,
          pullRef,
          fastForwardRef,
          moveRef,
          newBranchFromRef,
          renameRef,
          pushRef,
          pushAllTags,
          copyRefName,
          refLogOfBranch,
          bringBackBranch,
          deleteRef,
          deleteOnRemote,
          line,
          {QT_TRANSLATE_NOOP("Commands", "Rewrite"),
           {editCommitMessage, squashIntoParent, fixUpIntoParent, moveCommitUp, moveCommitDown, dropCommit, splitCommit,
            stopToEdit, rebaseFromHere, keepCommit, line, absorb, commitInto, commitStagedInto, line, squashFixups,
            applyPlan, cancelPlan}}}},
        {QT_TRANSLATE_NOOP("Commands", "Commit"),
         {commit,
          signOff,
          addCoAuthor,
          recentMessages,
          wrapBody,
          writeMessage,
          showWhatIsSent,
          line,
          stageFiles,
          unstageFiles,
          discardFiles,
          stashFiles,
          {QT_TRANSLATE_NOOP("Commands", "Hunk and Lines"),
           {stageHunk, unstageHunk, discardHunk, stashHunk, line, stageLines, unstageLines, discardLines, stashLines}},
          {QT_TRANSLATE_NOOP("Commands", "Conflict"), {useOurs, useTheirs, markResolved}},
          line,
          showCommit,
          checkOutCommit,
          newBranchHere,
          newTagHere,
          cherryPick,
          revert,
          resetHere,
          line,
          {QT_TRANSLATE_NOOP("Commands", "Compare"),
           {compareBoth, compareWithHead, compareWithWorkingTree, compareWith, line, browseFiles, commitRelations}},
          line,
          {QT_TRANSLATE_NOOP("Commands", "Share"),
           {copyHash, copySubject, line, copyCommitLink, openCommitOnWeb, line, copyPatch, savePatch, archiveCommit}}}},
        {QT_TRANSLATE_NOOP("Commands", "Window"), {minimize, zoom, line, bringAllToFront}},
        {QT_TRANSLATE_NOOP("Commands", "Help"), {commandPalette, keyboardShortcuts, line, checkForUpdates, about}},
    };
}

/// Makes the entries of a menu, in which the letters are found anew whenever it opens.
void fill(QMenu& menu, const Entry& layout, MenuItems& items, const Around& around)
{
    menu.setToolTipsVisible(true);
    for (const Entry& entry : layout.entries) {
        if (entry.id)
            items.add(menu, command(*entry.id));
        else if (entry.title)
            fill(*menu.addMenu(QCoreApplication::translate("Commands", entry.title)), entry, items, around);
        else
            menu.addSeparator();
    }
    QObject::connect(&menu, &QMenu::aboutToShow, &menu, [&menu, make = layout.fill, around] {
        if (make) {
            menu.clear();
            make(menu, around);
        }
        assignMnemonics(menu.actions());
    });
    assignMnemonics(menu.actions());
}

void append(std::vector<CommandId>& commands, const Entry& layout)
{
    for (const Entry& entry : layout.entries) {
        if (entry.id)
            commands.push_back(*entry.id);
        append(commands, entry);
    }
}

/// Opens the first menu with its first item selected.
void enter(QMenuBar& bar)
{
    QAction* const first = bar.actions().value(0);
    if (!first || !bar.isVisible())
        return;
    bar.setActiveAction(first);
    if (QMenu* const menu = first->menu())
        menu->setActiveAction(menu->actions().value(0));
}

} // namespace

void build(QMenuBar& bar, MenuTarget& target, RepositoryStore& store)
{
    QWidget& window = *bar.window();
    bar.setAccessibleName(QCoreApplication::translate("Commands", "Menu Bar"));
    auto& items = *new MenuItems(bar, target, store);
    const Around around{target, window, store};
    for (const Entry& layout : layouts())
        fill(*bar.addMenu(QCoreApplication::translate("Commands", layout.title)), layout, items, around);
    assignMnemonics(bar.actions());
    QObject::connect(new QShortcut(Qt::Key_F10, &window), &QShortcut::activated, &bar, [&bar] { enter(bar); });
    new NavigationButtons(store, window);
    new OwnCommandKeys(window, store);
}

std::vector<Group> groups()
{
    std::vector<Group> groups;
    for (const Entry& layout : layouts()) {
        Group group{QCoreApplication::translate("Commands", layout.title), {}};
        append(group.commands, layout);
        groups.push_back(std::move(group));
    }
    return groups;
}

} // namespace plovik::mainMenu

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"

#include <QKeySequence>
#include <QProperty>
#include <QString>

#include <functional>
#include <optional>
#include <span>
#include <variant>
#include <vector>

class QAction;
class QMenu;
class QWidget;

namespace plovik {

class MenuTarget;

enum class CommandId {
    about,
    checkForUpdates,
    showSettings,
    quit,
    openRepository,
    cloneRepository,
    newRepository,
    closeWindow,
    undo,
    redo,
    cut,
    copy,
    paste,
    selectAll,
    showWorkingCopy,
    showHistory,
    showStashes,
    showTimeline,
    showRefLog,
    refresh,
    fetch,
    pull,
    push,
    pushTo,
    pushAllTags,
    cancelAction,
    newBranch,
    stashChanges,
    checkOutRequest,
    addRemote,
    editRemote,
    openTerminal,
    cleanUntracked,
    restoreDiscarded,
    writeMessage,
    showWhatIsSent,
    back,
    forward,
    goToCommit,
    allFiles,
    filesAsTree,
    sideBySide,
    ignoreWhiteSpace,
    wholeFile,
    wrapLines,
    largerCode,
    smallerCode,
    standardCodeSize,
    nextChange,
    previousChange,
    commandLog,
    minimize,
    zoom,
    bringAllToFront,
    commit,
    find,
    newTag,
    keyboardShortcuts,
    commandPalette,
    switchRepository,
    switchBranch,
    // What the context menus offer for what is selected.
    openInEditor,
    revealFile,
    openInOutsideTool,
    showBlame,
    showFileHistory,
    blameBefore,
    copyPath,
    copyShellLine,
    copyOutput,
    showMoreAbove,
    showMoreBelow,
    applyStash,
    popStash,
    dropStash,
    branchFromStash,
    undoToStep,
    restoreStepFiles,
    newBranchBeforeStep,
    pushStepBack,
    forgetStep,
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
    deleteOnRemote,
    copyRefName,
    deleteRef,
    stageFiles,
    unstageFiles,
    discardFiles,
    stashFiles,
    ignoreFiles,
    ignoreEnding,
    ignoreFolder,
    ignoreFilesOwn,
    ignoreEndingOwn,
    ignoreFolderOwn,
    useOurs,
    useTheirs,
    markResolved,
    stageLines,
    unstageLines,
    discardLines,
    stashLines,
    stageHunk,
    unstageHunk,
    discardHunk,
    stashHunk,
    checkOutCommit,
    newBranchHere,
    newTagHere,
    cherryPick,
    revert,
    resetHere,
    copyHash,
    copySubject,
    copyCommitLink,
    openCommitOnWeb,
    copyFileLink,
    openFileOnWeb,
    newRequestOnWeb,
    copyPatch,
    savePatch,
    archiveCommit,
    applyPatch,
    showCommit,
    signOff,
    addCoAuthor,
    recentMessages,
    wrapBody,
    absorb,
    commitStagedInto,
    commitInto,
    goToMovedLine,
    linesHistory,
    takeFile,
    openVersion,
    saveVersion,
    compareWithHead,
    compareWithWorkingTree,
    compareWith,
    compareBoth,
    browseFiles,
    bringBackBranch,
    refLogOfBranch,
    commitRelations,
    editCommitMessage,
    squashIntoParent,
    fixUpIntoParent,
    moveCommitUp,
    moveCommitDown,
    dropCommit,
    keepCommit,
    stopToEdit,
    splitCommit,
    rebaseFromHere,
    applyPlan,
    cancelPlan,
    squashFixups,
    worktrees,
    newWorktree,
    openWorktree,
    lockWorktree,
    unlockWorktree,
    removeWorktree,
    updateAllSubmodules,
    openSubmodule,
    updateSubmodule,
};

/// A row of the table from which the menu bar, the toolbar, the context menus and the shortcuts are made. The table is
/// constant; the functions are for the main thread.
struct Command { // NOLINT(clang-analyzer-optin.performance.Padding): in the order in which a row is read
    /// Names a slot of the widget with the focus, as text fields and lists have them.
    struct FocusSlot {
        const char* signature;
    };
    /// Names a slot of the widget with the focus, of one around it, or of one in sight.
    struct SightSlot {
        const char* signature;
    };
    /// Carried out by the entry that the context menu of what is selected in sight has for the command (SelectionActions).
    struct OnSelection {};
    /// Without an action the widget that shows the command carries it out.
    using Action = std::variant<std::monostate, void (*)(RepositoryStore&), void (*)(QWidget& window),
                                void (MenuTarget::*)(), FocusSlot, SightSlot, OnSelection>;

    CommandId id;
    const char* name; ///< untranslated, in the context "Commands"
    QKeyCombination keys = {};
    Action action = {};
    std::optional<Verb> verb = {}; ///< the change that it begins
    bool (*isPossible)(const RepositoryStore&) = nullptr;
    bool (*isOn)(const RepositoryStore&) = nullptr; ///< of what can be switched on and off
    bool (*isThere)() = nullptr;                    ///< of what the settings can hide
    const char* buttonName = nullptr;               ///< a shorter name for a button
    QKeyCombination otherKeys = {};                 ///< which do the same, unsaid
    const char* wanted = nullptr;                   ///< untranslated: what is missing while nothing in sight takes it
    bool hasViewKeys = false;                       ///< the views listen to its keys, the menu bar only shows them

    QString title() const;
    QString buttonTitle() const;
    /// Returns an empty sequence for a command without keys.
    QKeySequence shortcut() const;
    /// Returns a sentence that says what is missing while nothing in sight takes the command.
    QString whatIsWanted() const;
    /// Whether the command does something now. It may change with what followOffers() follows.
    bool isOffered(const RepositoryStore& store) const;
    /// Returns a sentence that says which running change or which state of the repository is in the way, or an empty
    /// string.
    QString whyNot(const RepositoryStore& store) const;

    /// Carries out a command of the store; of the others throws std::bad_variant_access.
    void run(RepositoryStore& store) const;
    /// Carries out a command of the application; of the others throws std::bad_variant_access.
    void run(MenuTarget& application) const;
};

std::span<const Command> allCommands();
const Command& command(CommandId id);

/// Calls `changed` whenever a command may have become offered, or is so no longer, while the notifiers live.
[[nodiscard]] std::vector<QPropertyNotifier> followOffers(const RepositoryStore& store,
                                                          const std::function<void()>& changed);

// For context menus, which show what is offered when they open.

/// Adds a command of the store.
QAction* addCommand(QMenu& menu, RepositoryStore& store, CommandId id);
/// Adds an entry that begins a change of what the menu was opened for. It is disabled, with the reason as its tooltip,
/// while the change is not offered.
QAction* addChange(QMenu& menu, const RepositoryStore& store, Verb verb, const QString& title,
                   std::function<void()> run);
/// Marks an entry of a context menu as what carries out a command of the table, for the menu bar. Returns the entry.
QAction* markAs(CommandId id, QAction* entry);
/// Returns the command that an entry was marked as.
std::optional<CommandId> commandOf(const QAction& entry);

} // namespace plovik

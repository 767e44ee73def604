// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/Commands.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/ShortcutsDialog.h"
#include "app/ui/workingcopy/MessageButtons.h"

#include <QWidget>

#include <iterator>
#include <utility>

namespace plovik {

namespace {

using Store = RepositoryStore;

constexpr auto shifted = Qt::CTRL | Qt::SHIFT;

void toggle(const Setting<bool>& setting) { Settings::shared().set(setting, !Settings::shared().value(setting)); }

bool hasWorkingTree(const Store& store) { return !store.snapshot().status.value().isBare; }

bool writesMessages() { return Settings::shared().value(settings::aiEnabled); }

bool canWriteMessage(const Store& store)
{
    return !store.draft().generatingMessage.value() && store.snapshot().status.value().stagedCount() > 0;
}

bool canCancel(const Store& store)
{
    return !store.changes().running.value().empty() && !store.changes().isCancelling.value();
}

void writeMessageInView(Store& store)
{
    store.window().select(SidebarItem::workingCopy());
    writeCommitMessage(store);
}

void toggleMaximized(QWidget& window)
{
    if (window.isMaximized())
        window.showNormal();
    else
        window.showMaximized();
}

using Id = CommandId;

// What has to be selected for a command.
constexpr const char* wantedText = QT_TRANSLATE_NOOP("Commands", "Go to a text or a list that offers this.");
constexpr const char* wantedTree = QT_TRANSLATE_NOOP("Commands", "A bare repository has no working tree.");
constexpr const char* wantedFile = QT_TRANSLATE_NOOP("Commands", "Select a file in a list.");
constexpr const char* wantedChanged = QT_TRANSLATE_NOOP("Commands", "Select changed files in the working copy.");
constexpr const char* wantedConflict = QT_TRANSLATE_NOOP("Commands", "Select a file with conflicts.");
constexpr const char* wantedHunk = QT_TRANSLATE_NOOP("Commands", "Go to a part of a diff that offers this.");
constexpr const char* wantedLines = QT_TRANSLATE_NOOP("Commands", "Select changed lines in a diff that offers this.");
constexpr const char* wantedCommit = QT_TRANSLATE_NOOP("Commands", "Select a commit in the history.");
constexpr const char* wantedMovable =
    QT_TRANSLATE_NOOP("Commands", "Select commits of the branch that is checked out.");
constexpr const char* wantedPlan = QT_TRANSLATE_NOOP("Commands", "No plan is open.");
constexpr const char* wantedRef = QT_TRANSLATE_NOOP("Commands", "Select a branch or a tag in the sidebar.");
constexpr const char* wantedState = QT_TRANSLATE_NOOP("Commands", "Select a commit, a branch or a tag.");
constexpr const char* wantedCommitFile = QT_TRANSLATE_NOOP("Commands", "Select a file of a commit.");
constexpr const char* wantedStash = QT_TRANSLATE_NOOP("Commands", "Select a stash.");
constexpr const char* wantedStep = QT_TRANSLATE_NOOP("Commands", "Select a step in the timeline.");
constexpr const char* wantedMessage =
    QT_TRANSLATE_NOOP("Commands", "Show the working copy, where the message is written.");
constexpr const char* wantedWorktree = QT_TRANSLATE_NOOP("Commands", "Go to a worktree in the sidebar.");
constexpr const char* wantedLogged = QT_TRANSLATE_NOOP("Commands", "Select a command in the command log.");

constexpr Command onSelection(Id id, const char* name, const char* wanted, QKeyCombination keys = {})
{
    return {
        .id = id, .name = name, .keys = keys, .action = Command::OnSelection(), .wanted = wanted, .hasViewKeys = true};
}

constexpr Command table[] = {
    {.id = Id::about, .name = QT_TRANSLATE_NOOP("Commands", "About Plovik"), .action = &MenuTarget::about},
    {.id = Id::checkForUpdates,
     .name = QT_TRANSLATE_NOOP("Commands", "Check for Updates…"),
     .action = &MenuTarget::checkForUpdates},
    {.id = Id::showSettings,
     .name = QT_TRANSLATE_NOOP("Commands", "Settings…"),
     .keys = Qt::CTRL | Qt::Key_Comma,
     .action = &MenuTarget::showSettings},
    {.id = Id::quit,
     .name = QT_TRANSLATE_NOOP("Commands", "Quit Plovik"),
     .keys = Qt::CTRL | Qt::Key_Q,
     .action = &MenuTarget::quit},
    {.id = Id::openRepository,
     .name = QT_TRANSLATE_NOOP("Commands", "Open Repository…"),
     .keys = Qt::CTRL | Qt::Key_O,
     .action = &MenuTarget::openDocument},
    {.id = Id::cloneRepository,
     .name = QT_TRANSLATE_NOOP("Commands", "Clone…"),
     .keys = shifted | Qt::Key_N,
     .action = &MenuTarget::cloneRepository},
    {.id = Id::newRepository,
     .name = QT_TRANSLATE_NOOP("Commands", "New Repository…"),
     .action = &MenuTarget::newRepository},
    {.id = Id::closeWindow,
     .name = QT_TRANSLATE_NOOP("Commands", "Close Window"),
     .keys = Qt::CTRL | Qt::Key_W,
     .action = [](QWidget& window) { window.close(); }},
    {.id = Id::undo, .name = QT_TRANSLATE_NOOP("Commands", "Undo"), .keys = Qt::CTRL | Qt::Key_Z},
    {.id = Id::redo, .name = QT_TRANSLATE_NOOP("Commands", "Redo"), .keys = shifted | Qt::Key_Z},
    {.id = Id::cut,
     .name = QT_TRANSLATE_NOOP("Commands", "Cut"),
     .keys = Qt::CTRL | Qt::Key_X,
     .action = Command::FocusSlot{"cut()"},
     .wanted = wantedText},
    {.id = Id::copy,
     .name = QT_TRANSLATE_NOOP("Commands", "Copy"),
     .keys = Qt::CTRL | Qt::Key_C,
     .action = Command::FocusSlot{"copy()"},
     .wanted = wantedText},
    {.id = Id::paste,
     .name = QT_TRANSLATE_NOOP("Commands", "Paste"),
     .keys = Qt::CTRL | Qt::Key_V,
     .action = Command::FocusSlot{"paste()"},
     .wanted = wantedText},
    {.id = Id::selectAll,
     .name = QT_TRANSLATE_NOOP("Commands", "Select All"),
     .keys = Qt::CTRL | Qt::Key_A,
     .action = Command::FocusSlot{"selectAll()"},
     .wanted = wantedText},
    {.id = Id::showWorkingCopy,
     .name = QT_TRANSLATE_NOOP("Commands", "Working Copy"),
     .keys = Qt::CTRL | Qt::Key_1,
     .action = [](Store& store) { store.window().goTo(SidebarItem::workingCopy()); },
     .isPossible = hasWorkingTree,
     .wanted = wantedTree},
    {.id = Id::showHistory,
     .name = QT_TRANSLATE_NOOP("Commands", "History"),
     .keys = Qt::CTRL | Qt::Key_2,
     .action = [](Store& store) { store.window().goTo(SidebarItem::history()); }},
    {.id = Id::showStashes,
     .name = QT_TRANSLATE_NOOP("Commands", "Stashes"),
     .keys = Qt::CTRL | Qt::Key_3,
     .action = [](Store& store) { store.window().goTo(SidebarItem::stashes()); },
     .isPossible = hasWorkingTree,
     .wanted = wantedTree},
    {.id = Id::showTimeline,
     .name = QT_TRANSLATE_NOOP("Commands", "Timeline"),
     .keys = Qt::CTRL | Qt::Key_4,
     .action = [](Store& store) { store.window().goTo(SidebarItem::timeline()); },
     .isPossible = hasWorkingTree,
     .wanted = wantedTree},
    {.id = Id::showRefLog,
     .name = QT_TRANSLATE_NOOP("Commands", "Where HEAD Was"),
     .keys = Qt::CTRL | Qt::Key_5,
     .action = [](Store& store) { store.window().goTo(SidebarItem::refLog("HEAD")); }},
    {.id = Id::refresh,
     .name = QT_TRANSLATE_NOOP("Commands", "Refresh"),
     .keys = Qt::CTRL | Qt::Key_R,
     .action = [](Store& store) { store.snapshot().refresh(RefreshScope::full); }},
    {.id = Id::fetch,
     .name = QT_TRANSLATE_NOOP("Commands", "Fetch"),
     .keys = shifted | Qt::Key_F,
     .action = [](Store& store) { actions::fetch(store.actors()); },
     .verb = Verb::fetch},
    {.id = Id::pull,
     .name = QT_TRANSLATE_NOOP("Commands", "Pull"),
     .keys = shifted | Qt::Key_P,
     .action = [](Store& store) { actions::pull(store.actors()); },
     .verb = Verb::pull},
    {.id = Id::push,
     .name = QT_TRANSLATE_NOOP("Commands", "Push"),
     .keys = shifted | Qt::Key_U, // P is Pull's
     .action = [](Store& store) { actions::push(store.actors()); },
     .verb = Verb::push},
    {.id = Id::pushTo,
     .name = QT_TRANSLATE_NOOP("Commands", "Push to…"),
     .keys = Qt::CTRL | Qt::ALT | Qt::Key_P,
     .action = [](Store& store) { actions::askWhereToPush(store.actors(), *store.snapshot().status.value().branch); },
     .verb = Verb::push,
     .isPossible = [](const Store& store) { return store.snapshot().status.value().branch.has_value(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "HEAD is detached. Check out a branch first.")},
    {.id = Id::pushAllTags,
     .name = QT_TRANSLATE_NOOP("Commands", "Push All Tags…"),
     .action = [](Store& store) { actions::confirmPushTags(store.actors(), actions::usualRemote(store.snapshot())); },
     .verb = Verb::pushTag,
     .isPossible = [](const Store& store) { return !store.snapshot().remotes.value().empty(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "This repository has no remote.")},
    {.id = Id::cancelAction,
     .name = QT_TRANSLATE_NOOP("Commands", "Cancel Action"),
     .keys = Qt::CTRL | Qt::Key_Period,
     .action = [](Store& store) { store.changes().cancelActivity(); },
     .isPossible = canCancel,
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing runs that could be cancelled.")},
    {.id = Id::newBranch,
     .name = QT_TRANSLATE_NOOP("Commands", "New Branch…"),
     .keys = shifted | Qt::Key_B,
     .action = [](Store& store) { store.window().showSheet(NewBranchSheet{}); },
     .verb = Verb::createBranch,
     .buttonName = QT_TRANSLATE_NOOP("Commands", "Branch")},
    {.id = Id::stashChanges,
     .name = QT_TRANSLATE_NOOP("Commands", "Stash Changes…"),
     .keys = shifted | Qt::Key_S,
     .action = [](Store& store) { store.window().showSheet(StashSheet{}); },
     .verb = Verb::saveStash,
     .isPossible = [](const Store& store) { return !store.snapshot().status.value().files.empty(); },
     .buttonName = QT_TRANSLATE_NOOP("Commands", "Stash"),
     .wanted = QT_TRANSLATE_NOOP("Commands", "There are no changes to stash.")},
    {.id = Id::checkOutRequest,
     .name = QT_TRANSLATE_NOOP("Commands", "Check Out Request…"),
     .action = [](Store& store) { store.window().showSheet(RequestSheet{}); },
     .verb = Verb::checkOutRequest,
     .isPossible = [](const Store& store) { return !store.snapshot().remotes.value().empty(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "This repository has no remote.")},
    {.id = Id::addRemote,
     .name = QT_TRANSLATE_NOOP("Commands", "Add Remote…"),
     .action = [](Store& store) { store.window().showSheet(RemoteSheet{}); },
     .verb = Verb::editRemote},
    {.id = Id::editRemote,
     .name = QT_TRANSLATE_NOOP("Commands", "Edit Remote…"),
     .action = [](Store& store) { actions::askToEditRemote(store.actors(), {}); },
     .verb = Verb::editRemote,
     .isPossible = [](const Store& store) { return !store.snapshot().remotes.value().empty(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "This repository has no remote.")},
    {.id = Id::openTerminal,
     .name = QT_TRANSLATE_NOOP("Commands", "Open Terminal Here"),
     .action = [](Store& store) { actions::openTerminal(store.actors()); }},
    {.id = Id::cleanUntracked,
     .name = QT_TRANSLATE_NOOP("Commands", "Clean Untracked Files…"),
     .action = [](Store& store) { store.window().showSheet(CleanSheet{}); },
     .verb = Verb::discard,
     .isPossible = [](const Store& store) { return store.snapshot().status.value().files.untrackedCount() > 0; },
     .wanted = QT_TRANSLATE_NOOP("Commands", "There are no untracked files.")},
    {.id = Id::restoreDiscarded,
     .name = QT_TRANSLATE_NOOP("Commands", "Restore Discarded…"),
     .action = [](Store& store) { store.window().showSheet(DiscardedSheet{}); }},
    {.id = Id::writeMessage,
     .name = QT_TRANSLATE_NOOP("Commands", "Write Commit Message"),
     .keys = shifted | Qt::Key_M,
     .action = writeMessageInView,
     .isPossible = canWriteMessage,
     .isThere = writesMessages,
     .wanted = QT_TRANSLATE_NOOP("Commands", "Stage the changes to describe first.")},
    {.id = Id::showWhatIsSent,
     .name = QT_TRANSLATE_NOOP("Commands", "Show What Is Sent…"),
     .action = [](Store& store) { store.window().showSheet(SentChangesSheet{}); },
     .isPossible = canWriteMessage,
     .isThere = writesMessages,
     .wanted = QT_TRANSLATE_NOOP("Commands", "Stage the changes to describe first.")},
    {.id = Id::back,
     .name = QT_TRANSLATE_NOOP("Commands", "Back"),
     .keys = Qt::ALT | Qt::Key_Left,
     .action = [](Store& store) { store.trail().goBack(); },
     .isPossible = [](const Store& store) { return store.trail().canGoBack.value(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing was looked at before.")},
    {.id = Id::forward,
     .name = QT_TRANSLATE_NOOP("Commands", "Forward"),
     .keys = Qt::ALT | Qt::Key_Right,
     .action = [](Store& store) { store.trail().goForward(); },
     .isPossible = [](const Store& store) { return store.trail().canGoForward.value(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing was left by going back.")},
    {.id = Id::goToCommit,
     .name = QT_TRANSLATE_NOOP("Commands", "Go to Commit…"),
     .keys = Qt::CTRL | Qt::Key_G,
     .action = [](Store& store) { store.window().showSheet(GoToCommitSheet{}); },
     .isPossible = [](const Store& store) { return store.snapshot().status.value().hasCommits(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing has been committed yet.")},
    {.id = Id::allFiles,
     .name = QT_TRANSLATE_NOOP("Commands", "All Files of a Commit"),
     .action = [](Store&) { toggle(settings::commitShowsAllFiles); },
     .isOn = [](const Store&) { return Settings::shared().value(settings::commitShowsAllFiles); }},
    {.id = Id::filesAsTree,
     .name = QT_TRANSLATE_NOOP("Commands", "Files as Tree"),
     .action = [](Store&) { toggle(settings::filesAsTree); },
     .isOn = [](const Store&) { return Settings::shared().value(settings::filesAsTree); }},
    {.id = Id::sideBySide,
     .name = QT_TRANSLATE_NOOP("Commands", "Side by Side"),
     .keys = shifted | Qt::Key_D,
     .action = [](Store&) { toggle(settings::diffSideBySide); },
     .isOn = [](const Store&) { return Settings::shared().value(settings::diffSideBySide); }},
    {.id = Id::ignoreWhiteSpace,
     .name = QT_TRANSLATE_NOOP("Commands", "Ignore White Space"),
     .keys = shifted | Qt::Key_I,
     .action = [](Store&) { toggle(settings::diffIgnoresWhiteSpace); },
     .isOn = [](const Store&) { return Settings::shared().value(settings::diffIgnoresWhiteSpace); }},
    {.id = Id::wholeFile,
     .name = QT_TRANSLATE_NOOP("Commands", "Whole File"),
     .keys = shifted | Qt::Key_E,
     .action = Command::SightSlot{"toggleWholeFile()"},
     .wanted = QT_TRANSLATE_NOOP("Commands", "No diff is in sight.")},
    {.id = Id::wrapLines,
     .name = QT_TRANSLATE_NOOP("Commands", "Wrap Lines"),
     .keys = Qt::ALT | Qt::Key_Z,
     .action = [](Store&) { toggle(settings::diffWraps); },
     .isOn = [](const Store&) { return Settings::shared().value(settings::diffWraps); }},
    {.id = Id::largerCode,
     .name = QT_TRANSLATE_NOOP("Commands", "Larger Code"),
     .keys = Qt::CTRL | Qt::Key_Plus,
     .action = [](Store&) { CodeFont::changeSize(1); },
     .otherKeys = Qt::CTRL | Qt::Key_Equal}, // the same key without Shift, on many keyboards
    {.id = Id::smallerCode,
     .name = QT_TRANSLATE_NOOP("Commands", "Smaller Code"),
     .keys = Qt::CTRL | Qt::Key_Minus,
     .action = [](Store&) { CodeFont::changeSize(-1); }},
    {.id = Id::standardCodeSize,
     .name = QT_TRANSLATE_NOOP("Commands", "Standard Code Size"),
     .keys = Qt::CTRL | Qt::Key_0,
     .action = [](Store&) { Settings::shared().set(settings::codeFontSize, settings::codeFontSize.fallback); }},
    {.id = Id::nextChange,
     .name = QT_TRANSLATE_NOOP("Commands", "Next Change"),
     .keys = Qt::Key_F7,
     .action = Command::SightSlot{"nextChange()"},
     .wanted = QT_TRANSLATE_NOOP("Commands", "No diff is in sight.")},
    {.id = Id::previousChange,
     .name = QT_TRANSLATE_NOOP("Commands", "Previous Change"),
     .keys = Qt::SHIFT | Qt::Key_F7,
     .action = Command::SightSlot{"previousChange()"},
     .wanted = QT_TRANSLATE_NOOP("Commands", "No diff is in sight.")},
    {.id = Id::commandLog,
     .name = QT_TRANSLATE_NOOP("Commands", "Command Log"),
     .keys = shifted | Qt::Key_L,
     .action = [](Store& store) { store.window().showCommandLog(!store.window().showsCommandLog.value()); },
     .isOn = [](const Store& store) { return store.window().showsCommandLog.value(); }},
    {.id = Id::minimize,
     .name = QT_TRANSLATE_NOOP("Commands", "Minimize"),
     .keys = Qt::CTRL | Qt::Key_M,
     .action = [](QWidget& window) { window.showMinimized(); }},
    {.id = Id::zoom, .name = QT_TRANSLATE_NOOP("Commands", "Zoom"), .action = toggleMaximized},
    {.id = Id::bringAllToFront,
     .name = QT_TRANSLATE_NOOP("Commands", "Bring All to Front"),
     .action = &MenuTarget::bringAllToFront},
    {.id = Id::commit,
     .name = QT_TRANSLATE_NOOP("Commands", "Commit"),
     .keys = Qt::CTRL | Qt::Key_Return,
     .action = Command::SightSlot{"commit()"},
     .wanted = wantedMessage,
     .hasViewKeys = true},
    {.id = Id::find,
     .name = QT_TRANSLATE_NOOP("Commands", "Find…"),
     .keys = Qt::CTRL | Qt::Key_F,
     .action = Command::SightSlot{"find()"},
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing in sight can be searched.")},
    {.id = Id::newTag,
     .name = QT_TRANSLATE_NOOP("Commands", "New Tag…"),
     .keys = shifted | Qt::Key_T,
     .action = [](Store& store) { store.window().showSheet(NewTagSheet{*store.snapshot().status.value().oid}); },
     .verb = Verb::createTag,
     .isPossible = [](const Store& store) { return store.snapshot().status.value().oid.has_value(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing has been committed yet.")},
    {.id = Id::keyboardShortcuts,
     .name = QT_TRANSLATE_NOOP("Commands", "Keyboard Shortcuts"),
     .keys = Qt::Key_F1,
     .action = showShortcuts},
    {.id = Id::commandPalette, .name = QT_TRANSLATE_NOOP("Commands", "Command Palette…"), .keys = Qt::CTRL | Qt::Key_K},
    {.id = Id::switchRepository,
     .name = QT_TRANSLATE_NOOP("Commands", "Switch Repository…"),
     .keys = shifted | Qt::Key_O,
     .action = Command::SightSlot{"switchRepository()"}},
    {.id = Id::switchBranch,
     .name = QT_TRANSLATE_NOOP("Commands", "Switch Branch…"),
     .keys = Qt::CTRL | Qt::Key_B,
     .action = Command::SightSlot{"switchBranch()"}},
    onSelection(Id::openInEditor, QT_TRANSLATE_NOOP("Commands", "Open in Editor"), wantedFile, Qt::Key_Return),
    onSelection(Id::revealFile, QT_TRANSLATE_NOOP("Commands", "Reveal in File Browser"), wantedFile),
    onSelection(Id::openInOutsideTool, QT_TRANSLATE_NOOP("Commands", "Open in Difftool or Mergetool"),
                QT_TRANSLATE_NOOP("Commands", "Select a changed file in the working copy.")),
    onSelection(Id::showBlame, QT_TRANSLATE_NOOP("Commands", "Show Blame"), wantedFile),
    onSelection(Id::showFileHistory, QT_TRANSLATE_NOOP("Commands", "Show File History"), wantedFile),
    onSelection(Id::blameBefore, QT_TRANSLATE_NOOP("Commands", "Blame Before This Commit"),
                QT_TRANSLATE_NOOP("Commands", "Select a line in the blame of a file."), Qt::Key_B),
    onSelection(Id::copyPath, QT_TRANSLATE_NOOP("Commands", "Copy Path"), wantedFile),
    onSelection(Id::copyShellLine, QT_TRANSLATE_NOOP("Commands", "Copy as Shell Line"), wantedLogged),
    onSelection(Id::copyOutput, QT_TRANSLATE_NOOP("Commands", "Copy Output"), wantedLogged),
    onSelection(Id::showMoreAbove, QT_TRANSLATE_NOOP("Commands", "Show More Above"), wantedHunk, Qt::CTRL | Qt::Key_Up),
    onSelection(Id::showMoreBelow, QT_TRANSLATE_NOOP("Commands", "Show More Below"), wantedHunk,
                Qt::CTRL | Qt::Key_Down),
    onSelection(Id::applyStash, QT_TRANSLATE_NOOP("Commands", "Apply Stash"), wantedStash),
    onSelection(Id::popStash, QT_TRANSLATE_NOOP("Commands", "Pop Stash"), wantedStash),
    onSelection(Id::dropStash, QT_TRANSLATE_NOOP("Commands", "Drop Stash…"), wantedStash),
    onSelection(Id::branchFromStash, QT_TRANSLATE_NOOP("Commands", "New Branch from Stash…"), wantedStash),
    onSelection(Id::undoToStep, QT_TRANSLATE_NOOP("Commands", "Undo to Here…"), wantedStep),
    onSelection(Id::restoreStepFiles, QT_TRANSLATE_NOOP("Commands", "Restore Files from This Step…"), wantedStep),
    onSelection(Id::newBranchBeforeStep, QT_TRANSLATE_NOOP("Commands", "New Branch at the State Before…"), wantedStep),
    onSelection(Id::pushStepBack, QT_TRANSLATE_NOOP("Commands", "Push It Back…"),
                QT_TRANSLATE_NOOP("Commands", "Select a push in the timeline that has replaced or deleted a branch.")),
    onSelection(Id::forgetStep, QT_TRANSLATE_NOOP("Commands", "Forget This Step"), wantedStep),
    onSelection(Id::checkOutRef, QT_TRANSLATE_NOOP("Commands", "Check Out"), wantedRef),
    onSelection(Id::mergeRef, QT_TRANSLATE_NOOP("Commands", "Merge"),
                QT_TRANSLATE_NOOP("Commands", "Select a branch in the sidebar.")),
    onSelection(Id::mergeRefHow, QT_TRANSLATE_NOOP("Commands", "Merge With Options…"),
                QT_TRANSLATE_NOOP("Commands", "Select a branch in the sidebar.")),
    onSelection(Id::rebaseOntoRef, QT_TRANSLATE_NOOP("Commands", "Rebase Onto"),
                QT_TRANSLATE_NOOP("Commands", "Select a branch in the sidebar.")),
    onSelection(Id::rebaseRef, QT_TRANSLATE_NOOP("Commands", "Rebase Branch onto…"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar.")),
    onSelection(Id::pullRef, QT_TRANSLATE_NOOP("Commands", "Pull Branch"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar that is not checked out.")),
    onSelection(Id::fastForwardRef, QT_TRANSLATE_NOOP("Commands", "Fast-Forward"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar that is not checked out.")),
    onSelection(Id::moveRef, QT_TRANSLATE_NOOP("Commands", "Move Branch to Selected Commit"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar that is not checked out.")),
    onSelection(Id::newBranchFromRef, QT_TRANSLATE_NOOP("Commands", "New Branch from Here…"), wantedRef),
    onSelection(Id::renameRef, QT_TRANSLATE_NOOP("Commands", "Rename Branch…"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar."), Qt::Key_F2),
    onSelection(Id::pushRef, QT_TRANSLATE_NOOP("Commands", "Push Branch or Tag"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch or a tag in the sidebar.")),
    onSelection(Id::deleteOnRemote, QT_TRANSLATE_NOOP("Commands", "Delete on the Remote…"),
                QT_TRANSLATE_NOOP("Commands", "Select a remote branch or a tag in the sidebar.")),
    onSelection(Id::copyRefName, QT_TRANSLATE_NOOP("Commands", "Copy Name"), wantedRef),
    onSelection(Id::deleteRef, QT_TRANSLATE_NOOP("Commands", "Delete…"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch or a tag in the sidebar.")),
    onSelection(Id::stageFiles, QT_TRANSLATE_NOOP("Commands", "Stage"),
                QT_TRANSLATE_NOOP("Commands", "Select changed files that are not staged yet."), Qt::Key_Space),
    onSelection(Id::unstageFiles, QT_TRANSLATE_NOOP("Commands", "Unstage"),
                QT_TRANSLATE_NOOP("Commands", "Select changed files that are staged."), Qt::Key_Space),
    onSelection(Id::discardFiles, QT_TRANSLATE_NOOP("Commands", "Discard Changes…"),
                QT_TRANSLATE_NOOP("Commands", "Select changed files in the working copy."), Qt::Key_Delete),
    onSelection(Id::stashFiles, QT_TRANSLATE_NOOP("Commands", "Stash Selected Files…"),
                QT_TRANSLATE_NOOP("Commands", "Select changed files in the working copy.")),
    onSelection(Id::ignoreFiles, QT_TRANSLATE_NOOP("Commands", "Ignore This File"), wantedChanged),
    onSelection(Id::ignoreEnding, QT_TRANSLATE_NOOP("Commands", "Ignore All Files with This Ending"), wantedChanged),
    onSelection(Id::ignoreFolder, QT_TRANSLATE_NOOP("Commands", "Ignore This Folder"), wantedChanged),
    onSelection(Id::ignoreFilesOwn, QT_TRANSLATE_NOOP("Commands", "Ignore This File in My Own List"), wantedChanged),
    onSelection(Id::ignoreEndingOwn, QT_TRANSLATE_NOOP("Commands", "Ignore All Files with This Ending in My Own List"),
                wantedChanged),
    onSelection(Id::ignoreFolderOwn, QT_TRANSLATE_NOOP("Commands", "Ignore This Folder in My Own List"), wantedChanged),
    onSelection(Id::useOurs, QT_TRANSLATE_NOOP("Commands", "Use Ours"), wantedConflict),
    onSelection(Id::useTheirs, QT_TRANSLATE_NOOP("Commands", "Use Theirs"), wantedConflict),
    onSelection(Id::markResolved, QT_TRANSLATE_NOOP("Commands", "Mark Resolved"), wantedConflict),
    onSelection(Id::stageLines, QT_TRANSLATE_NOOP("Commands", "Stage Lines"), wantedLines, Qt::Key_S),
    onSelection(Id::unstageLines, QT_TRANSLATE_NOOP("Commands", "Unstage Lines"), wantedLines, Qt::Key_S),
    onSelection(Id::discardLines, QT_TRANSLATE_NOOP("Commands", "Discard Lines…"), wantedLines, Qt::Key_Delete),
    onSelection(Id::stashLines, QT_TRANSLATE_NOOP("Commands", "Stash Lines…"), wantedLines),
    onSelection(Id::stageHunk, QT_TRANSLATE_NOOP("Commands", "Stage Hunk"), wantedHunk, Qt::Key_S),
    onSelection(Id::unstageHunk, QT_TRANSLATE_NOOP("Commands", "Unstage Hunk"), wantedHunk, Qt::Key_S),
    onSelection(Id::discardHunk, QT_TRANSLATE_NOOP("Commands", "Discard Hunk…"), wantedHunk, Qt::Key_Delete),
    onSelection(Id::stashHunk, QT_TRANSLATE_NOOP("Commands", "Stash Hunk…"), wantedHunk),
    onSelection(Id::checkOutCommit, QT_TRANSLATE_NOOP("Commands", "Check Out Commit"), wantedCommit),
    onSelection(Id::newBranchHere, QT_TRANSLATE_NOOP("Commands", "New Branch Here…"), wantedCommit),
    onSelection(Id::newTagHere, QT_TRANSLATE_NOOP("Commands", "New Tag Here…"), wantedCommit),
    onSelection(Id::cherryPick, QT_TRANSLATE_NOOP("Commands", "Cherry-Pick"), wantedCommit),
    onSelection(Id::revert, QT_TRANSLATE_NOOP("Commands", "Revert"), wantedCommit),
    onSelection(Id::resetHere, QT_TRANSLATE_NOOP("Commands", "Reset to Here…"), wantedCommit),
    onSelection(Id::copyHash, QT_TRANSLATE_NOOP("Commands", "Copy Hash"), wantedCommit),
    onSelection(Id::copySubject, QT_TRANSLATE_NOOP("Commands", "Copy Subject"), wantedCommit),
    onSelection(Id::showCommit, QT_TRANSLATE_NOOP("Commands", "Show Commit"),
                QT_TRANSLATE_NOOP("Commands", "Select a line of a blame, or a commit in the history of a file."),
                Qt::Key_Return),
    onSelection(Id::signOff, QT_TRANSLATE_NOOP("Commands", "Sign Off"), wantedMessage),
    onSelection(Id::addCoAuthor, QT_TRANSLATE_NOOP("Commands", "Add Co-Author"), wantedMessage),
    onSelection(Id::recentMessages, QT_TRANSLATE_NOOP("Commands", "Recent Messages"), wantedMessage),
    onSelection(Id::wrapBody, QT_TRANSLATE_NOOP("Commands", "Wrap Body"), wantedMessage),
    {.id = Id::absorb,
     .name = QT_TRANSLATE_NOOP("Commands", "Absorb Staged Changes…"),
     .keys = shifted | Qt::Key_A,
     .action = [](Store& store) { store.window().showSheet(AbsorbSheet{}); },
     .verb = Verb::rewrite,
     .isPossible = [](const Store& store) { return store.snapshot().status.value().stagedCount() > 0; },
     .buttonName = QT_TRANSLATE_NOOP("Commands", "Absorb…"),
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing is staged.")},
    onSelection(Id::commitStagedInto, QT_TRANSLATE_NOOP("Commands", "Commit Staged Changes into This"), wantedMovable),
    {.id = Id::commitInto,
     .name = QT_TRANSLATE_NOOP("Commands", "Commit into…"),
     .action = Command::SightSlot{"commitInto()"},
     .wanted = wantedMessage},
    onSelection(Id::goToMovedLine, QT_TRANSLATE_NOOP("Commands", "Go to Moved Line"),
                QT_TRANSLATE_NOOP("Commands", "Select a moved line in a diff.")),
    onSelection(Id::linesHistory, QT_TRANSLATE_NOOP("Commands", "History of These Lines"),
                QT_TRANSLATE_NOOP("Commands", "Select lines in a diff or in a blame.")),
    onSelection(Id::takeFile, QT_TRANSLATE_NOOP("Commands", "Take into the Working Copy"), wantedCommitFile),
    onSelection(Id::openVersion, QT_TRANSLATE_NOOP("Commands", "Open This Version"), wantedCommitFile),
    onSelection(Id::saveVersion, QT_TRANSLATE_NOOP("Commands", "Save This Version As…"), wantedCommitFile),
    onSelection(Id::compareWithHead, QT_TRANSLATE_NOOP("Commands", "Compare with HEAD"), wantedState),
    onSelection(Id::compareWithWorkingTree, QT_TRANSLATE_NOOP("Commands", "Compare with Working Copy"), wantedState),
    onSelection(Id::compareWith, QT_TRANSLATE_NOOP("Commands", "Compare with…"), wantedState),
    onSelection(Id::compareBoth, QT_TRANSLATE_NOOP("Commands", "Compare Both"),
                QT_TRANSLATE_NOOP("Commands", "Select two commits in the history.")),
    onSelection(Id::browseFiles, QT_TRANSLATE_NOOP("Commands", "Browse All Files"), wantedCommit),
    onSelection(Id::bringBackBranch, QT_TRANSLATE_NOOP("Commands", "Bring Back Branch"),
                QT_TRANSLATE_NOOP("Commands", "Select where a deleted branch was left, in “Where HEAD Was”.")),
    onSelection(Id::refLogOfBranch, QT_TRANSLATE_NOOP("Commands", "Where It Was"),
                QT_TRANSLATE_NOOP("Commands", "Select a local branch in the sidebar.")),
    onSelection(Id::commitRelations, QT_TRANSLATE_NOOP("Commands", "Children, Branches and Tags…"), wantedCommit),
    onSelection(Id::editCommitMessage, QT_TRANSLATE_NOOP("Commands", "Edit Message…"), wantedMovable, Qt::Key_F2),
    onSelection(Id::squashIntoParent, QT_TRANSLATE_NOOP("Commands", "Squash into Parent"), wantedMovable,
                shifted | Qt::Key_K),
    onSelection(Id::fixUpIntoParent, QT_TRANSLATE_NOOP("Commands", "Fix Up into Parent"), wantedMovable),
    onSelection(Id::moveCommitUp, QT_TRANSLATE_NOOP("Commands", "Move Up"), wantedMovable, Qt::CTRL | Qt::Key_Up),
    onSelection(Id::moveCommitDown, QT_TRANSLATE_NOOP("Commands", "Move Down"), wantedMovable, Qt::CTRL | Qt::Key_Down),
    onSelection(Id::dropCommit, QT_TRANSLATE_NOOP("Commands", "Drop"), wantedMovable, Qt::Key_Delete),
    onSelection(Id::keepCommit, QT_TRANSLATE_NOOP("Commands", "Leave as It Is"),
                QT_TRANSLATE_NOOP("Commands", "Select a commit that the plan changes.")),
    onSelection(Id::stopToEdit, QT_TRANSLATE_NOOP("Commands", "Stop Here to Edit…"), wantedMovable),
    onSelection(Id::splitCommit, QT_TRANSLATE_NOOP("Commands", "Split…"), wantedMovable),
    onSelection(Id::rebaseFromHere, QT_TRANSLATE_NOOP("Commands", "Rebase from Here onto…"), wantedMovable),
    {.id = Id::applyPlan,
     .name = QT_TRANSLATE_NOOP("Commands", "Apply the Plan"),
     .action = [](Store& store) { store.rewriting().apply(); },
     .verb = Verb::rewrite,
     .isPossible =
         [](const Store& store) {
             return store.rewriting().outcome.value().has_value() && store.rewriting().whyNotApplied().isEmpty();
         },
     .wanted = wantedPlan},
    {.id = Id::cancelPlan,
     .name = QT_TRANSLATE_NOOP("Commands", "Cancel the Plan"),
     .action = [](Store& store) { store.rewriting().cancel(); },
     .isPossible = [](const Store& store) { return store.rewriting().plan.value().has_value(); },
     .wanted = wantedPlan},
    {.id = Id::squashFixups,
     .name = QT_TRANSLATE_NOOP("Commands", "Squash Fixup Commits"),
     .action = [](Store& store) { store.rewriting().squashFixups(); },
     .verb = Verb::rewrite,
     .isPossible = [](const Store& store) { return store.rewriting().fixups() > 0; },
     .wanted = QT_TRANSLATE_NOOP("Commands", "No commit says that it belongs into another one.")},
    {.id = Id::worktrees,
     .name = QT_TRANSLATE_NOOP("Commands", "Worktrees…"),
     .action = [](Store& store) { store.window().showSheet(WorktreesSheet{}); }},
    {.id = Id::newWorktree,
     .name = QT_TRANSLATE_NOOP("Commands", "New Worktree…"),
     .action = [](Store& store) { store.window().showSheet(NewWorktreeSheet{}); },
     .verb = Verb::addWorktree,
     .isPossible = [](const Store& store) { return store.snapshot().status.value().hasCommits(); },
     .wanted = QT_TRANSLATE_NOOP("Commands", "Nothing has been committed yet.")},
    onSelection(Id::openWorktree, QT_TRANSLATE_NOOP("Commands", "Open Worktree"), wantedWorktree),
    onSelection(Id::lockWorktree, QT_TRANSLATE_NOOP("Commands", "Lock Worktree…"), wantedWorktree),
    onSelection(Id::unlockWorktree, QT_TRANSLATE_NOOP("Commands", "Unlock Worktree"),
                QT_TRANSLATE_NOOP("Commands", "Go to a locked worktree in the sidebar.")),
    onSelection(Id::removeWorktree, QT_TRANSLATE_NOOP("Commands", "Remove Worktree…"), wantedWorktree),
};

constexpr bool hasARowForEachId()
{
    for (std::size_t index = 0; index < std::size(table); ++index) {
        if (table[index].id != static_cast<CommandId>(index))
            return false;
    }
    return std::size(table) == static_cast<std::size_t>(Id::removeWorktree) + 1;
}
static_assert(hasARowForEachId());

} // namespace

std::span<const Command> allCommands() { return table; }

const Command& command(CommandId id) { return table[static_cast<std::size_t>(id)]; }

} // namespace plovik

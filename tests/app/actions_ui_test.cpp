// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/OwnCommands.h"
#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/dialogs/ShortcutsDialog.h"
#include "app/ui/diff/DiffKeys.h"
#include "app/ui/history/CommitMenu.h"
#include "app/ui/sidebar/RefMenu.h"
#include "app/ui/sidebar/SidebarView.h"
#include "app/ui/stashes/StashMenu.h"
#include "app/ui/stashes/StashesView.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/GivenRunning.h"
#include "tests/app/NoTarget.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMainWindow>
#include <QMenuBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QShortcut>
#include <QTreeView>
#include <QTreeWidget>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <map>

using gitkit::GitRef;
using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::entries;
using test::entry;
using test::named;
using test::waitUntil;
using Titles = std::vector<std::string>;

GitRef makeRef(GitRef::Kind kind, const std::string& prefix, const std::string& name, bool isHead = false)
{
    GitRef ref;
    ref.hash = std::string(40, 'a');
    ref.fullName = prefix + name;
    ref.name = name;
    ref.kind = kind;
    ref.isHead = isHead;
    return ref;
}

TEST(ContextMenus, OfferWhatCanBeDoneWithARef)
{
    RepositoryStore store{"/nonexistent"};
    gitkit::RepoStatus status;
    status.branch = "a&b";
    given(store.snapshot().status, status);
    QWidget parent;
    const auto menuOf = [&](const GitRef& ref) { return entries(*makeRefMenu(store, ref, &parent)); };
    const GitRef local = makeRef(GitRef::Kind::local, "refs/heads/", "side");
    const GitRef current = makeRef(GitRef::Kind::local, "refs/heads/", "a&b", true);
    const GitRef remote = makeRef(GitRef::Kind::remote, "refs/remotes/", "origin/side");
    const GitRef tag = makeRef(GitRef::Kind::tag, "refs/tags/", "v1");

    EXPECT_EQ(menuOf(local), (Titles{"Check Out",
                                     "Merge into “a&&b”",
                                     "Merge With Options…",
                                     "Rebase “a&&b” onto “side”",
                                     "Rebase “side” onto…",
                                     "New Branch from Here…",
                                     "(Pull)",
                                     "(Move to Selected Commit)",
                                     "Push to…",
                                     "(New Request on the Web)",
                                     "—",
                                     "Rename…",
                                     "Upstream",
                                     "—",
                                     "Compare",
                                     "Where It Was",
                                     "—",
                                     "Copy Name",
                                     "—",
                                     "Delete…"}));
    EXPECT_EQ(menuOf(current),
              (Titles{"(Check Out)", "(Merge into “a&&b”)", "(Merge With Options…)", "(Rebase “a&&b” onto “a&&b”)",
                      "Rebase “a&&b” onto…", "New Branch from Here…", "Push", "Push to…", "(New Request on the Web)",
                      "—", "Rename…", "Upstream", "—", "Compare", "Where It Was", "—", "Copy Name", "—", "(Delete…)"}));
    EXPECT_EQ(menuOf(remote),
              (Titles{"Check Out", "Merge", "Merge With Options…", "Rebase “a&&b” onto “origin/side”",
                      "New Branch from Here…", "Make Upstream of “a&&b”", "—", "Compare", "—", "Copy Name"}));
    EXPECT_EQ(menuOf(tag),
              (Titles{"Check Out", "New Branch from Here…", "—", "Compare", "—", "Copy Name", "—", "Delete…"}));

    entry(*makeRefMenu(store, remote, &parent), u"New Branch from Here…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{"refs/remotes/origin/side"}));
    entry(*makeRefMenu(store, remote, &parent), u"Copy Name"_s)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"origin/side"_s);
    test::givenRunning(store, Verb::fetch);
    EXPECT_EQ(menuOf(current), (Titles{"(Check Out)", "(Merge into “a&&b”)", "(Merge With Options…)",
                                       "(Rebase “a&&b” onto “a&&b”)", "Rebase “a&&b” onto…", "New Branch from Here…",
                                       "(Push)", "(Push to…)", "(New Request on the Web)", "—", "Rename…", "Upstream",
                                       "—", "Compare", "Where It Was", "—", "Copy Name", "—", "(Delete…)"}));
    test::givenRunning(store, Verb::deleteTag);
    EXPECT_EQ(menuOf(tag),
              (Titles{"Check Out", "New Branch from Here…", "—", "Compare", "—", "Copy Name", "—", "(Delete…)"}));
    test::givenRunning(store, Verb::pull);
    EXPECT_EQ(menuOf(tag),
              (Titles{"(Check Out)", "(New Branch from Here…)", "—", "Compare", "—", "Copy Name", "—", "Delete…"}));
    EXPECT_EQ(entry(*makeRefMenu(store, tag, &parent), u"Check Out"_s)->toolTip(),
              u"Not while this runs: Something…"_s);
}

TEST(ContextMenus, OfferWhatCanBeDoneWithACommitAndAStash)
{
    RepositoryStore store{"/nonexistent"};
    QWidget parent;
    gitkit::Commit commit;
    commit.hash = std::string(40, 'c');
    commit.subject = "Change it";
    QMenu* menu = makeCommitMenu(store, commit, &parent);
    EXPECT_EQ(entries(*menu), (Titles{"Check Out Commit",
                                      "New Branch Here…",
                                      "New Tag Here…",
                                      "—",
                                      "Cherry-Pick",
                                      "Revert",
                                      "(Reset HEAD to Here…)",
                                      "—",
                                      "(Edit Message…)",
                                      "Rewrite",
                                      "—",
                                      "Compare",
                                      "Children, Branches and Tags…",
                                      "—",
                                      "Copy Hash",
                                      "Copy Subject",
                                      "(Copy Link)",
                                      "(Open on the Web)",
                                      "—",
                                      "Copy as Patch",
                                      "Save Patch…",
                                      "Archive…"}));
    entry(*menu, u"New Tag Here…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewTagSheet{commit.hash}));
    entry(*menu, u"New Branch Here…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{commit.hash}));
    EXPECT_EQ(entries(*makeStashMenu(store, {}, &parent)),
              (Titles{"Apply Stash", "Pop Stash", "New Branch from Stash…", "—", "Drop Stash…"}));
    gitkit::Commit merge;
    merge.parents = {"1", "2"};
    const auto enabled = [&](const std::vector<gitkit::Commit>& commits, const QString& title) {
        const QAction* const found = entry(*makeCommitsMenu(store, commits, &parent), title);
        return found && found->isEnabled();
    };
    EXPECT_TRUE(enabled({commit, commit, commit}, u"Revert 3 Commits"_s));
    EXPECT_FALSE(enabled({commit, merge, commit}, u"Cherry-Pick 3 Commits"_s));
    test::givenRunning(store, Verb::revert);
    EXPECT_EQ(entries(*makeCommitMenu(store, commit, &parent)), (Titles{"(Check Out Commit)",
                                                                        "(New Branch Here…)",
                                                                        "New Tag Here…",
                                                                        "—",
                                                                        "(Cherry-Pick)",
                                                                        "(Revert)",
                                                                        "(Reset HEAD to Here…)",
                                                                        "—",
                                                                        "(Edit Message…)",
                                                                        "Rewrite",
                                                                        "—",
                                                                        "Compare",
                                                                        "Children, Branches and Tags…",
                                                                        "—",
                                                                        "Copy Hash",
                                                                        "Copy Subject",
                                                                        "(Copy Link)",
                                                                        "(Open on the Web)",
                                                                        "—",
                                                                        "Copy as Patch",
                                                                        "Save Patch…",
                                                                        "Archive…"}));
}

/// A window's content over a real repository.
struct ActionsTest : testing::Test {
    ActionsTest() { repo.write("a", "1\n").commit("one").git({"branch", "side"}); }
    ~ActionsTest() override { worker.settle(); }

    void load()
    {
        view.resize(1000, 600);
        view.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
    }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    RepositoryView view{store};
};

TEST_F(ActionsTest, ADoubleClickInTheSidebarChecksOutAndAMenuLeavesTheSelection)
{
    load();
    QTreeView& tree = *view.sidebar()->tree();
    const SidebarModel& model = view.sidebar()->model();
    const auto middleOf = [&](const std::string& name) {
        return tree.visualRect(model.indexOf(SidebarItem::ref("refs/heads/" + name))).center();
    };
    QTest::mouseClick(tree.viewport(), Qt::RightButton, {}, middleOf("side"));
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());

    QTest::mouseClick(tree.viewport(), Qt::LeftButton, {}, middleOf("side"));
    QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, middleOf("side"));
    EXPECT_EQ(named<QLabel>(view, u"Activity"_s)->text(), u"Checking out side…"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(named<QLabel>(view, u"Activity"_s)->text(), QString());
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "side");

    QTest::mouseDClick(tree.viewport(), Qt::LeftButton, {}, middleOf("side")); // it is there already
    EXPECT_FALSE(store.changes().activity.value());
}

TEST_F(ActionsTest, ARefreshMakesTheSidebarAnewOnceAndOnlyIfRefsChanged)
{
    load();
    int resets = 0;
    QObject::connect(&view.sidebar()->model(), &SidebarModel::modelReset, &view, [&resets] { ++resets; });
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(resets, 0);
    repo.git({"branch", "other"}).git({"tag", "v1"}).git({"update-ref", "refs/remotes/origin/main", "HEAD"});
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(resets, 1);
    for (const char* ref : {"refs/heads/other", "refs/tags/v1", "refs/remotes/origin/main"})
        EXPECT_TRUE(view.sidebar()->model().indexOf(SidebarItem::ref(ref)).isValid()) << ref;
}

TEST_F(ActionsTest, AMergeIsDoneAtOnce)
{
    repo.git({"checkout", "-q", "side"}).write("b", "b").commit("b").git({"checkout", "-q", "main"});
    load();
    const auto& refs = store.snapshot().branches.value();
    const auto side = std::ranges::find(refs, "side", &GitRef::name);
    ASSERT_NE(side, refs.end());
    entry(*makeRefMenu(store, *side, &view), u"Merge into “main”"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "b"), "b") << "without a question, because it can be undone";
}

TEST_F(ActionsTest, StashesAreAppliedPoppedAndDroppedFromTheirView)
{
    for (const char* message : {"older", "newer"})
        repo.write("a", std::string(message) + "\n").git({"stash", "push", "-q", "-m", message});
    store.window().select(SidebarItem::stashes());
    load();
    auto* stashes = view.findChild<StashesView*>();
    const auto press = [&](const QString& title) { named<QPushButton>(*stashes, title)->click(); };
    const auto select = [&](int row) { stashes->list()->setCurrentIndex(stashes->list()->model()->index(row, 0)); };
    EXPECT_TRUE(named<QLabel>(*stashes, u"2 stashes"_s));
    select(1);
    press(u"Apply"_s);
    EXPECT_FALSE(named<QPushButton>(*stashes, u"Pop"_s)->isEnabled());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "a"), "older\n");
    repo.git({"checkout", "a"});

    select(0);
    press(u"Pop"_s);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "a"), "newer\n");
    EXPECT_TRUE(named<QLabel>(*stashes, u"1 stash"_s));
    EXPECT_EQ(stashes->list()->currentIndex().data().toString(), u"older"_s);

    press(u"Drop…"_s);
    named<QPushButton>(*test::openDialog(view), u"Drop"_s)->click();
    ASSERT_TRUE(worker.settle());
    auto* stashChanges = named<QPushButton>(*stashes, u"Stash Changes…"_s);
    EXPECT_TRUE(stashChanges->isVisible() && stashChanges->isEnabled());
    repo.git({"checkout", "a"});
    store.snapshot().refresh(RefreshScope::status);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(stashChanges->isEnabled());
}

TEST_F(ActionsTest, TheToolbarSwitchesToTheBranchesThatWereUsedLastAndSaysWhyNot)
{
    for (const char* name : {"aa", "bb", "cc", "dd", "ee", "ff", "gg", "hh"})
        repo.git({"branch", name});
    repo.git({"checkout", "-q", "ff"}).git({"checkout", "-q", "bb"}).git({"checkout", "-q", "main"});
    load();
    auto* const button = named<QPushButton>(view, u"Switch Branch"_s);
    EXPECT_EQ(button->accessibleDescription(), u"main"_s);
    const auto open = [&]() -> QWidget* {
        button->click();
        EXPECT_TRUE(worker.settle());
        return QApplication::activePopupWidget();
    };
    const auto type = [&](QWidget& into, const QString& text) {
        QTest::keyClicks(named<QLineEdit>(into, u"Filter Branches"_s), text);
        QTest::keyClick(named<QLineEdit>(into, u"Filter Branches"_s), Qt::Key_Return); // before it has been looked for
        EXPECT_TRUE(worker.settle());
    };
    QWidget* popup = open();
    ASSERT_TRUE(popup);
    auto* list = named<QListView>(*popup, u"Branches"_s);
    Titles titles;
    for (int row = 0; row < list->model()->rowCount(); ++row)
        titles.push_back(list->model()->index(row, 0).data().toString().toStdString());
    EXPECT_EQ(titles, (Titles{"main", "bb", "ff", "aa", "cc", "dd", "ee", "gg", "hh", "side"}));
    type(*popup, u"f"_s);
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "ff");
    EXPECT_EQ(button->accessibleDescription(), u"ff"_s);

    auto* const pull = named<QPushButton>(view, u"Pull"_s);
    EXPECT_EQ(pull->toolTip(), u"Pull (Ctrl+Shift+P)\nThis repository has no remote."_s);
    test::givenRunning(store, Verb::pull);
    popup = open();
    ASSERT_TRUE(popup);
    list = named<QListView>(*popup, u"Branches"_s);
    EXPECT_EQ(list->model()->index(1, 0).data(Qt::ToolTipRole).toString(), u"Not while this runs: Something…"_s);
    type(*popup, u"side"_s);
    EXPECT_TRUE(popup->isVisible()) << "it cannot be chosen";
    popup->close();
    test::givenRunning(store, std::nullopt);
}

TEST_F(ActionsTest, AnUpstreamPastTheFirstOnesIsFoundByTyping)
{
    repo.git({"remote", "add", "origin", "/nowhere"});
    const std::string head = repo.head();
    std::string refs;
    for (int number = 100; number < 140; ++number)
        refs += "create refs/remotes/origin/topic" + std::to_string(number) + ' ' + head + '\n';
    repo.git({"update-ref", "--stdin"}, refs);
    load();
    const GitRef side = store.snapshot().branches.value().back();
    ASSERT_EQ(side.name, "side");
    QMenu* const upstreams = entry(*makeRefMenu(store, side, &view), u"Upstream"_s)->menu();
    EXPECT_FALSE(entry(*upstreams, u"origin/topic139"_s));
    entry(*upstreams, u"Choose…"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    QWidget* const popup = QApplication::activePopupWidget();
    ASSERT_TRUE(popup);
    QTest::keyClicks(named<QLineEdit>(*popup, u"Filter Remote Branches"_s), u"139"_s);
    QTest::keyClick(named<QLineEdit>(*popup, u"Filter Remote Branches"_s), Qt::Key_Return);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"config", "branch.side.merge"}), "refs/heads/topic139")
        << store.window().errorMessage.value().value_or(QString()).toStdString();
}

TEST_F(ActionsTest, ThePaletteFindsEverythingByAPartOfItsName)
{
    repo.write("src/parser.cpp", "1").write("src/other.cpp", "1").commit("Teach the parser about renames");
    repo.write("src/other.cpp", "2");
    QMainWindow window;
    test::NoTarget target;
    window.setCentralWidget(new RepositoryView(store));
    mainMenu::build(*window.menuBar(), target, store);
    window.resize(1000, 700);
    window.show();
    load();
    const auto choose = [&](const QString& typed) {
        QAction* open = nullptr;
        for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>())
            open = open ? open : entry(*menu, u"Command Palette…"_s);
        open->trigger();
        QWidget* const popup = QApplication::activePopupWidget();
        auto* const field = named<QLineEdit>(*popup, u"Find Commands and Names"_s);
        field->setText(typed);
        EXPECT_TRUE(worker.settle());
        const QString first = named<QListView>(*popup, u"Commands and Names"_s)
                                  ->model()
                                  ->index(0, 0)
                                  .data(Qt::AccessibleTextRole)
                                  .toString();
        QTest::keyClick(field, Qt::Key_Return);
        if (QApplication::activePopupWidget())
            popup->close();
        EXPECT_TRUE(worker.settle());
        QApplication::processEvents();
        return first.toStdString();
    };
    EXPECT_EQ(choose(u"pull"_s), "Repository: Pull, This repository has no remote.");
    EXPECT_EQ(choose(u"merge"_s), "Branch: Merge, Select a branch in the sidebar.");
    EXPECT_EQ(choose(u"new bra"_s), "Branch: New Branch…, Ctrl+Shift+B");
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{}));
    store.window().closeSheet();
    EXPECT_EQ(choose(u"side"_s), "side, branch");
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/side"));
    EXPECT_EQ(choose(u"delete"_s), "Branch: Delete…");
    ASSERT_TRUE(worker.settle());
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_EQ(store.window().confirmation.value()->title, u"Delete branch “side”?"_s);
    store.window().dismissQuestion();

    EXPECT_EQ(choose(u"srpar"_s), "src/parser.cpp, file history");
    EXPECT_EQ(store.window().inspected.value(), (InspectedFile{"src/parser.cpp", {}, InspectedFile::Tab::history}));
    EXPECT_EQ(choose(u"oth"_s), "src/other.cpp, changed file");
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"src/other.cpp"});
    const std::string hash = repo.read({"rev-parse", "HEAD"});
    EXPECT_EQ(choose(u"about ren"_s), "Teach the parser about renames, Ada " + hash.substr(0, 7));
    EXPECT_EQ(store.window().selectedCommit.value(), hash);
    const std::string first = repo.read({"rev-parse", "HEAD~"});
    EXPECT_EQ(choose(QString::fromStdString(first.substr(0, 9))), "one, Ada " + first.substr(0, 7));
    EXPECT_EQ(store.window().selectedCommit.value(), first);
    EXPECT_EQ(choose(u"nothing is named so"_s), "Search the History for “nothing is named so”");
    EXPECT_EQ(store.history().historySearch.value(), u"nothing is named so"_s);
    delete window.takeCentralWidget();
}

TEST_F(ActionsTest, OwnCommandsStandWhereTheyBelongAndRunForWhatIsSelected)
{
    using Place = ownCommands::Entry::Place;
    const std::vector<ownCommands::Entry> entries{
        {u"Say & Tell"_s, u"echo said"_s, Place::repository, u"Ctrl+Alt+9"_s},
        {u"Name It"_s, u"printf %s {branch} > told"_s, Place::branch, {}, true},
        {u"Taken Keys"_s, u"touch never"_s, Place::repository, u"Ctrl+R"_s},
        {u"Unfinished"_s, u" "_s},
        {u"Keep"_s, u"cp {file} kept"_s, Place::file}};
    ownCommands::store(entries);
    EXPECT_EQ(ownCommands::all(), entries);
    repo.write("odd $(touch never) it's", "kept\n");
    QMainWindow window;
    test::NoTarget target;
    window.setCentralWidget(new RepositoryView(store));
    mainMenu::build(*window.menuBar(), target, store);
    window.resize(1000, 700);
    window.show();
    load();
    const auto own = [&]() -> QMenu* {
        for (QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
            if (menu->title().remove(u'&') == u"Own Commands"_s) {
                Q_EMIT menu->aboutToShow();
                return menu;
            }
        }
        return nullptr;
    };
    ASSERT_TRUE(own());
    // Nothing is selected for the ones that need something.
    EXPECT_FALSE(entry(*own(), u"Name It"_s)->isEnabled());
    EXPECT_EQ(entry(*own(), u"Keep"_s)->toolTip(), u"Select a file."_s);
    EXPECT_FALSE(entry(*own(), u"Unfinished"_s));

    std::vector<QShortcut*> listening;
    for (QShortcut* const shortcut : window.findChildren<QShortcut*>()) {
        if (shortcut->key() == QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_9))
            listening.push_back(shortcut);
    }
    ASSERT_EQ(listening.size(), 1U);
    QMetaObject::invokeMethod(listening.front(), "activated");
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(store.window().showsCommandLog.value()) << "it shows what was said";
    const auto shown = store.changes().commandLog().output(store.window().shownCommand.value().value_or(0));
    EXPECT_EQ(shown.value_or(CommandLog::Output{}).beginning, "said\n");

    const GitRef side = store.snapshot().branches.value().back();
    entry(*makeRefMenu(store, side, &view), u"Name It"_s)->trigger();
    ASSERT_TRUE(store.window().confirmation.value());
    EXPECT_TRUE(store.window().confirmation.value()->message.contains(u"Undo covers"_s));
    store.window().confirm(store.window().confirmation.value()->id);
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "told"), "side");

    store.window().goTo(SidebarItem::workingCopy());
    store.window().selectPaths({"odd $(touch never) it's"});
    ASSERT_TRUE(worker.settle());
    entry(*own(), u"Keep"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(readFile(repo / "kept"), "kept\n");
    EXPECT_FALSE(std::filesystem::exists(repo / "never"));
    ownCommands::store({});
    EXPECT_EQ(entry(*own(), u"None Yet"_s)->isEnabled(), false);
    delete window.takeCentralWidget();
}

struct MainMenuTest : testing::Test {
    MainMenuTest()
    {
        window.setCentralWidget(&text);
        mainMenu::build(*window.menuBar(), target, store);
        window.show();
        window.activateWindow();
        text.setFocus();
    }
    ~MainMenuTest() override { window.takeCentralWidget(); }

    QAction* command(const QString& title) const
    {
        for (const QMenu* menu : window.menuBar()->findChildren<QMenu*>()) {
            if (QAction* const found = entry(*menu, title))
                return found;
        }
        return nullptr;
    }

    test::NoTarget target;
    RepositoryStore store{"/nonexistent"};
    QLineEdit text;
    QMainWindow window;
};

TEST_F(MainMenuTest, TellsWhatTheStoreWouldDrop)
{
    EXPECT_TRUE(command(u"Fetch"_s)->isEnabled());
    EXPECT_FALSE(command(u"Stash Changes…"_s)->isEnabled());
    gitkit::RepoStatus status;
    status.files = {{"a", std::nullopt, '.', 'M'}};
    given(store.snapshot().status, status);
    EXPECT_FALSE(command(u"Stash Changes…"_s)->isEnabled());
    EXPECT_EQ(command(u"Stash Changes…"_s)->toolTip(), u"Nothing has been committed yet."_s);
    status.oid = std::string(40, 'a');
    given(store.snapshot().status, status);
    EXPECT_TRUE(command(u"Stash Changes…"_s)->isEnabled());
    test::givenRunning(store, Verb::fetch);
    for (const QString& title : {u"Fetch"_s, u"Pull"_s, u"Push"_s})
        EXPECT_FALSE(command(title)->isEnabled()) << title.toStdString();
    for (const QString& title : {u"Cancel Action"_s, u"New Branch…"_s, u"Stash Changes…"_s})
        EXPECT_TRUE(command(title)->isEnabled()) << title.toStdString();
    test::givenRunning(store, Verb::pull);
    for (const QString& title : {u"Fetch"_s, u"New Branch…"_s, u"Stash Changes…"_s})
        EXPECT_FALSE(command(title)->isEnabled()) << title.toStdString();
    test::givenRunning(store, std::nullopt);
    EXPECT_FALSE(command(u"Cancel Action"_s)->isEnabled());
    command(u"New Branch…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{}));
    command(u"Push"_s)->trigger();
    EXPECT_EQ(store.window().errorMessage.value(), u"Cannot push: HEAD is detached. Check out a branch first."_s);

    const auto whyNot = [this](const QString& title) {
        return command(title)->isEnabled() ? QString() : command(title)->toolTip();
    };
    given(store.snapshot().hasLoaded, true);
    EXPECT_EQ(whyNot(u"Push"_s), u"HEAD is detached. Check out a branch first."_s);
    status.branch = "main";
    given(store.snapshot().status, status);
    EXPECT_EQ(whyNot(u"Push"_s), u"This repository has no remote."_s);
    EXPECT_EQ(whyNot(u"Pull"_s), u"This repository has no remote."_s);
    given(store.snapshot().remotes, std::vector<std::string>{"origin"});
    EXPECT_EQ(whyNot(u"Push"_s), QString());
    EXPECT_EQ(whyNot(u"Pull"_s), u"“main” has no branch to pull from. Push it first."_s);
    status.upstream = "origin/main";
    status.files = {{"a", std::nullopt, 'U', 'U', true}};
    given(store.snapshot().status, status);
    for (const QString& title : {u"Pull"_s, u"Stash Changes…"_s})
        EXPECT_EQ(whyNot(title), u"Resolve and stage the conflicted files first"_s) << title.toStdString();
    status.files = {};
    given(store.snapshot().status, status);
    EXPECT_EQ(whyNot(u"Pull"_s), QString());
}

/// Returns the entries of a menu and of those inside it that can be seen.
QList<QAction*> seen(const QMenu& menu)
{
    QList<QAction*> entries;
    for (QAction* const entry : menu.actions()) {
        if (!entry->isSeparator() && entry->isVisible())
            entries.append(entry);
    }
    return entries;
}

TEST_F(MainMenuTest, EveryEntryHasALetterOfItsOwnInItsMenu)
{
    const auto look = [](const QList<QAction*>& entries, const QString& place) {
        std::map<QChar, QString> letters;
        for (const QAction* const entry : entries) {
            const QString text = QString(entry->text()).remove(u"&&"_s);
            const qsizetype mark = text.indexOf(u'&');
            ASSERT_GE(mark, 0) << place.toStdString() << ": " << text.toStdString();
            const QChar letter = text[mark + 1].toUpper();
            EXPECT_TRUE(letter.isLetterOrNumber()) << text.toStdString();
            EXPECT_FALSE(letters.contains(letter)) << text.toStdString() << ", " << letters[letter].toStdString();
            letters[letter] = text;
        }
    };
    Settings::shared().set(settings::aiEnabled, true);
    look(window.menuBar()->actions(), u"bar"_s);
    for (QMenu* const menu : window.menuBar()->findChildren<QMenu*>()) {
        Q_EMIT menu->aboutToShow();
        look(seen(*menu), menu->title());
    }
    Settings::shared().set(settings::aiEnabled, settings::aiEnabled.fallback);
}

TEST_F(MainMenuTest, EveryCommandStandsInItOnce)
{
    std::map<CommandId, int> found;
    for (const QMenu* const menu : window.menuBar()->findChildren<QMenu*>()) {
        for (const QAction* const entry : menu->actions()) {
            if (const std::optional<CommandId> id = commandOf(*entry))
                ++found[*id];
        }
    }
    for (const Command& listed : allCommands())
        EXPECT_EQ(found[listed.id], 1) << listed.title().toStdString();
}

TEST_F(ActionsTest, TheMenuBarDoesWhatTheContextMenuOfTheSelectionDoes)
{
    QMainWindow window;
    test::NoTarget target;
    auto* const shown = new RepositoryView(store);
    window.setCentralWidget(shown);
    mainMenu::build(*window.menuBar(), target, store);
    window.resize(1000, 700);
    window.show();
    repo.write("a", "2\n");
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    const auto command = [&](const QString& menu, const QString& title) -> QAction* {
        for (QMenu* const each : window.menuBar()->findChildren<QMenu*>()) {
            if (withoutMnemonic(each->title()) != menu)
                continue;
            Q_EMIT each->aboutToShow();
            return entry(*each, title);
        }
        return nullptr;
    };
    QAction* merge = command(u"Branch"_s, u"Merge"_s);
    EXPECT_FALSE(merge->isEnabled());
    EXPECT_EQ(merge->toolTip(), u"Select a branch in the sidebar."_s);
    EXPECT_FALSE(command(u"Commit"_s, u"Stage"_s)->isEnabled());

    store.window().selectPaths({"a"});
    QAction* const stage = command(u"Commit"_s, u"Stage"_s);
    ASSERT_TRUE(stage && stage->isEnabled());
    EXPECT_TRUE(stage->shortcut().isEmpty()) << "the key is the list's";
    EXPECT_TRUE(stage->text().endsWith(u"\tSpace"_s));
    stage->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "a");

    store.draft().setBody(QString(60, u'a') + u' ' + QString(60, u'b'));
    command(u"Commit"_s, u"Wrap Body at 72 Columns"_s)->trigger();
    EXPECT_EQ(store.draft().commitBody.value(), QString(60, u'a') + u'\n' + QString(60, u'b'));
    command(u"Commit"_s, u"Sign Off"_s)->trigger();
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(store.draft().commitBody.value().contains(u"Signed-off-by: "_s));
    command(u"Commit"_s, u"Add Co-Author"_s)->trigger();
    auto* const people = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_TRUE(people);
    entry(*people, u"Another Person"_s)->trigger();
    people->close();
    EXPECT_TRUE(store.draft().commitBody.value().endsWith(u"Co-authored-by: "_s));

    store.window().select(SidebarItem::ref("refs/heads/main"));
    ASSERT_TRUE(worker.settle());
    merge = command(u"Branch"_s, u"Merge into “main”"_s);
    ASSERT_TRUE(merge);
    EXPECT_EQ(merge->toolTip(), u"This branch is checked out."_s);
    store.window().select(SidebarItem::ref("refs/heads/side"));
    ASSERT_TRUE(worker.settle());
    command(u"Branch"_s, u"New Branch from Here…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{"refs/heads/side"}));
    store.window().closeSheet();
    QAction* const pick = command(u"Commit"_s, u"Cherry-Pick"_s);
    ASSERT_TRUE(pick);
    EXPECT_TRUE(pick->isEnabled()) << "the tip of the branch is selected";
    EXPECT_EQ(command(u"Commit"_s, u"Sign Off"_s)->toolTip(),
              u"Show the working copy, where the message is written."_s);
    delete window.takeCentralWidget();
}

/// Returns the cells of the first table of the README's chapter on the keyboard as pairs of keys and a command.
std::map<QString, QString> keysInReadme()
{
    QFile file(QStringLiteral(PLOVIK_README));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QString chapter = QString::fromUtf8(file.readAll()).section(u"## The keyboard\n\n"_s, 1);
    std::map<QString, QString> found;
    for (const QString& row : chapter.section(u"\n\n"_s, 0, 0).split(u'\n').sliced(2)) {
        const QStringList keys = row.section(u" | "_s, 0, 0).sliced(2).split(u", "_s);
        const QStringList commands = row.section(u" | "_s, 1).chopped(2).split(u", "_s);
        EXPECT_EQ(keys.size(), commands.size()) << row.toStdString();
        for (qsizetype index = 0; index < std::min(keys.size(), commands.size()); ++index)
            found[keys[index]] = commands[index];
    }
    return found;
}

TEST_F(MainMenuTest, TheReadmeListsTheKeysOfAllCommands)
{
    std::map<QString, QString> keys;
    for (const Command& listed : allCommands()) {
        if (listed.shortcut().isEmpty() || std::holds_alternative<Command::OnSelection>(listed.action))
            continue;
        const QString shortcut = listed.shortcut().toString(QKeySequence::PortableText);
        EXPECT_FALSE(keys.contains(shortcut)) << shortcut.toStdString() << " is taken";
        keys[shortcut] = listed.title().remove(u'…');
    }
    EXPECT_EQ(keysInReadme(), keys);

    QStringList rows;
    for (const ListKeys& each : listKeys())
        rows += u"| %1 | %2 |"_s.arg(QString::fromLatin1(each.keys), QString::fromUtf8(each.meaning));
    QFile readme(QStringLiteral(PLOVIK_README));
    ASSERT_TRUE(readme.open(QIODevice::ReadOnly));
    EXPECT_TRUE(
        QString::fromUtf8(readme.readAll()).contains(u"| Keys | |\n|---|---|\n"_s + rows.join(u'\n') + u"\n\n"_s))
        << rows.join(u'\n').toStdString();
    for (const DiffKey& key : diffKeys()) {
        const QString pressed = QKeySequence(key.keys)
                                    .toString(QKeySequence::PortableText)
                                    .replace(u"Del"_s, u"Delete"_s)
                                    .replace(u"Esc"_s, u"Escape"_s);
        const QRegularExpression listed(u"(^|, | or )%1($|, | or )"_s.arg(QRegularExpression::escape(pressed)));
        EXPECT_TRUE(keys.contains(pressed) ||
                    std::ranges::any_of(listKeys(),
                                        [&](const ListKeys& each) {
                                            return listed.match(QString::fromLatin1(each.keys)).hasMatch() &&
                                                   QString::fromUtf8(each.meaning).contains(u"in a diff"_s);
                                        }))
            << pressed.toStdString();
    }
}

TEST(Shortcuts, ArePickedByNameOrKey)
{
    QWidget window;
    window.show();
    showShortcuts(window);
    auto* const page = window.findChild<ShortcutsDialog*>();
    ASSERT_TRUE(page);
    auto* const list = page->findChild<QTreeWidget*>();
    const auto shown = [list] {
        Titles titles;
        for (QTreeWidgetItemIterator item(list, QTreeWidgetItemIterator::NotHidden); *item; ++item)
            titles.push_back((*item)->text(0).toStdString());
        return titles;
    };
    EXPECT_GT(shown().size(), 40U);
    QTest::keyClicks(named<QLineEdit>(*page, u"Filter Shortcuts"_s), u"shift fetch"_s);
    EXPECT_EQ(shown(), (Titles{"Repository", "Fetch"}));
}

TEST_F(MainMenuTest, UndoAndRedoAreTheTextsAsLongAsItHasSomethingForThem)
{
    ASSERT_TRUE(waitUntil([this] { return QApplication::focusWidget() == &text; }));
    QAction* undo = command(u"Undo"_s);
    QAction* redo = command(u"Redo"_s);
    auto* edit = qobject_cast<QMenu*>(undo->associatedObjects().constFirst());
    const auto shownTitle = [edit](const QAction* action) {
        Q_EMIT edit->aboutToShow();
        const QString title = withoutMnemonic(action->text());
        return action->isEnabled() ? title : u"("_s + title + u")"_s;
    };
    EXPECT_EQ(shownTitle(undo), u"(Undo)"_s);
    EXPECT_EQ(undo->toolTip(), u"There is nothing to undo."_s);
    EXPECT_EQ(shownTitle(redo), u"(Redo)"_s);
    EXPECT_EQ(redo->toolTip(), u"There is nothing to redo."_s);
    given(store.undo().undoTitle, std::optional(u"Merge of “a & b”"_s));
    given(store.undo().redoTitle, std::optional(u"Commit “%1”"_s.arg(QString(200, u'x'))));
    EXPECT_EQ(undo->text(), u"Undo Merge of “a && b”"_s);
    EXPECT_EQ(redo->text(), u"Redo Commit “%1…"_s.arg(QString(51, u'x')));
    test::givenRunning(store, Verb::merge);
    EXPECT_EQ(shownTitle(undo), u"(Undo Merge of “a && b”)"_s) << "it would be dropped";
    EXPECT_EQ(undo->toolTip(), u"Not while this runs: Something…"_s);
    test::givenRunning(store, std::nullopt);
    given(store.undo().redoTitle, std::optional(u"Commit"_s));
    QTest::keyClicks(&text, u"word"_s);
    EXPECT_EQ(shownTitle(undo), u"Undo"_s);
    EXPECT_EQ(shownTitle(redo), u"Redo Commit"_s);
    undo->trigger();
    EXPECT_EQ(text.text(), QString());
    EXPECT_EQ(shownTitle(undo), u"Undo Merge of “a && b”"_s);
    EXPECT_EQ(shownTitle(redo), u"Redo"_s);
    redo->trigger();
    EXPECT_EQ(text.text(), u"word"_s);

    // A text without a change leaves the key to the menu.
    text.clear();
    text.setText({});
    int done = 0;
    for (QAction* action : {undo, redo})
        QObject::connect(action, &QAction::triggered, action, [&done] { ++done; });
    QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(done, 1);
    QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(done, 2);
    QTest::keyClicks(&text, u"x"_s);
    QTest::keyClick(&text, Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(text.text(), QString());
    EXPECT_EQ(done, 2);
}

} // namespace
} // namespace plovik

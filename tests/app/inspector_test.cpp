// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/inspector/InspectorView.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/window/RepositoryView.h"
#include "app/ui/workingcopy/ChangedFilesMenu.h"
#include "tests/app/ShownWidgets.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QImage>
#include <QLabel>
#include <QScrollBar>
#include <QTabBar>
#include <QTest>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using Tab = InspectedFile::Tab;

std::string numbered(int lines, const std::string& mark = "line ")
{
    std::string text;
    for (int line = 1; line <= lines; ++line)
        text += mark + std::to_string(line) + "\n";
    return text;
}

struct Inspector : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    std::unique_ptr<InspectorView> view;

    void refresh()
    {
        store.snapshot().refresh(RefreshScope::full);
        worker.finishAll();
    }

    void show(const std::string& path, const std::optional<std::string>& revision, Tab tab)
    {
        if (!view) {
            refresh();
            view = std::make_unique<InspectorView>(store);
            view->resize(640, 600);
            view->show();
            view->activateWindow();
        }
        store.window().inspect(InspectedFile{path, revision, tab});
        worker.finishAll();
        view->focusContent();
    }

    BlameList& blame() const { return *view->blame()->list(); }
    FileHistoryList& history() const { return *view->history()->list(); }
    QString summary(int row) const { return blame().document()->commit(row).subject; }

    void makeCurrent(int row) const { blame().setCurrentIndex(blame().model()->index(row, 0)); }

    int rowHeight() const { return blame().placeOf(1).y - blame().placeOf(0).y; }
    void scrollTo(int row) const { blame().verticalScrollBar()->setValue(row * rowHeight()); }

    /// The row's text and where it stands.
    std::pair<std::string, int> standing(int row) const
    {
        return {std::string(blame().document()->text(row)), blame().placeOf(row).y};
    }

    bool says(const QString& title) const
    {
        const auto labels = view->findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [&](const QLabel* label) { return label->isVisible() && label->text() == title; });
    }

    std::string shownDiff() const
    {
        const auto& sections = view->findChild<DiffView*>()->sections();
        return sections.empty() ? std::string() : sections.front()->controller().diff().plainText().toStdString();
    }
};

TEST_F(Inspector, BlamingBeforeACommitKeepsTheLineWhereItIsAndComesBack)
{
    repo.write("old", numbered(200)).commit("create").git({"mv", "old", "f"});
    std::string text = numbered(50, "above ") + numbered(200);
    text.replace(text.find("\nline 100\n") + 1, 8, "changed");
    repo.write("f", text).commit("change");
    show("f", std::nullopt, Tab::blame);
    makeCurrent(149);
    scrollTo(140);
    const auto changed = standing(149);
    ASSERT_EQ(changed.first, "changed");
    EXPECT_EQ(summary(149), u"change"_s);

    QTest::keyClick(&blame(), Qt::Key_B);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value()->path, "old") << "what git calls the file before that commit";
    EXPECT_EQ(standing(blame().currentRow()), std::pair(std::string("line 100"), changed.second))
        << "fifty lines further up in the file, and at the same height";
    EXPECT_EQ(summary(99), u"create"_s);
    EXPECT_FALSE(blame().reasonAgainstBefore(99).isEmpty()) << "the commit that made the file";
    QTest::keyClick(&blame(), Qt::Key_B);
    EXPECT_EQ(worker.waiting(), 0U);

    QTest::keyClick(&blame(), Qt::Key_Backspace);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value()->path, "f");
    EXPECT_EQ(standing(blame().currentRow()), changed);

    store.window().inspect(InspectedFile{"old", store.history().history.value()[1].commit.hash, Tab::blame});
    worker.finishAll();
    QTest::keyClick(&blame(), Qt::Key_Backspace);
    EXPECT_EQ(store.window().inspected.value()->path, "old") << "a file from elsewhere is no step";
}

TEST_F(Inspector, FollowsTheWorkingTreeAndKeepsPlaceAndSelection)
{
    repo.write("f", numbered(200)).commit("create");
    show("f", std::nullopt, Tab::blame);
    makeCurrent(110);
    scrollTo(105);
    const auto current = standing(110);
    const auto* const before = blame().document().get();
    refresh();
    EXPECT_EQ(blame().document().get(), before) << "nothing changed, so nothing is read again";

    repo.write("f", "mine\n\xE2\x80\xAEtrap\n" + numbered(200));
    refresh();
    EXPECT_TRUE(blame().document()->commit(0).isUncommitted);
    EXPECT_EQ(blame().currentRow(), 112);
    EXPECT_EQ(standing(112), current);
    EXPECT_EQ(blame().selectedRows(), std::vector{112});
    blame().copy();
    EXPECT_EQ(QGuiApplication::clipboard()->text(), u"line 111"_s);

    // Uncommitted lines have a before: the file as it was committed.
    makeCurrent(0);
    QTest::keyClick(&blame(), Qt::Key_B);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value()->revision, repo.head());
    EXPECT_EQ(blame().document()->rowCount(), 200);
}

TEST_F(Inspector, SaysWhyThereIsNoBlame)
{
    using namespace std::string_literals;
    repo.write("empty", "")
        .write("binary", "a\0b"s)
        .write("wide", "\xFF\xFE"s + "a\0"s)
        .write("dir/f", "1\n")
        .commit("one");
    repo.write("untracked", "1\n").remove("empty");
    const std::optional<std::string> head = repo.head();
    const std::vector<std::tuple<std::string, std::optional<std::string>, QString>> cases{
        {"empty", head, u"Empty File"_s},
        {"empty", std::nullopt, u"The File Is Gone"_s},
        {"binary", head, u"Binary File"_s},
        {"wide", std::nullopt, u"UTF-16 Text"_s},
        {"nothing", head, u"Not in This Commit"_s},
        {"untracked", std::nullopt, u"Untracked File"_s},
        {"dir", head, u"A Folder"_s}};
    for (const auto& [path, revision, title] : cases) {
        show(path, revision, Tab::blame);
        EXPECT_TRUE(says(title)) << title.toStdString();
    }
    show("dir/f", head, Tab::blame);
    EXPECT_EQ(blame().document()->rowCount(), 1) << "and goes on after all of them";
    show("untracked", std::nullopt, Tab::history);
    EXPECT_TRUE(says(u"Not Committed Yet"_s));
}

TEST_F(Inspector, FileHistoryFollowsRenamesAndShowsEachDiffAtItsPathThen)
{
    repo.write("old", numbered(20)).commit("create").git({"mv", "old", "new"}).commit("rename");
    repo.write("new", numbered(20) + "more\n").commit("edit").git({"mv", "new", "newest"});
    show("newest", std::nullopt, Tab::history);
    ASSERT_EQ(history().revisions().size(), 3U) << "a rename that is staged only goes by HEAD's name";
    EXPECT_NE(shownDiff().find("+more"), std::string::npos) << shownDiff();

    QTest::keyClick(&history(), Qt::Key_Down);
    worker.finishAll();
    EXPECT_NE(shownDiff().find("renamed from “old”"), std::string::npos) << shownDiff();
    QTest::keyClick(&history(), Qt::Key_Down);
    worker.finishAll();
    EXPECT_NE(shownDiff().find("+line 20"), std::string::npos) << shownDiff();
    EXPECT_EQ(history().current()->file.path, "old");

    const std::unique_ptr<QMenu> menu(history().makeMenu());
    test::entry(*menu, u"Show Blame at This Commit"_s)->trigger();
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value(), (InspectedFile{"old", history().current()->commit.hash, Tab::blame}));
    EXPECT_EQ(blame().document()->rowCount(), 20);
    QTest::keyClick(&blame(), Qt::Key_Backspace);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value(), (InspectedFile{"newest", std::nullopt, Tab::history}));
    EXPECT_EQ(history().currentIndex().row(), 2) << "where it was";

    repo.commit("rename again");
    refresh();
    EXPECT_EQ(history().revisions().size(), 4U) << "HEAD moved on";
    EXPECT_EQ(history().currentIndex().row(), 3) << "and the row with it";
    QTest::keyClick(&history(), Qt::Key_Return);
    EXPECT_EQ(store.window().selectedCommit.value(), history().current()->commit.hash);
}

TEST_F(Inspector, TheFileAskedForLastWinsAndAClosedViewIsNotTouched)
{
    repo.write("a", "a\n").write("b", "b\n").commit("one");
    show("a", std::nullopt, Tab::blame);
    const std::string head = repo.head();
    store.window().inspect(InspectedFile{"b", std::nullopt, Tab::blame});
    store.window().inspect(InspectedFile{"a", head, Tab::blame});
    ASSERT_EQ(worker.waiting(), 2U);
    worker.finish(1);
    worker.finish(0);
    EXPECT_EQ(blame().document()->text(0), "a");

    for (const Tab tab : {Tab::blame, Tab::history}) {
        store.window().inspect(InspectedFile{"b", std::nullopt, tab});
        EXPECT_GE(worker.waiting(), 1U);
        view = std::make_unique<InspectorView>(store);
        EXPECT_GE(worker.waiting(), 2U);
        view.reset();
        worker.finishAll();
        view = std::make_unique<InspectorView>(store);
    }
}

TEST_F(Inspector, TriesAgainWhatCouldNotBeRead)
{
    repo.write("a", "a\n").commit("one").write("a", "b\n").commit("two");
    const std::string blob = repo.read({"rev-parse", "HEAD:a"});
    const std::filesystem::path object = repo / (".git/objects/" + blob.substr(0, 2) + "/" + blob.substr(2));
    const std::filesystem::path aside = repo / ".git/aside";
    for (const Tab tab : {Tab::blame, Tab::history}) {
        std::filesystem::rename(object, aside);
        show("a", repo.head(), tab);
        EXPECT_TRUE(says(tab == Tab::blame ? u"The Blame Could Not Be Read"_s : u"The Diff Could Not Be Read"_s));
        std::filesystem::rename(aside, object);
        refresh();
        EXPECT_FALSE(says(tab == Tab::blame ? u"The Blame Could Not Be Read"_s : u"The Diff Could Not Be Read"_s));
    }
}

TEST_F(Inspector, ActsOnTheFileWhoseLinesAreShown)
{
    repo.write("a", "a\n").write("b", "b\n").commit("one").write("a", "changed\n").write("b", "changed\n");
    show("a", std::nullopt, Tab::blame);
    store.window().inspect(InspectedFile{"b", std::nullopt, Tab::blame});
    Q_EMIT blame().commitRequested(0);
    EXPECT_EQ(store.window().selectedPaths.value(), std::set<std::string>{"a"});
    worker.finishAll();
}

TEST_F(Inspector, DrawsTheLinesInSightAlone)
{
    // A line of a megabyte among them: it costs what is seen of it.
    repo.write("f", numbered(20'000) + std::string(std::size_t{1} << 20, 'x') + "\n").commit("create");
    show("f", std::nullopt, Tab::blame);
    QImage image(640, 600, QImage::Format_ARGB32_Premultiplied);
    const int inSight = blame().viewport()->height() / rowHeight() + 2;
    for (const int line : {0, 5000, 19'999}) {
        const int before = blame().linesDrawn();
        blame().scrollTo(blame().model()->index(line, 0), QAbstractItemView::PositionAtTop);
        blame().render(&image);
        EXPECT_GT(blame().linesDrawn(), before);
        EXPECT_LE(blame().linesDrawn() - before, inSight);
    }
}

struct InspectedWindow : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
};

TEST_F(InspectedWindow, OpensAtTheRightEdgeAndGivesTheFocusBackWhenItCloses)
{
    repo.write("f", numbered(30)).commit("create").write("f", numbered(31));
    RepositoryView view(store);
    view.resize(860, 520);
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    auto* const files = test::named<QListView>(view, u"Changed Files"_s);
    files->setFocus();
    ASSERT_TRUE(files->hasFocus());

    const std::unique_ptr<QMenu> menu(
        makeChangedFilesMenu(store, store.snapshot().status.value().files, u"Open"_s, nullptr));
    test::entry(*menu, u"Show Blame"_s)->trigger();
    worker.finishAll();
    auto* const blame = test::named<BlameList>(view, u"Blame"_s);
    ASSERT_TRUE(blame && blame->isVisible() && blame->hasFocus());
    EXPECT_EQ(blame->document()->rowCount(), 31);
    const QRect place(blame->mapTo(&view, QPoint()), blame->size());
    EXPECT_EQ(place.right() + 1, view.width());
    EXPECT_GE(place.width(), 300);

    QTest::keyClick(blame, Qt::Key_Tab, Qt::ControlModifier);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value()->tab, Tab::history);
    auto* const history = test::named<FileHistoryList>(view, u"File History"_s);
    EXPECT_TRUE(history->hasFocus());
    QTest::keyClick(history, Qt::Key_Escape);
    EXPECT_EQ(store.window().inspected.value(), std::nullopt);
    EXPECT_FALSE(history->isVisible());
    EXPECT_TRUE(files->hasFocus());

    test::entry(*menu, u"Show File History"_s)->trigger();
    worker.finishAll();
    EXPECT_TRUE(history->isVisible() && history->hasFocus());
    test::named<QAbstractButton>(view, u"Close Inspector"_s)->click();
    EXPECT_TRUE(files->hasFocus());
}

TEST_F(InspectedWindow, TheMenuSaysWhyAFileCannotBeLookedInto)
{
    repo.write("f", "1\n").commit("create").write("new", "1\n").remove("f");
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    const auto& files = store.snapshot().status.value().files;
    const auto menuOf = [&](const Staging::Files& chosen) {
        return std::unique_ptr<QMenu>(makeChangedFilesMenu(store, chosen, u"Open"_s, nullptr));
    };
    for (const auto& chosen : {Staging::Files{files[1]}, files}) {
        const auto menu = menuOf(chosen);
        for (const QString& title : {u"Show Blame"_s, u"Show File History"_s}) {
            EXPECT_FALSE(test::entry(*menu, title)->isEnabled());
            EXPECT_NE(test::entry(*menu, title)->toolTip(), title) << "but a reason";
        }
    }
    test::entry(*menuOf({files[0]}), u"Show Blame"_s)->trigger();
    EXPECT_EQ(store.window().inspected.value(), (InspectedFile{"f", repo.head(), Tab::blame}))
        << "deleted: as HEAD has it";
}

} // namespace
} // namespace plovik

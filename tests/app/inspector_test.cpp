// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
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
#include <QLineEdit>
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

TEST_F(Inspector, FindsInTheBlameAndKeepsTheWidthOfItsGutter)
{
    repo.write("f", numbered(300)).commit("create");
    show("f", std::nullopt, Tab::blame);
    scrollTo(150);
    QTest::keyClick(&blame(), Qt::Key_F, Qt::ControlModifier);
    auto* const field = test::named<QLineEdit>(*view, u"Find in Blame"_s);
    ASSERT_TRUE(field && field->isVisible());
    field->setText(u"LINE 17"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return says(u"2 of 11"_s); }));
    EXPECT_EQ(blame().currentRow(), 169) << "the first one behind what was in sight";
    QTest::keyClick(field, Qt::Key_F3);
    EXPECT_EQ(blame().currentRow(), 170);
    QTest::keyClick(field, Qt::Key_F3, Qt::ShiftModifier);
    QTest::keyClick(field, Qt::Key_F3, Qt::ShiftModifier);
    EXPECT_EQ(blame().currentRow(), 16);
    QTest::keyClick(field, Qt::Key_Escape);
    EXPECT_FALSE(field->isVisible());
    ASSERT_NE(store.window().inspected.value(), std::nullopt) << "the next Escape leaves the blame";

    const auto codeBegins = [&] { return blame().gutterWidth(); };
    const int before = codeBegins();
    const auto drag = [&](int from, int to) {
        QTest::mousePress(blame().viewport(), Qt::LeftButton, {}, {from, 50});
        QTest::mouseMove(blame().viewport(), {to, 50});
        QTest::mouseRelease(blame().viewport(), Qt::LeftButton, {}, {to, 50});
    };
    drag(before, before + 60);
    EXPECT_EQ(codeBegins(), before + 60);
    EXPECT_EQ(Settings::shared().value(settings::blameGutterWidth), before + 60);
    QTest::mouseDClick(blame().viewport(), Qt::LeftButton, {}, {before + 60, 50});
    EXPECT_EQ(codeBegins(), before);
    QTest::keyClick(&blame(), Qt::Key_Escape);
    EXPECT_EQ(store.window().inspected.value(), std::nullopt);
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

TEST_F(Inspector, TheHistoryOfLinesIsReachedFromABlameAndFromADiff)
{
    repo.write("old", "1\n2\n3\n").commit("create").write("old", "1\n2\n3 more\n").commit("elsewhere");
    repo.git({"mv", "old", "f"}).commit("move").write("f", "1\n2 changed\n3 more\n").commit("change");
    show("f", std::nullopt, Tab::blame);
    const auto subjects = [&] {
        worker.finishAll();
        std::vector<std::string> found;
        for (const gitkit::FileRevision& revision : history().revisions())
            found.push_back(revision.commit.subject);
        return found;
    };
    makeCurrent(1);
    test::entry(*blame().makeContextMenu(), u"History of These Lines"_s)->trigger();
    EXPECT_EQ(subjects(), (std::vector<std::string>{"change", "create"}));
    EXPECT_TRUE(says(u"line 2 Working Copy"_s));

    // The commit below has the file under its first name.
    history().setCurrentIndex(history().model()->index(1, 0));
    worker.finishAll();
    DiffSectionView& diff = *view->findChild<DiffView*>()->sections().front();
    QAction* lines = test::entry(*diff.makeContextMenu(), u"History of These Lines"_s);
    ASSERT_TRUE(lines);
    diff.controller().setCurrentRow(3);
    lines = test::entry(*diff.makeContextMenu(), u"History of These Lines"_s);
    lines->trigger();
    EXPECT_EQ(subjects(), std::vector<std::string>{"create"});
    EXPECT_EQ(store.window().inspected.value()->path, "old");

    repo.write("f", "0\n1\n2 changed\n3 more\n");
    show("f", std::nullopt, Tab::blame);
    refresh();
    makeCurrent(1);
    lines = test::entry(*blame().makeContextMenu(), u"History of These Lines"_s);
    EXPECT_FALSE(lines->isEnabled()) << "the numbers are not those of the commit";
    EXPECT_FALSE(lines->toolTip().isEmpty());
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

TEST_F(Inspector, TabsAreAsWideAsTheRepositorySaysElseAsTheSettingsDo)
{
    repo.write("a.c", "\tx\n").write("a.py", "\tx\n").write(".editorconfig", "[*.c]\ntab_width = 3\n").commit("one");
    const auto contentWidth = [this](const std::string& path) {
        show(path, std::nullopt, Tab::blame);
        return blame().sizeHintForIndex(blame().model()->index(0, 0)).width();
    };
    const int own = contentWidth("a.c");
    const int wide = contentWidth("a.py");
    EXPECT_GT(wide, own);
    Settings::shared().set(settings::tabWidth, 3);
    EXPECT_EQ(contentWidth("a.py"), own);
    EXPECT_EQ(contentWidth("a.c"), own);
    Settings::shared().set(settings::tabWidth, 8);
    EXPECT_EQ(contentWidth("a.py"), wide);
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

/// The history of a file that is longer than two pages, which comes piece by piece.
struct LongFileHistory : Inspector {
    static constexpr int commits = 1300;

    LongFileHistory()
    {
        std::string stream;
        for (int number = 1; number <= commits; ++number) {
            const std::string content = std::to_string(number);
            const std::string subject = "commit " + content;
            const std::string data = "data " + std::to_string(content.size()) + "\n" + content + "\n";
            stream += "commit refs/heads/main\ncommitter C <c@example.org> " + std::to_string(1'700'000'000 + number) +
                      " +0000\ndata " + std::to_string(subject.size()) + "\n" + subject + "\nM 100644 inline f\n" +
                      data + (number == 1 ? "M 100644 inline g\n" + data : "");
        }
        repo.read({"fast-import", "--quiet"}, stream);
        repo.git({"reset", "-q", "--hard"});
        show("g", std::nullopt, Tab::history);
    }

    void inspect(const std::string& path) { store.window().inspect(InspectedFile{path, std::nullopt, Tab::history}); }

    /// Reads as much as comes at once.
    void readPiece()
    {
        worker.finish();
        worker.finishAllBut(Worker::Lane::longRead);
    }

    int rows() const { return static_cast<int>(history().revisions().size()); }
    QString subject(int row) const { return history().model()->index(row, 0).data().toString(); }
    int top(int row) const { return history().visualRect(history().model()->index(row, 0)).top(); }
    void press(const QString& title) const
    {
        QAbstractButton* button = nullptr;
        const auto isThere = [&] {
            button = test::named<QAbstractButton>(*view, title);
            return button && button->isVisible();
        };
        ASSERT_TRUE(QTest::qWaitFor(isThere)) << title.toStdString();
        button->click();
    }
};

TEST_F(LongFileHistory, IsShownAsItIsFoundAndStopsWhenAsked)
{
    EXPECT_TRUE(says(u"1 commit"_s));
    inspect("f");
    EXPECT_TRUE(history().isOutdated()) << "the rows of the other file";
    EXPECT_TRUE(says(u"Reading…"_s));
    const int top = history().mapTo(view.get(), QPoint()).y();
    readPiece();
    EXPECT_FALSE(history().isOutdated());
    const int found = rows();
    ASSERT_TRUE(found > 0 && found <= 60) << found;
    EXPECT_EQ(subject(0), u"commit 1300"_s);
    EXPECT_TRUE(says(u"%1 commits so far…"_s.arg(found)));
    QTest::keyClick(&history(), Qt::Key_Down);

    QTest::keyClick(&history(), Qt::Key_Escape);
    EXPECT_TRUE(store.window().inspected.value()) << "Escape ends the reading first";
    EXPECT_TRUE(says(u"%1+ commits"_s.arg(found)));
    QTest::qWait(0);
    EXPECT_EQ(history().mapTo(view.get(), QPoint()).y(), top) << "the button takes no room from the list";
    worker.finishAll();
    history().scrollToBottom();
    EXPECT_EQ(std::pair(rows(), worker.waiting()), std::pair(found, std::size_t{0})) << "it stays ended";

    press(u"Continue"_s);
    worker.finishAll();
    EXPECT_EQ(rows(), 500);
    EXPECT_TRUE(says(u"500+ commits"_s));
    EXPECT_EQ(history().currentIndex().row(), 1);
    for (const int all : {1000, 1300}) {
        history().scrollToBottom();
        worker.finishAll();
        EXPECT_EQ(rows(), all);
    }
    EXPECT_TRUE(says(u"1,300 commits"_s));
    for (int row = 0; row < commits; ++row)
        ASSERT_EQ(subject(row), u"commit %1"_s.arg(commits - row));

    inspect("g");
    press(u"Stop"_s);
    EXPECT_TRUE(says(u"Reading Was Stopped"_s)) << "not a list of another file, and not one without commits";
    worker.finishAll();
    press(u"Continue"_s);
    worker.finishAll();
    EXPECT_TRUE(says(u"1 commit"_s));
    QTest::keyClick(&history(), Qt::Key_Escape);
    EXPECT_FALSE(store.window().inspected.value());
}

TEST_F(LongFileHistory, KeepsPlaceAndSelectionWhenHeadMovesOn)
{
    inspect("f");
    worker.finishAll();
    history().scrollToBottom();
    worker.finishAll();
    ASSERT_EQ(rows(), 1000);
    history().setCurrentIndex(history().model()->index(800, 0));
    worker.finishAll();
    const int place = top(800);
    repo.write("f", "newest").commit("newest");
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAllBut(Worker::Lane::longRead);
    EXPECT_EQ(std::tuple(rows(), top(800)), std::tuple(1000, place)) << "until as much was read";
    EXPECT_FALSE(history().isOutdated());
    worker.finishAll();
    EXPECT_EQ(subject(0), u"newest"_s);
    EXPECT_GE(rows(), 1000);
    EXPECT_EQ(history().currentIndex().row(), 801);
    EXPECT_EQ(top(801), place);
}

TEST_F(LongFileHistory, IsReadNoFurtherWhileItIsHidden)
{
    inspect("f");
    readPiece();
    const int found = rows();
    view->hide();
    worker.finishAll();
    EXPECT_EQ(rows(), found);
    view->show();
    worker.finishAll();
    EXPECT_EQ(rows(), 500);
}

struct InspectedWindow : testing::Test {
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
};

TEST_F(InspectedWindow, TakesThePlaceOfTheDiffsOrTheRightEdgeAndGivesTheFocusBackWhenItCloses)
{
    repo.write("f", numbered(30)).commit("create").write("f", numbered(31)).write("g", "");
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
        makeChangedFilesMenu(store, {store.snapshot().status.value().files[0]}, u"Open"_s, nullptr));
    test::entry(*menu, u"Show Blame"_s)->trigger();
    worker.finishAll();
    auto* const blame = test::named<BlameList>(view, u"Blame"_s);
    ASSERT_TRUE(blame && blame->isVisible() && blame->hasFocus());
    EXPECT_EQ(blame->document()->rowCount(), 31);
    const QRect place(blame->mapTo(&view, QPoint()), blame->size());
    EXPECT_EQ(place.right() + 1, view.width());
    EXPECT_TRUE(files->isVisible());
    EXPECT_EQ(place.left(), files->mapTo(&view, QPoint(files->width(), 0)).x() + 1) << "all of the diffs' width";
    EXPECT_FALSE(test::named<QAbstractScrollArea>(view, u"Unstaged Diff"_s));
    // It goes along to another view.
    store.window().select(SidebarItem::history());
    worker.finishAll();
    EXPECT_TRUE(blame->isVisible());
    store.window().selectCommit(repo.read({"rev-parse", "HEAD"}));
    store.window().selectCommit(std::nullopt);
    EXPECT_FALSE(blame->isVisible()) << "another commit is to be seen in its place";
    store.window().select(SidebarItem::workingCopy());
    test::entry(*menu, u"Show Blame"_s)->trigger();
    worker.finishAll();
    ASSERT_TRUE(blame->isVisible());
    Q_EMIT blame->commitRequested(0);
    worker.finishAll();
    EXPECT_EQ(store.window().selectedCommit.value(), repo.head());
    EXPECT_FALSE(blame->isVisible()) << "the commit is to be seen that was gone to";
    store.window().select(SidebarItem::workingCopy());
    test::entry(*menu, u"Show Blame"_s)->trigger();
    worker.finishAll();
    store.window().selectPaths({"f"});
    files->selectionModel()->select(files->model()->index(1, 0), QItemSelectionModel::ClearAndSelect);
    EXPECT_FALSE(blame->isVisible()) << "nor does it hide the diff of another file";
    files->selectionModel()->select(files->model()->index(0, 0), QItemSelectionModel::ClearAndSelect);
    test::entry(*menu, u"Show Blame"_s)->trigger();
    worker.finishAll();
    ASSERT_TRUE(blame->isVisible());
    blame->setFocus();

    QTest::keyClick(blame, Qt::Key_Tab, Qt::ControlModifier);
    worker.finishAll();
    EXPECT_EQ(store.window().inspected.value()->tab, Tab::history);
    auto* const history = test::named<FileHistoryList>(view, u"File History"_s);
    EXPECT_TRUE(history->hasFocus());
    EXPECT_EQ(history->mapTo(&view, QPoint(history->width(), 0)).x(), view.width());
    EXPECT_TRUE(view.findChild<DiffView*>()->isVisible()) << "the diffs are back";
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

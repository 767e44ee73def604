// SPDX-License-Identifier: GPL-3.0-or-later
// What the window shows of undo: the timeline, the line that says what was done, and the bar after an interruption.

#include "GitKit/undo/Overlay.h"
#include "app/store/RepositoryStore.h"
#include "app/store/actions/Refs.h"
#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/timeline/StepMenu.h"
#include "app/ui/timeline/StepText.h"
#include "app/ui/timeline/TimelineView.h"
#include "app/ui/window/InterruptedBar.h"
#include "app/ui/window/QuietLine.h"
#include "app/ui/window/RepositoryView.h"
#include "tests/app/GivenRunning.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QLabel>
#include <QListView>
#include <QPushButton>
#include <QtTest/QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using gitkit::RefUpdate;
using test::entries;
using test::entry;
using test::named;
using test::waitUntil;
using Titles = std::vector<std::string>;
using Kind = TimelineRow::Kind;

struct TimelineTest : testing::Test {
    TimelineTest()
    {
        repo.write("a", "1\n2\n").write("old.txt", "old\n").commit("one");
        one = repo.head();
        repo.write("a", "1\n3\n").remove("old.txt").write("new.txt", "new\n").commit("two");
        two = repo.head();
        view.resize(1000, 700);
        view.show();
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
        store.window().select(SidebarItem::timeline());
        EXPECT_TRUE(worker.settle());
    }
    ~TimelineTest() override { worker.settle(); }

    std::string tree(const std::string& commit) const { return repo.read({"rev-parse", commit + "^{tree}"}); }

    TimelineRow row(Kind kind, const std::string& id, const QString& title) const
    {
        TimelineRow row;
        row.kind = kind;
        row.title = title;
        row.date = gitkit::Date(std::chrono::seconds(1700000000));
        row.step.id = id;
        row.step.before.head = {"refs/heads/main", one};
        row.step.after.emplace().head = {"refs/heads/main", two};
        return row;
    }

    TimelineRow merge() const
    {
        TimelineRow merged = row(Kind::step, "merge", u"Merge of “topic”"_s);
        merged.step.refs = {{"refs/heads/aside", std::nullopt, two}, {"refs/heads/main", one, two}};
        merged.step.before.filesTree = merged.step.before.indexTree = tree(one);
        merged.step.after->filesTree = merged.step.after->indexTree = tree(two);
        merged.step.aside = {".env"};
        merged.files = 1;
        return merged;
    }

    void show(std::vector<TimelineRow> rows)
    {
        given(store.undo().timeline, std::make_shared<const std::vector<TimelineRow>>(std::move(rows)));
        EXPECT_TRUE(worker.settle());
    }

    TimelineView& timeline() const { return *view.findChild<TimelineView*>(); }
    QListView& list() const { return *timeline().list(); }
    void select(int row)
    {
        list().setCurrentIndex(list().model()->index(row, 0));
        EXPECT_TRUE(worker.settle());
    }
    std::string undoing() const { return named<QLabel>(timeline(), u"What Undoing Changes"_s)->text().toStdString(); }
    Titles files() const
    {
        const QAbstractItemModel& model = *timeline().findChild<CommitFilesList*>()->model();
        Titles titles;
        for (int row = 0; row < model.rowCount(); ++row)
            titles.push_back(model.index(row, 0).data(Qt::ToolTipRole).toString().toStdString());
        return titles;
    }
    std::string diff() const
    {
        QWidget* const shown = named(timeline(), u"Diff"_s);
        return shown ? QAccessible::queryAccessibleInterface(shown)->text(QAccessible::Value).toStdString() : "";
    }

    TestRepository repo;
    std::string one, two;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    RepositoryView view{store};
};

TEST_F(TimelineTest, TellsWhatUndoingAStepWouldChange)
{
    EXPECT_EQ(list().currentIndex().data(Qt::AccessibleTextRole).toString(), u"in a terminal: commit: two"_s);
    store.window().select(SidebarItem::workingCopy());
    repo.write("b", "").commit("three");
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    store.window().select(SidebarItem::timeline());
    ASSERT_TRUE(worker.settle());
    EXPECT_EQ(list().model()->index(0, 0).data().toString(), u"in a terminal: commit: three"_s);
    show({});
    EXPECT_TRUE(named<QLabel>(timeline(), u"No Steps"_s)->isVisible());

    show({merge()});
    store.window().goTo(SidebarItem::timeline());
    EXPECT_TRUE(list().hasFocus());
    EXPECT_EQ(list().currentIndex().data(Qt::AccessibleTextRole).toString(), u"Merge of “topic”"_s);
    const std::string from = one.substr(0, 7);
    const std::string to = two.substr(0, 7);
    EXPECT_EQ(stepText::move(merge()).toStdString(), "main " + from + " → " + to + " and 1 more");
    EXPECT_EQ(undoing(), "aside: is deleted\nmain " + to + " → " + from + "\n.env: comes back");
    EXPECT_EQ(files(), (Titles{"a\nModified, 1 added, 1 removed", "new.txt\nDeleted, 0 added, 1 removed",
                               "old.txt\nAdded, 1 added, 0 removed"}));
    EXPECT_NE(diff().find("+2"), std::string::npos) << diff();

    TimelineRow left = row(Kind::step, "checkout", u"Checkout of “topic”"_s);
    left.step.after->head = {"refs/heads/topic", one};
    EXPECT_EQ(stepText::move(left), u"main → topic"_s);
    show({left});
    EXPECT_EQ(undoing(), "main: is checked out again");
    EXPECT_TRUE(named<QLabel>(timeline(), u"No files would change."_s)->isVisible());

    TimelineRow deleted = row(Kind::undone, "delete", u"Deletion of “old”"_s);
    deleted.step.after->head = deleted.step.before.head;
    for (int number = 0; number < 9; ++number)
        deleted.step.refs.push_back({"refs/tags/v" + std::to_string(number), one, std::nullopt});
    show({deleted});
    EXPECT_EQ(undoing().substr(0, 29), "v0: comes back at " + from + "\nv1:");
    EXPECT_TRUE(undoing().ends_with("\nand 3 more branches or tags")) << undoing();
    EXPECT_EQ(stepText::hash(deleted), one);
}

TEST_F(TimelineTest, TellsOfStashesOperationsAndSettings)
{
    TimelineRow popped = row(Kind::step, "pop", u"Pop of a stash"_s);
    popped.step.after->head = popped.step.before.head;
    popped.step.after->stashes.emplace().push_back({two, "On main: older"});
    popped.step.before.stashes = popped.step.after->stashes;
    popped.step.before.stashes->insert(popped.step.before.stashes->begin(), {one, "On main: mine"});
    popped.step.before.operation = tree(one);
    popped.step.before.settings.emplace().push_back({"branch.main.remote", "origin"});
    popped.step.message = "typed";
    show({popped});
    EXPECT_EQ(undoing(), "Stash “On main: mine”: comes back\nThe unfinished operation: stands where it stood\n"
                         "The settings of branches and remotes: as before\n"
                         "The message: comes back to where it was typed");
}

TEST_F(TimelineTest, ShowsTheBytesThatAreKeptWhateverTreeAFileFollows)
{
    TimelineRow reset = merge();
    reset.step.before.indexTree.clear();
    reset.step.after->indexTree.clear();
    repo.write("a", "1\nmine\n");
    reset.step.before.overlay = gitkit::writeOverlay(repo.repository(), {"a", "gone"});
    repo.write("a", "1\n3\n").write("gone", "x\n");
    reset.step.after->overlay = gitkit::writeOverlay(repo.repository(), {"a", "gone"});
    reset.step.before.absent = {"gone"};
    reset.step.after->absent = {"notes.txt"};
    show({reset});
    EXPECT_TRUE(undoing().ends_with("\nnotes.txt: comes back")) << "what git never knew: " << undoing();
    EXPECT_EQ(files(), (Titles{"a\nModified, 1 added, 1 removed", "gone\nDeleted, 0 added, 1 removed",
                               "new.txt\nDeleted, 0 added, 1 removed", "old.txt\nAdded, 1 added, 0 removed"}));
    EXPECT_NE(diff().find("mine"), std::string::npos) << "the user's bytes, not those of the commit: " << diff();

    TimelineRow staged = row(Kind::step, "stage", u"Staging of “a”"_s);
    staged.step.after->head = staged.step.before.head;
    staged.step.before.filesTree = staged.step.after->filesTree = tree(one);
    staged.step.before.indexTree = tree(one);
    staged.step.after->indexTree = tree(two);
    show({staged});
    EXPECT_EQ(files().size(), 3U) << "where the files follow the same tree, what is staged counts";
}

TEST_F(TimelineTest, KeepsTheSelectedStepAndOffersWhatCanBeDoneWithIt)
{
    TimelineRow elsewhere = row(Kind::terminal, "", u"in a terminal: commit: fix"_s);
    elsewhere.step.before.head.branch = elsewhere.step.after->head.branch = "";
    show({merge(), elsewhere});
    select(1);
    EXPECT_EQ(undoing(), two.substr(0, 7) + " → " + one.substr(0, 7));
    EXPECT_EQ(files().size(), 3U) << "by the commits";
    show({row(Kind::undo, "undo", u"Undo"_s), merge(), elsewhere});
    EXPECT_EQ(list().currentIndex().row(), 2);
    given(store.undo().meant, Undo::Meant{1, "merge"});
    EXPECT_EQ(list().currentIndex().row(), 1);
    select(2);
    show({row(Kind::undo, "undo", u"Undo"_s), merge(), elsewhere});
    EXPECT_EQ(list().currentIndex().row(), 2) << "it was shown already";

    const std::unique_ptr<QMenu> menu(timeline().makeContextMenu());
    EXPECT_EQ(entries(*menu), (Titles{"(Undo to Here…)", "(Restore Files from This Step…)",
                                      "New Branch at the State Before…", "—", "Copy Hash", "—", "(Forget This Step)"}));
    EXPECT_EQ(entry(*menu, u"Undo to Here…"_s)->toolTip(), u"Another program did it."_s);
    entry(*menu, u"Copy Hash"_s)->trigger();
    EXPECT_EQ(QGuiApplication::clipboard()->text().toStdString(), two);
    entry(*menu, u"New Branch at the State Before…"_s)->trigger();
    EXPECT_EQ(store.window().sheet.value(), SheetKind(NewBranchSheet{one}));
    store.window().closeSheet();

    const auto offered = [this](const TimelineRow& row) { return entries(*makeStepMenu(store, row, &view)); };
    EXPECT_EQ(offered(merge()), (Titles{"Undo to Here…", "Restore Files from This Step…",
                                        "New Branch at the State Before…", "—", "Copy Hash", "—", "Forget This Step"}));
    EXPECT_EQ(offered(row(Kind::undone, "id", {})).front(), "(Undo to Here…)");
    test::givenRunning(store, Verb::checkOut);
    EXPECT_EQ(offered(merge()),
              (Titles{"(Undo to Here…)", "(Restore Files from This Step…)", "New Branch at the State Before…", "—",
                      "Copy Hash", "—", "(Forget This Step)"}));
    test::givenRunning(store, std::nullopt);
    TimelineRow pushed = merge();
    pushed.step.kind = "push";
    EXPECT_THAT(offered(pushed), testing::ElementsAre("(Undo to Here…)", "Revert", testing::_, testing::_, testing::_,
                                                      testing::_, testing::_, testing::_));
    TimelineRow interrupted = merge();
    interrupted.step.after.reset();
    EXPECT_EQ(offered(interrupted).front(), "(Undo to Here…)");
    show({interrupted});
    EXPECT_EQ(files(), Titles{});
}

class QuietLineTest : public TimelineTest {
protected:
    using Offer = Undo::Said::Offer;

    void say(const QString& sentence, Offer offer)
    {
        given(store.undo().said, std::optional(Undo::Said{++number, sentence, offer}));
    }

    QuietLine& line() const { return *view.findChild<QuietLine*>(); }
    QTimer& clock() const { return *line().findChild<QTimer*>(QString(), Qt::FindDirectChildrenOnly); }
    QPushButton* button(const QString& title) const { return named<QPushButton>(line(), title); }

    quint64 number = 0;
};

TEST_F(QuietLineTest, LiesOverTheWindowAndGoesByItself)
{
    QWidget* const content = named(view, u"Timeline"_s);
    show({merge()});
    list().setFocus();
    const QRect before = content->geometry();
    say(u"Deleted branch “old”."_s, Offer::undo);
    EXPECT_TRUE(line().isVisible());
    EXPECT_EQ(content->geometry(), before);
    EXPECT_TRUE(list().hasFocus());
    EXPECT_TRUE(button(u"Undo"_s)->isVisible());
    QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(&line());
    EXPECT_EQ(heard->role(), QAccessible::Notification);
    EXPECT_EQ(heard->text(QAccessible::Name), u"Deleted branch “old”."_s);
    EXPECT_GT(clock().remainingTime(), 7000);

    say(u"Undone: deletion of “old”."_s, Offer::redo);
    EXPECT_TRUE(button(u"Redo"_s)->isVisible());
    say(u"Pushed main to origin."_s, Offer::none);
    EXPECT_FALSE(line().findChild<QPushButton*>()->isVisible());
    clock().start(0);
    EXPECT_TRUE(waitUntil([this] { return line().isHidden(); }));
    EXPECT_FALSE(store.undo().said.value());
}

TEST_F(QuietLineTest, CoversNoButtonOfTheCommitBox)
{
    store.window().select(SidebarItem::workingCopy());
    const auto* const commit = named(view, u"Commit"_s);
    for (const QSize size : {QSize(1240, 780), QSize(640, 480)}) {
        view.resize(size);
        say(u"Committed “%1”."_s.arg(QString(60, u'x').replace(5, 1, u' ')), Offer::undo);
        ASSERT_TRUE(worker.settle());
        QApplication::processEvents();
        const QRect place(commit->mapTo(&view, QPoint()), commit->size());
        EXPECT_FALSE(line().geometry().intersects(place)) << size.width();
        EXPECT_TRUE(view.rect().contains(line().geometry())) << size.width();
    }
}

TEST_F(QuietLineTest, WaitsWhileItIsLookedAtAndGivesTheFocusBack)
{
    show({merge()});
    list().setFocus();
    say(u"Deleted branch “old”."_s, Offer::undo);
    for (int step = 0; step < 8 && !button(u"Undo"_s)->hasFocus(); ++step)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_F6);
    EXPECT_TRUE(button(u"Undo"_s)->hasFocus());
    EXPECT_FALSE(clock().isActive());
    list().setFocus();
    EXPECT_TRUE(clock().isActive());
    button(u"Undo"_s)->setFocus();
    QTest::keyClick(button(u"Undo"_s), Qt::Key_Escape);
    EXPECT_TRUE(line().isHidden());
    EXPECT_FALSE(store.undo().said.value());
    EXPECT_TRUE(list().hasFocus());

    say(u"Deleted branch “old”."_s, Offer::undo);
    EXPECT_TRUE(clock().isActive()) << "the same sentence again";
    QEnterEvent enters({1, 1}, {1, 1}, {1, 1});
    QApplication::sendEvent(&line(), &enters);
    EXPECT_FALSE(clock().isActive());
    QEvent leaves(QEvent::Leave);
    QApplication::sendEvent(&line(), &leaves);
    EXPECT_TRUE(clock().isActive());
    named<QAbstractButton>(line(), u"Dismiss"_s)->click();
    EXPECT_TRUE(line().isHidden());
}

TEST_F(QuietLineTest, TakesBackWhatWasDoneAndDoesItAgain)
{
    repo.git({"branch", "old"}).write("a", "mine\n");
    store.snapshot().refresh(RefreshScope::full);
    ASSERT_TRUE(worker.settle());
    actions::confirmDelete(store.actors(), store.snapshot().branches.value().back());
    ASSERT_TRUE(worker.settle());
    store.window().confirm(store.window().confirmation.value()->id);
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(store.snapshot().hasRef("refs/heads/old"));
    ASSERT_TRUE(line().isVisible());
    const QString title = list().model()->index(0, 0).data().toString();
    EXPECT_EQ(title, store.undo().undoTitle.value());
    select(0);
    EXPECT_EQ(undoing(), "old: comes back at " + two.substr(0, 7));

    button(u"Undo"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_TRUE(store.snapshot().hasRef("refs/heads/old"));
    EXPECT_EQ(list().currentIndex().data().toString(), title) << "the selected step stays selected";
    EXPECT_EQ(entries(*timeline().makeContextMenu()).front(), "(Undo to Here…)");
    button(u"Redo"_s)->click();
    ASSERT_TRUE(worker.settle());
    EXPECT_FALSE(store.snapshot().hasRef("refs/heads/old"));

    store.staging().confirmDiscard(store.snapshot().status.value().files);
    ASSERT_TRUE(worker.settle());
    store.window().confirm(store.window().confirmation.value()->id);
    ASSERT_TRUE(worker.settle());
    select(0);
    EXPECT_EQ(files(), (Titles{"a\nModified, 1 added, 2 removed"}));
    EXPECT_NE(diff().find("+mine"), std::string::npos) << diff();
    EXPECT_EQ(entries(*timeline().makeContextMenu())[1], "Restore Files from This Step…");
}

TEST_F(QuietLineTest, AnInterruptedStepIsToldUntilItIsDecided)
{
    auto* const bar = view.findChild<InterruptedBar*>();
    EXPECT_TRUE(bar->isHidden());
    given(store.undo().interrupted, u"Rebase of topic"_s);
    EXPECT_TRUE(bar->isVisible());
    EXPECT_TRUE(named<QLabel>(*bar, u"Plovik was closed during “Rebase of topic”."_s));
    EXPECT_TRUE(named<QPushButton>(*bar, u"Restore the State Before"_s));
    EXPECT_TRUE(named<QPushButton>(*bar, u"Leave It"_s)->isEnabled());
    say(u"Deleted branch “old”."_s, Offer::undo);
    test::givenRunning(store, Verb::fetch);
    EXPECT_TRUE(button(u"Undo"_s)->isEnabled());
    test::givenRunning(store, Verb::merge);
    EXPECT_FALSE(button(u"Undo"_s)->isEnabled()) << "it would be dropped";
    EXPECT_FALSE(named<QPushButton>(*bar, u"Leave It"_s)->isEnabled());
    test::givenRunning(store, std::nullopt);
    given(store.undo().interrupted, QString());
    EXPECT_TRUE(bar->isHidden());
}

} // namespace
} // namespace plovik

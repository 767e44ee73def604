// SPDX-License-Identifier: GPL-3.0-or-later
// What is dragged in a window: what can be picked up, what is said beside the pointer, and what letting go does.

#include "app/store/RepositoryStore.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/drag/DropArea.h"
#include "app/ui/drag/DropHint.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/sidebar/SidebarView.h"
#include "tests/app/SettlingWorker.h"
#include "tests/support/Given.h"
#include "tests/support/TestRepository.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QMimeData>
#include <QTimer>
#include <QTreeView>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <memory>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using test::waitUntil;

/// main and topic have a commit each above a common one, and topic's clashes with main's.
struct DragWindow : testing::Test {
    DragWindow()
    {
        repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"}).write("a", "topic\n");
        repo.commit("on topic").git({"checkout", "-q", "main"}).write("a", "main\n").commit("on main");
        store.window().select(SidebarItem::history());
        store.snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
        auto* const row = new QHBoxLayout(&window);
        row->addWidget(sidebar = new SidebarView(store, &window));
        row->addWidget(list = new HistoryList(store, &window), 1);
        window.resize(1000, 500);
        window.show();
        QApplication::processEvents();
        sidebar->tree()->expandAll();
        EXPECT_TRUE(waitUntil([this] { return list->model()->rowCount() == 3; }));
    }
    QPoint rowOf(const std::string& ref) const
    {
        const QModelIndex index = sidebar->model().indexOf(SidebarItem::ref(ref));
        return sidebar->tree()->visualRect(index).center();
    }
    QWidget& surface() const { return *sidebar->tree()->viewport(); }
    /// Holds it over the sidebar, and returns whether it would be taken.
    bool hold(const QMimeData& data, QPoint place, Qt::KeyboardModifiers keys = {})
    {
        QDragEnterEvent enter(place, Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(&surface(), &enter);
        QDragMoveEvent move(place, Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(&surface(), &move);
        return move.isAccepted();
    }
    bool let(const QMimeData& data, QPoint place)
    {
        QDropEvent drop(place, Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(&surface(), &drop);
        const bool isTaken = drop.isAccepted();
        QApplication::processEvents();
        EXPECT_TRUE(worker.settle());
        return isTaken;
    }
    DropHint::Words said() const
    {
        for (const DropHint* const hint : window.findChildren<DropHint*>()) {
            if (hint->isVisible())
                return hint->words();
        }
        return {};
    }
    std::unique_ptr<QMimeData> branch(const char* name) const { return dragData(store, {Dragged::Kind::ref, {name}}); }

    TestRepository repo;
    test::SettlingWorker worker;
    RepositoryStore store{repo.path(), worker};
    QWidget window;
    SidebarView* sidebar = nullptr;
    HistoryList* list = nullptr;
};

TEST_F(DragWindow, IsToldBeforeAnythingHappensWithWhatWouldComeOfIt)
{
    const auto topic = branch("refs/heads/topic");
    const QPoint main = rowOf("refs/heads/main");
    EXPECT_TRUE(hold(*topic, main));
    EXPECT_EQ(said().action.toStdString(), "Merge “topic” into “main”");
    EXPECT_EQ(said().other.toStdString(), "With Ctrl: Squash “topic” into changes on “main”");
    EXPECT_TRUE(waitUntil([this] { return !said().preview.isEmpty(); }));
    EXPECT_NE(said().preview.indexOf(u"1 commit"_s), -1) << said().preview.toStdString();
    EXPECT_TRUE(hold(*topic, main, Qt::ControlModifier));
    EXPECT_EQ(said().action.toStdString(), "Squash “topic” into changes on “main”");
    EXPECT_TRUE(said().preview.isEmpty()) << "what was read is of another drop";

    // Where nothing would happen, nothing is said.
    EXPECT_FALSE(hold(*topic, rowOf("refs/heads/topic")));
    EXPECT_EQ(said(), DropHint::Words());
    EXPECT_FALSE(let(*topic, rowOf("refs/heads/topic")));

    EXPECT_TRUE(hold(*topic, main));
    QDragLeaveEvent leave;
    QApplication::sendEvent(&surface(), &leave);
    EXPECT_EQ(said(), DropHint::Words());
    EXPECT_FALSE(let(*topic, main)) << "it was let go elsewhere";
    EXPECT_EQ(repo.read({"log", "-1", "--format=%s"}), "on main");
    EXPECT_FALSE(store.snapshot().inProgress.value());

    EXPECT_TRUE(hold(*topic, main, Qt::ControlModifier));
    EXPECT_TRUE(let(*topic, main)) << "what the hint has said is done, whatever key is held by now";
    EXPECT_EQ(repo.read({"ls-files", "-u"}).empty(), false);
    EXPECT_FALSE(std::filesystem::exists(repo / ".git/MERGE_HEAD"));
}

TEST_F(DragWindow, DoesNothingWhereTheRepositoryHasChangedUnderTheHint)
{
    const auto topic = branch("refs/heads/topic");
    const QPoint main = rowOf("refs/heads/main");
    EXPECT_TRUE(hold(*topic, main));
    std::vector<gitkit::GitRef> branches = store.snapshot().branches.value();
    branches[1].hash = branches[0].hash;
    given(store.snapshot().branches, branches);
    EXPECT_FALSE(let(*topic, main));
    EXPECT_FALSE(store.snapshot().inProgress.value());
}

TEST_F(DragWindow, SaysNothingOfAMergeThatIsDoneAlready)
{
    repo.git({"branch", "old", "main~1"});
    store.snapshot().refresh(RefreshScope::full);
    EXPECT_TRUE(worker.settle());
    const auto old = branch("refs/heads/old");
    EXPECT_TRUE(hold(*old, rowOf("refs/heads/main")));
    EXPECT_TRUE(waitUntil([this] { return said() == DropHint::Words(); }));
    EXPECT_FALSE(hold(*old, rowOf("refs/heads/main")));
    EXPECT_FALSE(let(*old, rowOf("refs/heads/main")));
}

TEST_F(DragWindow, TakesNothingFromOtherWindowsAndPrograms)
{
    const RepositoryStore other(repo.path(), worker);
    const auto topic = dragData(other, {Dragged::Kind::ref, {"refs/heads/topic"}});
    EXPECT_FALSE(hold(*topic, rowOf("refs/heads/main")));
    EXPECT_FALSE(let(*topic, rowOf("refs/heads/main")));
    QMimeData foreign;
    foreign.setText(u"refs/heads/topic"_s);
    EXPECT_FALSE(hold(foreign, rowOf("refs/heads/main")));
    foreign.setData(u"application/x-plovik-ref"_s, QByteArray("x\0-\0-\0refs/heads/topic", 22));
    EXPECT_FALSE(hold(foreign, rowOf("refs/heads/main")));

    const Dragged commits{
        .kind = Dragged::Kind::commits, .names = {std::string(40, '1'), "odd \xff\nname"}, .hasMerge = true};
    EXPECT_EQ(draggedIn(store, *dragData(store, commits)), commits);
    const Dragged file{.kind = Dragged::Kind::commitFile, .names = {"a/\xff"}, .revision = std::string(40, '2')};
    EXPECT_EQ(draggedIn(store, *dragData(store, file)), file);
}

TEST_F(DragWindow, WaitsWhileSomethingElseIsInTheWay)
{
    gitkit::OperationInProgress rebase;
    rebase.kind = gitkit::OperationInProgress::Kind::rebase;
    given(store.snapshot().inProgress, std::optional(rebase));
    EXPECT_FALSE(hold(*branch("refs/heads/main"), rowOf("refs/heads/topic")));
    EXPECT_EQ(said(), DropHint::Words());

    // A label stands on a commit. While nothing can be merged, the branch is not moved there instead.
    auto* const label = new QWidget(&window);
    label->resize(50, 20);
    const std::string base = repo.read({"rev-parse", "main~1"});
    new DropArea(store, *label, [&](QPoint) {
        return std::vector<DropArea::Place>{{{DropTarget::Kind::ref, "refs/heads/main"}, label->rect()},
                                            {{DropTarget::Kind::commit, base}, label->rect()}};
    });
    const auto topic = branch("refs/heads/topic");
    const auto isTaken = [&] {
        QDragEnterEvent enter(QPoint(5, 5), Qt::MoveAction, topic.get(), Qt::LeftButton, {});
        QApplication::sendEvent(label, &enter);
        QDragMoveEvent move(QPoint(5, 5), Qt::MoveAction, topic.get(), Qt::LeftButton, {});
        QApplication::sendEvent(label, &move);
        return move.isAccepted();
    };
    gitkit::OperationInProgress merge;
    merge.kind = gitkit::OperationInProgress::Kind::merge;
    given(store.snapshot().inProgress, std::optional(merge));
    EXPECT_FALSE(isTaken());
    EXPECT_EQ(said(), DropHint::Words());
    given(store.snapshot().inProgress, std::optional<gitkit::OperationInProgress>());
    EXPECT_TRUE(isTaken());
    EXPECT_EQ(said().action.toStdString(), "Merge “topic” into “main”");
}

/// Presses the mouse at a place, moves it away, and returns what is dragged by that.
std::optional<Dragged> dragFrom(const RepositoryStore& store, QWidget& surface, QPoint place)
{
    std::optional<Dragged> found;
    QTimer::singleShot(0, &surface, [&] {
        for (QWidget* const widget : {&surface, surface.parentWidget()}) {
            if (const auto* const running = widget->findChild<QDrag*>({}, Qt::FindDirectChildrenOnly))
                found = draggedIn(store, *running->mimeData());
        }
        QDrag::cancel();
    });
    QTest::mousePress(&surface, Qt::LeftButton, {}, place);
    for (int step = 1; step <= 3; ++step) {
        QMouseEvent move(QEvent::MouseMove, place + QPoint(8 * step, 0),
                         surface.mapToGlobal(place + QPoint(8 * step, 0)), Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(&surface, &move);
    }
    QTest::mouseRelease(&surface, Qt::LeftButton, {}, place);
    QApplication::processEvents();
    return found;
}

TEST_F(DragWindow, LabelsCommitsAndBranchesAreDragged)
{
    EXPECT_EQ(dragFrom(store, surface(), rowOf("refs/heads/topic")),
              (Dragged{Dragged::Kind::ref, {"refs/heads/topic"}}));
    EXPECT_EQ(store.window().selection.value(), SidebarItem::history()) << "a drag selects nothing";
    const std::string topic = repo.read({"rev-parse", "topic"});
    const auto rowAt = [this](const std::string& hash) {
        const auto row = store.history().history.value().rowOf(hash);
        return list->visualRect(list->model()->index(row ? static_cast<int>(*row) : -1, 0));
    };
    const QRect main = rowAt(repo.head());
    std::optional<Dragged> label;
    for (int x = main.left(); !label && x < main.width() / 2; x += 20) {
        label = dragFrom(store, *list->viewport(), {x, main.center().y()});
        if (label && label->kind != Dragged::Kind::ref)
            label.reset();
    }
    ASSERT_TRUE(label);
    EXPECT_EQ(label->names, std::vector<std::string>{"refs/heads/main"});
    const QPoint subject(rowAt(topic).width() / 2, rowAt(topic).center().y());
    const std::optional<Dragged> commit = dragFrom(store, *list->viewport(), subject);
    ASSERT_TRUE(commit);
    EXPECT_EQ(commit->kind, Dragged::Kind::commits);
    EXPECT_EQ(commit->names, std::vector{topic});
}

TEST_F(DragWindow, BranchesAreSelectedWhenTheMouseIsLetGo)
{
    const QPoint topic = rowOf("refs/heads/topic");
    QTest::mousePress(&surface(), Qt::LeftButton, {}, topic);
    EXPECT_EQ(store.window().selection.value(), SidebarItem::history()) << "a drag may begin";
    QTest::mouseRelease(&surface(), Qt::LeftButton, {}, topic);
    EXPECT_EQ(store.window().selection.value(), SidebarItem::ref("refs/heads/topic"));
}

} // namespace
} // namespace plovik

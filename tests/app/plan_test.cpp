// SPDX-License-Identifier: GPL-3.0-or-later
// The plan in the history: keys, drags and the menu make it, rows and the bar show it, and the bar carries it out.

#include "app/store/RepositoryStore.h"
#include "app/ui/dialogs/StoreDialogs.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/drag/DropHint.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/history/HistoryView.h"
#include "app/ui/history/PlanBar.h"
#include "app/ui/history/PlanSigns.h"
#include "tests/app/SettlingWorker.h"
#include "tests/app/ShownWidgets.h"
#include "tests/support/TestRepository.h"

#include "GitKit/runner/GitVersion.h"

#include <QApplication>
#include <QDialog>
#include <QDragEnterEvent>
#include <QLabel>
#include <QListView>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// main has five commits, of which origin has the oldest two.
struct PlanWindow : testing::Test {
    void SetUp() override
    {
        if (!gitkit::can(gitkit::Ability::mergesInMemory))
            GTEST_SKIP() << "this git cannot merge in memory";
        for (const char* name : {"one", "two", "three", "four", "five"}) {
            repo.write(name, name).commit(std::string("Add file ") + name);
            hashes.push_back(repo.head());
        }
        repo.git({"update-ref", "refs/remotes/origin/main", hashes[1]});
        store = std::make_unique<RepositoryStore>(repo.path(), worker);
        store->window().select(SidebarItem::history());
        store->snapshot().refresh(RefreshScope::full);
        EXPECT_TRUE(worker.settle());
        view = std::make_unique<HistoryView>(*store);
        view->resize(1000, 600);
        view->show();
        EXPECT_TRUE(worker.settle());
        list = view->findChild<HistoryList*>();
        list->setFocus();
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(list, static_cast<Qt::Key>(key), modifiers);
        EXPECT_TRUE(worker.settle());
    }
    QString sentence() const
    {
        const auto* const bar = view->findChild<PlanBar*>();
        return bar->isVisible() ? bar->findChild<QLabel*>()->text() : QString();
    }
    QPushButton* button(const QString& title) const
    {
        for (QPushButton* const found : view->findChild<PlanBar*>()->findChildren<QPushButton*>()) {
            if (found->isVisible() && found->text() == title)
                return found;
        }
        return nullptr;
    }
    std::string sign(std::size_t commit) const
    {
        return planSignOf(store->rewriting(), hashes[commit]).text.toStdString();
    }
    std::string subjects() const { return repo.read({"log", "--reverse", "--format=%s"}); }
    QRect rowOf(std::size_t commit) const
    {
        const int row = static_cast<int>(*store->history().history.value().rowOf(hashes[commit]));
        return list->visualRect(list->model()->index(row, 0));
    }
    QString hold(const QMimeData& data, QPoint place, Qt::KeyboardModifiers keys = {})
    {
        QDragEnterEvent enter(place, Qt::MoveAction, &data, Qt::LeftButton, keys);
        QApplication::sendEvent(list->viewport(), &enter);
        const auto* const hint = view->findChild<DropHint*>();
        return hint && hint->isVisible() ? hint->words().action : QString();
    }
    void let(const QMimeData& data, QPoint place)
    {
        QDropEvent drop(place, Qt::MoveAction, &data, Qt::LeftButton, {});
        QApplication::sendEvent(list->viewport(), &drop);
        QApplication::processEvents();
        EXPECT_TRUE(worker.settle());
    }

    TestRepository repo;
    std::vector<std::string> hashes;
    test::SettlingWorker worker;
    std::unique_ptr<RepositoryStore> store;
    std::unique_ptr<HistoryView> view;
    HistoryList* list = nullptr;
};

TEST_F(PlanWindow, IsMadeByKeysShownInTheRowsAndAppliedFromTheBar)
{
    EXPECT_EQ(sentence(), QString());
    store->window().selectCommit(hashes[4]);
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(sentence().toStdString(), "Plan: 1 moved — no conflicts");
    EXPECT_EQ(store->window().selectedCommit.value(), hashes[4]);
    EXPECT_EQ(list->currentIndex().row(), 1) << "the selection goes with the commit";
    EXPECT_EQ(sign(4) + sign(3), "⇅ moved · rewrittenrewritten");
    press(Qt::Key_Down, Qt::ControlModifier);
    press(Qt::Key_Up, Qt::ControlModifier);
    press(Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(sign(4), "⤵ into “Add file three” · rewritten");
    store->window().selectCommit(hashes[3]);
    press(Qt::Key_Delete);
    EXPECT_EQ(sign(3), "✕ dropped");
    EXPECT_TRUE(button(u"Apply"_s));
    const QString described = list->model()->index(0, 0).data(Qt::AccessibleDescriptionRole).toString();
    EXPECT_TRUE(described.startsWith(u"✕ dropped"_s)) << described.toStdString();
    press(Qt::Key_Escape);
    EXPECT_EQ(sentence(), QString());
    EXPECT_EQ(list->currentIndex().row(), 1) << "and back";

    press(Qt::Key_Delete);
    button(u"Apply"_s)->click();
    EXPECT_TRUE(worker.settle());
    EXPECT_EQ(subjects(), "Add file one\nAdd file two\nAdd file three\nAdd file five");
    EXPECT_EQ(sentence(), QString());

    // Other keys of the list keep their meaning, and what cannot be done is told.
    repo.git({"checkout", "-q", "--orphan", "apart"}).commit("apart");
    store->snapshot().refresh(RefreshScope::full);
    EXPECT_TRUE(worker.settle());
    store->window().selectCommit(hashes[0]);
    press(Qt::Key_Delete);
    EXPECT_EQ(sentence(), QString());
    EXPECT_EQ(store->window().notice.value().toStdString(),
              "Only commits of the branch that is checked out can be changed, down to its first merge.");
}

TEST_F(PlanWindow, TakesWordsFromASheetAndTellsWhatIsPublished)
{
    const StoreDialogs dialogs(*store, view.get());
    store->window().selectCommit(hashes[1]);
    press(Qt::Key_F2);
    auto* const text = view->findChild<QDialog*>()->findChild<QPlainTextEdit*>();
    EXPECT_EQ(text->toPlainText(), u"Add file two"_s);
    text->setPlainText(u"Begin with two\n\nBecause."_s);
    view->findChild<QDialog*>()->accept();
    QApplication::processEvents();
    EXPECT_TRUE(worker.settle());
    EXPECT_EQ(sentence().toStdString(), "Plan: 1 reworded — no conflicts");
    EXPECT_EQ(sign(1), "✎ new message · rewritten");
    EXPECT_TRUE(planSignOf(store->rewriting(), hashes[0]).isPublished);
    EXPECT_FALSE(planSignOf(store->rewriting(), hashes[2]).isPublished);
    EXPECT_EQ(view->findChild<PlanBar*>()->findChildren<QLabel*>().at(1)->text().toStdString(),
              "1 of these commits is on origin/main. Others may have it; you will need to force-push.");
    press(Qt::Key_Return, Qt::ControlModifier);
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B", "HEAD~3"}), "Begin with two\n\nBecause.\n");
}

TEST_F(PlanWindow, SplitsACommitByFilesHunksAndLines)
{
    std::string lines;
    for (int number = 0; number < 30; ++number)
        lines += std::to_string(number) + '\n';
    repo.write("text", lines).commit("text");
    repo.write("text", "first\n" + lines + "last\nvery last\n").write("added", "a\n").commit("Do two things");
    const std::string commit = repo.head();
    store->snapshot().refresh(RefreshScope::full);
    EXPECT_TRUE(worker.settle());
    const StoreDialogs dialogs(*store, view.get());
    store->window().selectCommit(commit);
    store->window().showSheet(SplitSheet{commit});
    EXPECT_TRUE(worker.settle());
    auto* const sheet = view->findChild<QDialog*>();
    auto* const files = test::named<QListView>(*sheet, u"Files of the Commit"_s);
    auto* const first = test::named<QPlainTextEdit>(*sheet, u"Message of the First Commit"_s);
    auto* const second = test::named<QPlainTextEdit>(*sheet, u"Message of the Second Commit"_s);
    const auto extent = [&](const QString& name) { return test::named<QLabel>(*sheet, name)->text().toStdString(); };
    const auto split = [&] {
        const auto buttons = sheet->findChildren<QPushButton*>();
        return *std::ranges::find_if(buttons, [](const QPushButton* each) { return each->isDefault(); });
    };
    EXPECT_EQ(first->toPlainText(), u"Do two things"_s);
    EXPECT_EQ(extent(u"Contents of the First Commit"_s), "nothing yet: tick files, hunks or lines");
    EXPECT_EQ(extent(u"Contents of the Second Commit"_s), "2 files · 4 changed lines · its message is missing");
    second->setPlainText(u"Second thing"_s);
    EXPECT_FALSE(split()->isEnabled());

    // Files as a whole, then hunks and lines of one.
    EXPECT_EQ(files->model()->index(0, 0).data().toString(), u"added (new)"_s);
    for (const int row : {0, 1})
        files->model()->setData(files->model()->index(row, 0), Qt::Checked, Qt::CheckStateRole);
    EXPECT_EQ(extent(u"Contents of the Second Commit"_s), "nothing is left for it: untick something");
    EXPECT_FALSE(split()->isEnabled());
    files->model()->setData(files->model()->index(1, 0), Qt::Unchecked, Qt::CheckStateRole);
    files->setCurrentIndex(files->model()->index(1, 0));
    EXPECT_TRUE(worker.settle());
    auto* const section = sheet->findChild<DiffSectionView*>();
    DiffController& controller = section->controller();
    const auto rowOfText = [&](const QString& text) {
        int row = 0;
        while (controller.diff().document().text(row) != text)
            ++row;
        return row;
    };
    section->setFocus();
    controller.setCurrentRow(rowOfText(u"last"_s));
    QTest::keyClick(section, Qt::Key_S);
    EXPECT_EQ(files->model()->index(1, 0).data(Qt::CheckStateRole), Qt::PartiallyChecked);
    controller.setCurrentRow(rowOfText(u"very last"_s));
    QTest::keyClick(section, Qt::Key_Space);
    EXPECT_EQ(extent(u"Contents of the First Commit"_s), "2 files · 2 changed lines");
    EXPECT_EQ(extent(u"Contents of the Second Commit"_s), "1 file · 2 changed lines");
    EXPECT_TRUE(controller.diff().plainText().contains(u"+last (first commit)\n+very last (second commit)"_s));
    const auto click = [&](const QString& text) {
        QTest::mouseClick(section, Qt::LeftButton, {}, section->rowRect(rowOfText(text)).topLeft() + QPoint(8, 8));
    };
    click(u"very last"_s);
    click(u"last"_s);
    EXPECT_EQ(extent(u"Contents of the First Commit"_s), "2 files · 2 changed lines");

    // A message of blanks is none.
    second->setPlainText(u" "_s);
    QTest::keyClick(section, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(store->window().sheet.value());
    second->setPlainText(u"Second thing\n\nWith a reason."_s);
    QTest::keyClick(second, Qt::Key_Return, Qt::ControlModifier);
    EXPECT_TRUE(worker.settle());
    EXPECT_FALSE(store->window().sheet.value());
    EXPECT_EQ(repo.read({"log", "-2", "--format=%B"}), "Second thing\n\nWith a reason.\n\nDo two things\n");
    EXPECT_EQ(repo.read({"show", "HEAD~1:text"}), lines + "very last");
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^{tree}"}), repo.read({"rev-parse", commit + "^{tree}"}));
}

TEST_F(PlanWindow, IsMadeByDraggingRowsOntoAndBetweenOthers)
{
    const auto five = dragData(*store, {.kind = Dragged::Kind::commits, .names = {hashes[4]}});
    const QRect two = rowOf(1);
    EXPECT_EQ(hold(*five, two.center()).toStdString(), "Squash into “Add file two”");
    EXPECT_EQ(hold(*five, two.center(), Qt::ControlModifier).toStdString(), "Fix up “Add file two”");
    EXPECT_EQ(hold(*five, two.topLeft() + QPoint(200, 1)).toStdString(), "Move above “Add file two”");
    EXPECT_EQ(hold(*five, rowOf(0).bottomLeft() + QPoint(200, 0)).toStdString(), "Move beneath all the others");
    EXPECT_EQ(hold(*five, rowOf(4).center()), QString()) << "onto itself";
    EXPECT_EQ(hold(*five, two.bottomLeft() + QPoint(200, 0)).toStdString(), "Move above “Add file one”");
    let(*five, two.bottomLeft() + QPoint(200, 0));
    EXPECT_EQ(sentence().toStdString(), "Plan: 1 moved — no conflicts");
    EXPECT_EQ(rowOf(4), two);
    const auto four = dragData(*store, {.kind = Dragged::Kind::commits, .names = {hashes[3]}});
    hold(*four, rowOf(4).center());
    let(*four, rowOf(4).center());
    EXPECT_EQ(sentence().toStdString(), "Plan: 1 moved, 1 squashed — no conflicts");
    EXPECT_EQ(repo.head(), hashes[4]);
}

TEST_F(PlanWindow, OffersToSquashFixupCommits)
{
    repo.git({"commit", "-q", "--allow-empty", "-m", "fixup! Add file four"});
    store->snapshot().refresh(RefreshScope::full);
    EXPECT_TRUE(worker.settle());
    EXPECT_EQ(sentence(), u"1 fixup commit"_s);
    button(u"Squash Them"_s)->click();
    EXPECT_TRUE(worker.settle());
    EXPECT_TRUE(sentence().startsWith(u"Plan: 1 squashed"_s)) << sentence().toStdString();
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/RepositoryStore.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/WorkingDiffPane.h"
#include "tests/app/ShownWidgets.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;

std::string numberedLines(int from, int to)
{
    std::string text;
    for (int line = from; line < to; ++line)
        text += "line " + std::to_string(line) + "\n";
    return text;
}

class WorkingDiffTest : public testing::Test {
protected:
    WorkingDiffTest()
    {
        repo.write("a", numberedLines(0, 200)).write("b", "b\n").commit("one");
        repo.write("a", "first\n" + numberedLines(0, 100) + "middle\n" + numberedLines(100, 200) + "last\n");
        repo.write("b", "changed\n").write("new", "1\n2\n3\n");
        refresh();
        pane.resize(600, 300);
        pane.show();
    }

    void refresh()
    {
        store.snapshot().refresh(RefreshScope::status);
        worker.finishAll();
        QApplication::processEvents();
    }
    void select(std::set<std::string> paths)
    {
        store.window().selectPaths(std::move(paths));
        worker.finishAll();
        QApplication::processEvents();
    }
    QStringList names() const
    {
        QStringList names;
        for (const DiffSectionView* section : pane.view()->sections())
            names << section->accessibleName();
        return names;
    }
    void press(const QString& name)
    {
        for (QPushButton* button : pane.findChildren<QPushButton*>()) {
            if (button->accessibleName() == name && button->isVisible() && button->isEnabled()) {
                button->click();
                worker.finishAll();
                QApplication::processEvents();
                return;
            }
        }
        ADD_FAILURE() << "no button " << name.toStdString();
    }
    bool isDiffShown() const { return !pane.isSentenceShown(); }
    QString sentence() const
    {
        QStringList texts;
        for (const QLabel* label : pane.findChildren<QLabel*>())
            texts << label->text();
        return texts.join(u' ');
    }

    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    WorkingDiffPane pane{store};
};

TEST_F(WorkingDiffTest, StagesUnstagesAndDiscardsParts)
{
    select({"a"});
    ASSERT_EQ(names(), QStringList{u"Unstaged Diff"_s});
    press(u"Stage Hunk"_s);
    EXPECT_EQ(repo.read({"show", ":a"}) + "\n", "first\n" + numberedLines(0, 200));
    EXPECT_EQ(names(), (QStringList{u"Unstaged Diff"_s, u"Staged Diff"_s}));
    press(u"Unstage Hunk"_s);
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "");

    DiffSectionView& section = *pane.view()->sections().front();
    section.controller().setCurrentRow(section.controller().diff().document().hunks()[1].first);
    press(u"Discard Hunk…"_s);
    ASSERT_TRUE(store.window().confirmation.value());
    store.window().confirmation.value()->action();
    worker.finishAll();
    EXPECT_EQ(repo.read({"diff", "--numstat"}), "2\t0\ta\n1\t1\tb");
}

TEST_F(WorkingDiffTest, TheHistoryOfLinesIsThatOfTheLastCommitsLines)
{
    repo.git({"mv", "a", "moved"});
    repo.write("moved", "first\n" + numberedLines(0, 180)).git({"add", "moved"});
    repo.write("moved", "first\n" + numberedLines(0, 50) + "middle\n" + numberedLines(50, 180));
    refresh();
    select({"moved"});
    ASSERT_EQ(names(), (QStringList{u"Unstaged Diff"_s, u"Staged Diff"_s}));
    const auto linesAt = [this](std::size_t section, const QString& text) {
        DiffController& controller = pane.view()->sections()[section]->controller();
        const DiffDocument& document = controller.diff().document();
        for (int row = 0; row < document.rowCount(); ++row) {
            if (document.text(row) == text)
                controller.setCurrentRow(row);
        }
        return controller.linesAtHand();
    };
    EXPECT_EQ(linesAt(0, u"line 49"_s), (gitkit::LineRange{50, 50})) << "the index has one more line before";
    EXPECT_EQ(linesAt(0, u"middle"_s), std::nullopt);
    EXPECT_EQ(linesAt(1, u"first"_s), std::nullopt);
    EXPECT_EQ(linesAt(1, u"line 190"_s), (gitkit::LineRange{191, 191})) << "taken away, but the commit has it";
    const auto entry = [this](std::size_t section) {
        return test::entry(*pane.view()->sections()[section]->makeContextMenu(), u"History of These Lines"_s);
    };
    ASSERT_TRUE(entry(0) && entry(1));
    EXPECT_TRUE(entry(1)->isEnabled());
    EXPECT_FALSE(entry(0)->isEnabled());
    EXPECT_EQ(entry(0)->toolTip(), u"Select lines that the last commit has."_s);
    entry(1)->trigger();
    EXPECT_EQ(store.window().inspected.value(),
              (InspectedFile{"a", repo.head(), InspectedFile::Tab::history, gitkit::LineRange{191, 191}}));

    select({"new"});
    EXPECT_FALSE(entry(0)) << "no commit has it";
}

TEST_F(WorkingDiffTest, DoesNothingWithADiffThatIsAboutToChange)
{
    select({"a"});
    const auto stage = [this] {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier);
        QApplication::sendEvent(pane.view()->sections().front(), &key);
    };
    stage();
    refresh(); // and what is read meanwhile changes nothing about it
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}), "1\t0\ta");
    pane.view()->sections().front()->controller().setCurrentRow(0);
    stage();
    stage();
    stage();
    for (const QPushButton* button : pane.findChildren<QPushButton*>())
        EXPECT_TRUE(button->isHidden() || !button->isEnabled());
    worker.finishAll();
    QApplication::processEvents();
    EXPECT_FALSE(store.window().errorMessage.value());
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}), "2\t0\ta");
    stage();
    worker.finishAll();
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}), "3\t0\ta");

    store.staging().unstageAll();
    QApplication::processEvents();
    EXPECT_FALSE(pane.view()->sections().front()->controller().areActionsAvailable()) << "the whole file is under way";
    worker.finishAll();
    QApplication::processEvents();
    EXPECT_TRUE(pane.view()->sections().front()->controller().areActionsAvailable());
}

TEST_F(WorkingDiffTest, StagesLinesOfAnUntrackedFile)
{
    select({"new"});
    ASSERT_EQ(names(), QStringList{u"Untracked Diff"_s});
    DiffSectionView& section = *pane.view()->sections().front();
    section.controller().setCurrentRow(2);
    QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier);
    QApplication::sendEvent(&section, &space);
    press(u"Stage Lines"_s);
    EXPECT_EQ(repo.read({"show", ":new"}), "2");
    EXPECT_EQ(names(), (QStringList{u"Unstaged Diff"_s, u"Staged Diff"_s}));
}

TEST_F(WorkingDiffTest, ShowsTheFileSelectedLastAndActsOnNoOther)
{
    select({"a"});
    store.window().selectPaths(std::set<std::string>{"b"});
    store.window().selectPaths(std::set<std::string>{"new"});
    // The old picture stands until the new one is there, and nothing can be done with it.
    ASSERT_TRUE(isDiffShown());
    EXPECT_EQ(pane.view()->sections().front()->controller().diff().content().detail, u"a"_s);
    for (const QPushButton* button : pane.findChildren<QPushButton*>())
        EXPECT_TRUE(button->isHidden() || !button->isEnabled());
    QKeyEvent stage(QEvent::KeyPress, Qt::Key_S, Qt::NoModifier);
    QApplication::sendEvent(pane.view()->sections().front(), &stage);
    ASSERT_EQ(worker.waiting(), 2U); // that of b is ended as soon as it begins
    worker.finish();
    EXPECT_EQ(pane.view()->sections().front()->controller().diff().content().detail,
              u"a"_s); // that of b comes too late
    worker.finishAll();
    EXPECT_EQ(pane.view()->sections().front()->controller().diff().content().detail, u"new"_s);
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "");
}

TEST_F(WorkingDiffTest, StandsStillWhileTheDiffIsEqual)
{
    select({"a"});
    DiffSectionView& section = *pane.view()->sections().front();
    section.selectAll();
    pane.view()->verticalScrollBar()->setValue(60);
    const DiffSelection selection = section.controller().selection();
    repo.write("b", "changed again\n");
    refresh();
    EXPECT_EQ(&section, pane.view()->sections().front());
    EXPECT_EQ(section.controller().selection(), selection);
    EXPECT_EQ(pane.view()->verticalScrollBar()->value(), 60);
}

TEST_F(WorkingDiffTest, SaysWhyThereIsNothingToSee)
{
    EXPECT_TRUE(sentence().contains(u"No File Selected"_s));
    select({"a", "b", "new"});
    EXPECT_TRUE(sentence().contains(u"3 Files Selected"_s));
    std::filesystem::remove(repo / "new");
    select({"new"});
    EXPECT_TRUE(sentence().contains(u"The File Is Gone"_s));
    repo.git({"init", "-q", "inner"}).write("inner/x", "x");
    refresh();
    select({"inner/"});
    EXPECT_TRUE(sentence().contains(u"a repository of its own"_s)) << sentence().toStdString();
    select({"a"});
    EXPECT_TRUE(isDiffShown());
}

std::string pictureOf(int side)
{
    QImage image(side, side, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG");
    return bytes.toStdString();
}

TEST_F(WorkingDiffTest, ShowsBothSidesOfABinaryConflict)
{
    repo.git({"reset", "-q", "--hard"}).git({"checkout", "-q", "-b", "topic"});
    repo.write("p.png", pictureOf(2)).write("d", std::string("b\0", 2)).commit("theirs");
    repo.git({"checkout", "-q", "main"});
    repo.write("p.png", pictureOf(3)).write("d", std::string("aa\0", 3)).commit("ours");
    int status = 0;
    const std::string merged = runPlainGit(repo.path(), {"merge", "topic"}, status);
    ASSERT_EQ(status, 1) << merged;
    store.snapshot().refresh(RefreshScope::full);
    worker.finishAll();
    select({"d"});
    const QStringList notes = pane.view()->sections().front()->controller().diff().notes().above;
    ASSERT_EQ(notes.size(), 3);
    EXPECT_TRUE(notes[0].contains(u"Both sides changed this binary file"_s)) << notes[0].toStdString();
    EXPECT_EQ(notes[1], u"main (checked out): 3 bytes"_s);
    EXPECT_EQ(notes[2], u"topic (being merged): 2 bytes"_s);
    press(u"Use Theirs: topic (being merged)"_s);
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat", "topic", "--", "d"}), "");
    EXPECT_EQ(repo.read({"ls-files", "--unmerged", "--", "d"}), "");

    select({"p.png"});
    for (const QString& told : {u"main (checked out)"_s, u"3 × 3"_s, u"topic (being merged)"_s, u"2 × 2"_s})
        EXPECT_TRUE(sentence().contains(told)) << sentence().toStdString();
    press(u"Use Ours: main (checked out)"_s);
    EXPECT_EQ(repo.read({"diff", "--cached", "--numstat"}).find("p.png"), std::string::npos);
    EXPECT_EQ(repo.read({"ls-files", "--unmerged"}), "");
}

TEST_F(WorkingDiffTest, MayGoWhileItReads)
{
    auto other = std::make_unique<WorkingDiffPane>(store);
    store.window().selectPaths(std::set<std::string>{"a"});
    other.reset();
    worker.finishAll();
    EXPECT_TRUE(isDiffShown());
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Theme.h"
#include "tests/app/DiffViewTest.h"

#include <QAccessible>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using ActionVerb = DiffAction::Verb;
using Part = DiffAction::Part;
using Use = DiffContent::Use;
using SectionKind = gitkit::DiffSection::Kind;

/// The old file of `twoHunks`, of 45 lines: 16 are left out between the hunks, and 24 behind them.
std::string oldFile(const std::string& ending = "\n")
{
    std::string text = "a" + ending + "\tb" + ending + "d" + ending;
    for (int line = 4; line <= 45; ++line)
        text += (line == 20 ? "x" : line == 21 ? "z" : "l" + std::to_string(line)) + ending;
    return text;
}

DiffTexts textsOf(const std::string& before) { return {std::make_shared<const FileLines>(before), nullptr}; }

class DiffMoreTest : public DiffViewTest {
protected:
    int rows() { return controller().diff().document().rowCount(); }
    QString text(int row) { return controller().diff().document().text(row); }
    int rowOf(const QString& wanted)
    {
        for (int row = 0; row < rows(); ++row) {
            if (text(row) == wanted)
                return row;
        }
        return -1;
    }
    int heightInSight(int row) { return section().y() + section().rowRect(row).top(); }
    QPoint moreButton(int row, int index)
    {
        return {DiffMetrics::moreLeft + index * DiffMetrics::moreWidth + 5, section().rowRect(row).center().y()};
    }
};

TEST_F(DiffMoreTest, ShowsWhatTheDiffLeavesOut)
{
    view.resize(700, 200);
    show({contentOf(twoHunks)});
    EXPECT_EQ(rows(), 10);
    view.setTexts(SectionKind::unstaged, textsOf(oldFile()));
    ASSERT_EQ(rows(), 11);
    EXPECT_EQ(text(10), u"24 more lines"_s);
    click(inGutter(8));
    const int before = heightInSight(8);
    press(Qt::Key_Up, Qt::ControlModifier); // ten of sixteen, between the header and the hunk
    ASSERT_EQ(rows(), 21);
    EXPECT_EQ(text(7), u"l10"_s);
    EXPECT_EQ(controller().diff().document().row(7).oldNumber, 10);
    EXPECT_EQ(controller().diff().document().row(7).newNumber, 11);
    EXPECT_EQ(text(16), u"l19"_s);
    EXPECT_EQ(controller().currentRow(), 18);
    EXPECT_EQ(heightInSight(18), before);
    EXPECT_EQ(controller().selectedChanges(), std::set<int>{8});

    click(moreButton(6, 0)); // the six that are left
    ASSERT_EQ(rows(), 27);
    EXPECT_EQ(text(6), u"l4"_s);
    EXPECT_EQ(text(12), u"@@ -20,2 +21,3 @@ two"_s); // its buttons are needed
    click(moreButton(26, 0));
    EXPECT_EQ(text(26), u"l22"_s);
    EXPECT_EQ(text(36), u"14 more lines"_s);

    // What is no part of the diff is not staged with it, and an equal diff leaves it there.
    show({contentOf(twoHunks)}, DiffPlace::kept);
    EXPECT_EQ(rows(), 37);
    press(Qt::Key_Escape);
    controller().setCurrentRow(30);
    press(Qt::Key_S);
    drag(inGutter(1), inGutter(35));
    press(Qt::Key_S);
    EXPECT_EQ(asked, (std::vector<DiffAction>{{ActionVerb::stage, Part::hunk, {8}},
                                              {ActionVerb::stage, Part::lines, {2, 3, 4, 8}}}));
    show({contentOf(twoHunks + "\\ No newline at end of file\n")}, DiffPlace::kept);
    EXPECT_EQ(rows(), 11);
}

TEST_F(DiffMoreTest, ShowsTheWholeFileAndTheChangesAgain)
{
    show({contentOf(twoHunks, Use::read), contentOf(twoHunks, Use::read, u"Staged"_s)});
    view.setTexts(SectionKind::unstaged, textsOf(oldFile()));
    view.verticalScrollBar()->setValue(section().rowRect(6).top() - 40);
    const int before = heightInSight(8);
    controller().setCurrentRow(8);
    view.setShowsWholeFile(true);
    ASSERT_EQ(rows(), 1 + 45 + 3); // no second header: nothing is left out before it
    EXPECT_EQ(text(1), u"a"_s);
    EXPECT_EQ(text(48), u"l45"_s);
    EXPECT_EQ(heightInSight(rowOf(u"y"_s)), before);
    view.setTexts(SectionKind::staged, textsOf(oldFile())); // what comes late is shown whole, too
    EXPECT_EQ(controller(1).diff().document().rowCount(), 49);
    EXPECT_EQ(heightInSight(rowOf(u"y"_s)), before);
    view.setShowsWholeFile(false);
    EXPECT_EQ(rows(), 11);
    EXPECT_EQ(heightInSight(8), before);

    // A new diff of the file, whose text comes after it, is read on where the one before was.
    view.setShowsWholeFile(true);
    const std::string other = std::string(diffHeader) + "@@ -1,1 +1,1 @@\n-a\n+A\n";
    show({contentOf(other, Use::read), contentOf(twoHunks, Use::read, u"Staged"_s)}, DiffPlace::kept);
    view.setTexts(SectionKind::unstaged, textsOf(oldFile()));
    EXPECT_EQ(heightInSight(rowOf(u"l22"_s)), before);
}

TEST(DiffGaps, AreOfferedForTheFilesOfTheDiffOnly)
{
    const auto diff = gitkit::DiffParser::parse(twoHunks);
    const auto of = [](const gitkit::ParsedDiff& of, const DiffTexts& texts) {
        return DiffGaps::of(of, texts).count();
    };
    EXPECT_EQ(of(diff, textsOf(oldFile())), 3);
    EXPECT_EQ(of(diff, textsOf(oldFile("\r\n"))), 3); // git may convert what a working file has
    EXPECT_EQ(of(diff, textsOf("one more\n" + oldFile())), 0);
    EXPECT_EQ(of(diff, textsOf("a\n\tb\nd\n")), 0);
    EXPECT_EQ(of(diff, {}), 0);
    gitkit::ParsedDiff cut = diff;
    cut.isTruncated = true;
    EXPECT_EQ(of(cut, textsOf(oldFile())), 0);
    EXPECT_EQ(of(gitkit::DiffParser::parse("diff --cc f\n@@@ -1 -1 +1 @@@\n++a\n"), textsOf("a\n")), 0);
    // Without context, git names the line before what is added.
    const auto bare = gitkit::DiffParser::parse(std::string(diffHeader) + "@@ -2,0 +3 @@\n+n\n@@ -4 +4,0 @@\n-l4\n");
    const DiffGaps gaps = DiffGaps::of(bare, textsOf(oldFile()));
    ASSERT_EQ(gaps.count(), 3);
    EXPECT_EQ(gaps.gap(0), (DiffGaps::Gap{1, 1, 2}));
    EXPECT_EQ(gaps.gap(1), (DiffGaps::Gap{3, 4, 1}));
    EXPECT_EQ(gaps.gap(2), (DiffGaps::Gap{5, 5, 41}));
}

class SideBySideTest : public DiffMoreTest {
protected:
    SideBySideTest() { view.setLayout(DiffLayout::sideBySide); }
};

TEST_F(SideBySideTest, PutsWhatWasRemovedBesideWhatWasAdded)
{
    show({contentOf(twoHunks)});
    const int half = section().width() / 2;
    EXPECT_EQ(section().rowRect(2).top(), section().rowRect(3).top());
    EXPECT_EQ(section().rowRect(2).right() + 1, half);
    EXPECT_EQ(section().rowRect(3).left(), half);
    EXPECT_EQ(section().rowRect(4).left(), half); // with nothing beside it
    EXPECT_GT(section().rowRect(4).top(), section().rowRect(3).top());
    EXPECT_EQ(section().rowRect(6).width(), section().width());
    const QImage image = view.viewport()->grab().toImage();
    const auto color = [&](int row) {
        const QPoint at = section().pos() + section().rowRect(row).topRight() - QPoint(30, -2);
        return image.pixelColor(at);
    };
    EXPECT_EQ(color(2), Theme::current().removedLine);
    EXPECT_EQ(color(3), Theme::current().addedLine);

    // Nothing is gained by an empty half.
    const std::string added = std::string(diffHeader) + "@@ -0,0 +1,2 @@\n+a\n+b\n";
    const std::string merged = "diff --cc f\nindex 1,2..0\n--- a/f\n+++ b/f\n@@@ -1,2 -1,2 +1,3 @@@\n  a\n++b\n- c\n";
    for (const std::string& each : {added, merged}) {
        show({contentOf(each, Use::read)});
        EXPECT_EQ(section().rowRect(2).width(), section().width());
    }
}

TEST_F(SideBySideTest, SelectsAndCopiesOneSide)
{
    show({contentOf(twoHunks)});
    drag(inGutter(2), QPoint(20, section().rowRect(5).center().y()));
    EXPECT_EQ(controller().selectedChanges(), std::set<int>{2});
    click(inGutter(4), Qt::ControlModifier);
    EXPECT_EQ(controller().selectedChanges(), (std::set<int>{2, 4}));
    view.setLayout(DiffLayout::unified);
    EXPECT_EQ(controller().selectedChanges(), (std::set<int>{2, 4})); // the same lines, wherever they stand
    view.setLayout(DiffLayout::sideBySide);
    EXPECT_EQ(controller().selectedChanges(), (std::set<int>{2, 4}));
    press(Qt::Key_Return);
    EXPECT_EQ(asked, (std::vector<DiffAction>{{ActionVerb::stage, Part::lines, {2, 4}}}));

    // From the new side over to the old one: what is copied is of the new file.
    const QPoint acrossTheMiddle{section().places().metrics().codeLeft + 1, section().rowRect(7).center().y()};
    drag(inCode(3, 4.1), acrossTheMiddle);
    EXPECT_EQ(controller().selectedChanges(), (std::set<int>{3, 4}));
    section().copy();
    EXPECT_EQ(copied(), u"B\nc\nd"_s);
    section().selectAll();
    section().copy();
    EXPECT_EQ(copied(), u"a\n\tB\nc\nd\nx\ny\nz"_s);
}

TEST_F(SideBySideTest, IsWorkedWithTheKeyboard)
{
    show({contentOf(twoHunks)});
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    EXPECT_EQ(controller().currentRow(), 3);
    press(Qt::Key_Left);
    EXPECT_EQ(controller().currentRow(), 2);
    press(Qt::Key_Space);
    EXPECT_EQ(controller().selectedChanges(), std::set<int>{2});
    press(Qt::Key_Escape);
    press(Qt::Key_Down, Qt::ShiftModifier); // whole lines, with both of their sides
    EXPECT_EQ(controller().selectedChanges(), (std::set<int>{2, 3, 4}));
    EXPECT_EQ(controller().currentRow(), 4); // the old side has nothing here
    press(Qt::Key_Down);
    press(Qt::Key_Up);
    press(Qt::Key_Up);
    EXPECT_EQ(controller().currentRow(), 2);
    view.setTexts(SectionKind::unstaged, textsOf(oldFile()));
    press(Qt::Key_Down, Qt::ControlModifier);
    EXPECT_EQ(section().rowRect(rowOf(u"l13"_s)).bottom() + 1,
              section().rowRect(rowOf(u"@@ -20,2 +21,3 @@ two"_s)).top());
    QAccessibleTextInterface* const read = QAccessible::queryAccessibleInterface(&section())->textInterface();
    EXPECT_EQ(read->text(read->cursorPosition(), read->cursorPosition() + 7), u"-\tb\n+\tB"_s);
}

TEST_F(DiffMoreTest, GoesFromChangeToChange)
{
    const std::string runs = std::string(diffHeader) + "@@ -1,6 +1,6 @@\n-a\n+b\n c\n+d\n+e\n f\n-g\n h\n i\n";
    for (const DiffLayout layout : {DiffLayout::unified, DiffLayout::sideBySide}) {
        view.setLayout(layout);
        show({contentOf(runs, Use::read), contentOf(twoHunks, Use::unstage, u"Staged"_s)});
        controller().setCurrentRow(0);
        section().setFocus();
        std::vector<int> visited;
        for (int i = 0; i < 3; ++i) {
            i == 0 ? press(Qt::Key_F7) : press(Qt::Key_N);
            visited.push_back(controller().currentRow());
        }
        EXPECT_EQ(visited, (std::vector<int>{1, 4, 7}));
        view.nextChange();
        EXPECT_EQ(controller(1).currentRow(), 2);
        EXPECT_TRUE(section(1).hasFocus());
        view.nextChange();
        view.nextChange(); // the last one
        EXPECT_EQ(controller(1).currentRow(), 8);
        const QRect line = section(1).rowRect(8).translated(section(1).pos());
        EXPECT_TRUE(view.viewport()->rect().contains(line));
        view.previousChange();
        view.previousChange();
        EXPECT_EQ(controller().currentRow(), 7);
        EXPECT_TRUE(section().hasFocus());
        press(Qt::Key_F7, Qt::ShiftModifier);
        EXPECT_EQ(controller().currentRow(), 4);
    }
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/ui/diff/DiffFound.h"
#include "app/ui/diff/DiffOutline.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/FunctionBar.h"
#include "app/ui/diff/LineWrap.h"
#include "app/ui/widgets/Theme.h"
#include "tests/app/DiffViewTest.h"
#include "tests/app/ShownWidgets.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QImage>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using ActionVerb = DiffAction::Verb;
using Part = DiffAction::Part;
using Use = DiffContent::Use;

using Ids = std::set<int>;

TEST_F(DiffViewTest, SelectsLinesInTheGutter)
{
    show({contentOf(twoHunks)});
    click(inGutter(3));
    EXPECT_EQ(controller().selectedChanges(), Ids{3});
    click(inGutter(8), Qt::ShiftModifier);
    EXPECT_EQ(controller().selectedChanges(), (Ids{3, 4, 8})); // context and headers between them do not count
    click(inGutter(4), Qt::ControlModifier);
    click(inGutter(2), Qt::ControlModifier);
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3, 8}));
    drag(inGutter(4), inGutter(2));
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3, 4}));
    click(inGutter(1));
    EXPECT_EQ(controller().selectedChanges(), Ids{});
}

TEST_F(DiffViewTest, SelectsTextAndCountsPartialLinesWhole)
{
    show({contentOf(twoHunks)});
    drag(inCode(2, 4.1), inCode(4, 0.9)); // from behind the tab of "\tb" to behind "c"
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3, 4}));
    section().copy();
    EXPECT_EQ(copied(), u"b\n\tB\nc"_s);
    drag(inCode(3, 5), inCode(4, 0)); // nothing of the last line
    EXPECT_EQ(controller().selectedChanges(), Ids{3});

    ASSERT_TRUE(QMetaObject::invokeMethod(&section(), "selectAll"));
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3, 4, 8}));
    ASSERT_TRUE(QMetaObject::invokeMethod(&section(), "copy"));
    EXPECT_EQ(copied(), u"a\n\tb\n\tB\nc\nd\nx\ny\nz"_s);
    click(inGutter(8));
    view.copy();
    EXPECT_EQ(copied(), u"y\n"_s);
}

TEST_F(DiffViewTest, ASelectionThatEndsOnAnEmptyLineIncludesIt)
{
    const std::string text =
        "diff --git a/f b/f\nindex 1..2 100644\n--- a/f\n+++ b/f\n@@ -1,2 +1,4 @@\n a\n+b\n+\n c\n";
    show({contentOf(text)});
    drag(inCode(2, 0), inCode(3, 0));
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3}));
    drag(inCode(3, 0), inCode(2, 0));
    EXPECT_EQ(controller().selectedChanges(), (Ids{2, 3}));
    section().copy();
    EXPECT_EQ(copied(), u"b\n"_s);
}

TEST_F(DiffViewTest, IsWorkedWithTheKeyboard)
{
    show({contentOf(twoHunks), contentOf(twoHunks, Use::unstage, u"Staged"_s)});
    press(Qt::Key_S);
    press(Qt::Key_N);
    EXPECT_EQ(controller().currentRow(), 6);
    hover(inCode(1, 0)); // the pointer rests on the other hunk
    press(Qt::Key_Delete);
    press(Qt::Key_P);
    press(Qt::Key_Down);
    press(Qt::Key_Down);
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_Return);
    press(Qt::Key_End);
    press(Qt::Key_Up);
    press(Qt::Key_Space);
    press(Qt::Key_Backspace);
    EXPECT_EQ(asked, (std::vector<DiffAction>{{ActionVerb::stage, Part::hunk, {2, 3, 4}},
                                              {ActionVerb::discard, Part::hunk, {8}},
                                              {ActionVerb::stage, Part::lines, {2, 3}},
                                              {ActionVerb::discard, Part::lines, {8}}}));
    press(Qt::Key_N); // there is no further hunk here
    EXPECT_EQ(controller(1).currentRow(), 0);
    asked.clear();
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QApplication::sendEvent(&section(1), &key);
    QKeyEvent removal(QEvent::KeyPress, Qt::Key_Delete, Qt::NoModifier);
    QApplication::sendEvent(&section(1), &removal);
    EXPECT_EQ(asked, (std::vector<DiffAction>{
                         {ActionVerb::unstage, Part::hunk, {2, 3, 4}}})); // staged lines are not discarded
}

TEST_F(DiffViewTest, OffersButtonsForTheHunkAndTheLinesAtHand)
{
    show({contentOf(twoHunks)});
    ASSERT_NE(button(u"Stage Hunk"_s), nullptr);
    EXPECT_EQ(button(u"Stage Lines"_s), nullptr);
    EXPECT_EQ(button(u"Unstage Hunk"_s), nullptr);
    const QPoint drawn = button(u"Stage Hunk"_s)->geometry().center() +
                         QPoint(0, section().rowRect(6).top() - section().rowRect(0).top());
    click(drawn); // on a touch screen nothing hovers first
    EXPECT_EQ(std::exchange(asked, {}), (std::vector<DiffAction>{{ActionVerb::stage, Part::hunk, {8}}}));
    hover(inCode(1, 0));
    hover(inCode(8, 0));
    EXPECT_TRUE(section().rowRect(6).contains(button(u"Stage Hunk"_s)->geometry()));
    button(u"Stage Hunk"_s)->click();
    button(u"Stage All Hunks"_s)->click();
    drag(inGutter(3), inGutter(4));
    EXPECT_EQ(button(u"Stage All Hunks"_s), nullptr);
    EXPECT_EQ(button(u"Stage Lines"_s)->text(), u"Stage 2 Lines"_s);
    button(u"Stage Lines"_s)->click();
    button(u"Discard Lines…"_s)->click();
    EXPECT_EQ(asked, (std::vector<DiffAction>{{ActionVerb::stage, Part::hunk, {8}},
                                              {ActionVerb::stage, Part::all, {2, 3, 4, 8}},
                                              {ActionVerb::stage, Part::lines, {3, 4}},
                                              {ActionVerb::discard, Part::lines, {3, 4}}}));
    view.setActionsAvailable(false);
    EXPECT_FALSE(button(u"Stage Lines"_s)->isEnabled());
    press(Qt::Key_S);
    EXPECT_EQ(asked.size(), 4U);

    show({contentOf(twoHunks, Use::read, u"Read"_s)});
    drag(inGutter(3), inGutter(4));
    for (const QPushButton* each : view.findChildren<QPushButton*>())
        EXPECT_FALSE(each->isVisible()) << each->text().toStdString();
}

TEST_F(DiffViewTest, ItsMenuMeansTheHunkItWasOpenedFor)
{
    const auto open = [this](QPoint at) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at, section().mapToGlobal(at));
        QApplication::sendEvent(&section(), &event);
        return QPointer(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
    };
    const DiffContent staged = contentOf(twoHunks, Use::unstage, u"Staged"_s);
    show({contentOf(twoHunks), staged});
    QPointer<QMenu> menu = open(inCode(8, 0));
    ASSERT_TRUE(menu);
    hover(inCode(1, 0));
    show({contentOf(twoHunks), staged}, DiffPlace::kept);
    test::entry(*menu, u"Discard Hunk…"_s)->trigger();
    EXPECT_EQ(std::exchange(asked, {}), (std::vector<DiffAction>{{ActionVerb::discard, Part::hunk, {8}}}));
    // In another diff, another change may stand in the same place.
    show({contentOf(twoHunks + "+more\n"), staged}, DiffPlace::kept);
    EXPECT_FALSE(menu && menu->isVisible());

    menu = open(inCode(8, 0));
    ASSERT_TRUE(menu);
    QAction* const discard = test::entry(*menu, u"Discard Hunk…"_s);
    show({staged}, DiffPlace::kept);
    discard->trigger();
    EXPECT_TRUE(asked.empty());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(menu);
}

std::string repeatedContext(int lines)
{
    std::string text;
    for (int line = 0; line < lines; ++line)
        text += " context\n";
    return text;
}

std::string longDiff(int lines, int changed = -1)
{
    std::string text = std::string(diffHeader) + "@@ -1," + std::to_string(lines) + " +1,1 @@\n";
    for (int line = 0; line < lines; ++line)
        text += line % 10 == 0 ? (line == changed ? "+changed\n" : "+added\n") : " context\n";
    return text;
}

TEST_F(DiffViewTest, KeepsPlaceAndSelectionWhereTheDiffIsEqual)
{
    show({contentOf(longDiff(400)), contentOf(twoHunks, Use::unstage, u"Staged"_s)});
    click(inGutter(101));
    view.verticalScrollBar()->setValue(2000);
    show({contentOf(longDiff(400)), contentOf(longDiff(20), Use::unstage, u"Staged"_s)}, DiffPlace::kept);
    EXPECT_EQ(view.verticalScrollBar()->value(), 2000);
    EXPECT_EQ(controller().selectedChanges(), Ids{101});
    EXPECT_EQ(controller().currentRow(), 101);
    // The other section may come and go.
    const DiffSectionView* const kept = &section();
    show({contentOf(twoHunks, Use::stage, u"Untracked"_s), contentOf(longDiff(400))}, DiffPlace::kept);
    EXPECT_EQ(&section(1), kept);
    EXPECT_EQ(controller(1).selectedChanges(), Ids{101});
    EXPECT_EQ(section(1).y(), section(0).geometry().bottom() + 1);
    view.verticalScrollBar()->setValue(2000);
    // A selection must not slip onto other lines.
    show({contentOf(longDiff(400, 100))}, DiffPlace::kept);
    EXPECT_EQ(view.verticalScrollBar()->value(), 2000);
    EXPECT_EQ(controller().selectedChanges(), Ids{});
    show({contentOf(twoHunks)});
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
}

TEST_F(DiffViewTest, KeepsItsBarInSightAndTheCurrentLineFromUnderIt)
{
    show({contentOf(longDiff(400))});
    view.verticalScrollBar()->setValue(3000);
    QWidget* const bar = view.viewport()->childAt(60, 10);
    ASSERT_NE(bar, nullptr);
    EXPECT_EQ(bar->mapTo(view.viewport(), QPoint()).y(), 0);
    EXPECT_EQ(bar->parentWidget(), &section());
    press(Qt::Key_Home);
    press(Qt::Key_PageDown);
    press(Qt::Key_PageDown);
    press(Qt::Key_PageUp);
    const QRect line = section().rowRect(controller().currentRow()).translated(section().pos());
    EXPECT_GE(line.top(), bar->height());
    EXPECT_LE(line.bottom(), view.viewport()->height());
}

TEST_F(DiffViewTest, IsReadByAssistiveTechnology)
{
    DiffContent conflict =
        contentOf("diff --cc f\nindex 1,2..0\n--- a/f\n+++ b/f\n@@@ -1,2 -1,2 +1,4 @@@\n  a\n++<<\n +o\n- t\n",
                  Use::read, u"Conflict"_s);
    conflict.state = DiffState::conflicted;
    show({contentOf(twoHunks), conflict});
    QAccessibleInterface* const first = QAccessible::queryAccessibleInterface(&section());
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->text(QAccessible::Name), u"Unstaged Diff"_s);
    EXPECT_TRUE(first->text(QAccessible::Value).contains(u"@@ -1,3 +1,4 @@ one\na\n-\tb\n+\tB\n+c\nd\n"_s));
    QAccessibleTextInterface* const text = first->textInterface();
    ASSERT_NE(text, nullptr);
    controller().setCurrentRow(3);
    EXPECT_EQ(text->text(text->cursorPosition(), text->cursorPosition() + 3), u"+\tB"_s);

    QAccessibleInterface* const second = QAccessible::queryAccessibleInterface(&section(1));
    EXPECT_EQ(second->text(QAccessible::Name), u"Conflict Diff"_s);
    EXPECT_TRUE(second->text(QAccessible::Value).endsWith(u"\n  a\n++<<\n +o\n- t"_s));
    EXPECT_EQ(controller(1).diff().document().row(3).newNumber, 3);
    EXPECT_EQ(controller(1).diff().document().row(3).kind, gitkit::DiffLine::Kind::addition);
}

/// How often a colour is found in what a row shows.
int pixels(DiffView& view, const DiffSectionView& section, int row, const QColor& color)
{
    const QImage image = view.viewport()->grab(section.rowRect(row).translated(section.pos())).toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == color ? 1 : 0;
    }
    return count;
}

TEST_F(DiffViewTest, MarksWhatChangedAndWhatCannotBeSeen)
{
    show({contentOf(std::string(diffHeader) + "@@ -1,4 +1,4 @@\n-keep(old);\n+keep(fresh);\n+end \n ctx \n+plain\n")});
    const Theme& theme = Theme::current();
    EXPECT_GT(pixels(view, section(), 1, theme.removedWords), 50);
    EXPECT_GT(pixels(view, section(), 2, theme.addedWords), 50);
    EXPECT_GT(pixels(view, section(), 3, theme.removedWords), 10); // a blank at its end
    EXPECT_EQ(pixels(view, section(), 4, theme.removedWords), 0);  // which is nobody's change here
    EXPECT_EQ(pixels(view, section(), 5, theme.addedWords), 0);
    EXPECT_GT(pixels(view, section(), 5, theme.addedLine), 1000);
}

TEST_F(DiffViewTest, FollowsTheCodeFontsSize)
{
    show({contentOf(longDiff(30))});
    const int before = section().places().metrics().lineHeight;
    Settings::shared().set(settings::codeFontSize, 24);
    EXPECT_GE(section().places().metrics().lineHeight, 40);
    EXPECT_EQ(section().height(), section().heightFor(view.viewport()->width()));
    Settings::shared().set(settings::codeFontSize, 12);
    EXPECT_EQ(section().places().metrics().lineHeight, before);

    // Ctrl and the wheel change it, also by parts of a notch, and without Ctrl scroll.
    const auto turn = [this](int angle, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event({50, 50}, view.mapToGlobal(QPointF(50, 50)), {}, {0, angle}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    };
    const auto size = [] { return Settings::shared().value(settings::codeFontSize); };
    for (const int angle : {60, 60, -120, -120})
        turn(angle, Qt::ControlModifier);
    EXPECT_EQ(size(), 11);
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    turn(-120, {});
    EXPECT_EQ(size(), 11);
    EXPECT_GT(view.verticalScrollBar()->value(), 0);
    Settings::shared().set(settings::codeFontSize, 12);
}

TEST_F(DiffViewTest, CtrlHomeAndEndGoToTheEndsOfAllDiffs)
{
    show({contentOf(longDiff(30)), contentOf(longDiff(30), Use::unstage, u"Staged"_s)});
    section().setFocus();
    press(Qt::Key_End, Qt::ControlModifier);
    EXPECT_TRUE(section(1).hasFocus());
    EXPECT_EQ(controller(1).currentRow(), controller(1).diff().document().rowCount() - 1);
    EXPECT_EQ(view.verticalScrollBar()->value(), view.verticalScrollBar()->maximum());
    QKeyEvent home(QEvent::KeyPress, Qt::Key_Home, Qt::ControlModifier);
    QApplication::sendEvent(&section(1), &home);
    EXPECT_TRUE(section(0).hasFocus());
    EXPECT_EQ(controller().currentRow(), 0);
    EXPECT_EQ(view.verticalScrollBar()->value(), 0);
    press(Qt::Key_End, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(section(0).hasFocus()) << "a selection stays in its diff";
    EXPECT_EQ(controller().selectedChanges().size(), 3U);
}

TEST_F(DiffViewTest, TabsAreAsWideAsTheFileSaysElseAsTheSettingsDo)
{
    DiffContent told = contentOf(twoHunks, DiffContent::Use::read, u"Staged"_s);
    told.diff.tabWidth = 2;
    show({contentOf(twoHunks), told});
    const auto shown = [this](std::size_t index) { return controller(index).diff().document().shown(3).shown; };
    EXPECT_EQ(shown(0), u"        B"_s);
    EXPECT_EQ(shown(1), u"  B"_s);
    controller().setCurrentRow(8);
    Settings::shared().set(settings::tabWidth, 3);
    EXPECT_EQ(shown(0), u"   B"_s);
    EXPECT_EQ(controller().diff().document().longestLine(), 4) << "no longer what it was with wider tabs";
    EXPECT_EQ(controller().currentRow(), 8);
    EXPECT_EQ(shown(1), u"  B"_s);
    Settings::shared().set(settings::tabWidth, 8);
}

TEST_F(DiffViewTest, TheScrollBarShowsWhereChangesAreAndGoesThere)
{
    std::string text = std::string(diffHeader) + "@@ -1,400 +1,400 @@\n";
    for (int i = 0; i < 400; ++i)
        text += i == 100 ? "-gone\n" : i == 300 ? "+come\n" : " context\n";
    show({contentOf(text)});
    QScrollBar& bar = *view.verticalScrollBar();
    const auto heightOf = [&](int row) {
        return section().rowRect(row).center().y() * bar.height() / section().height();
    };
    const auto at = [&](int x, int y) { return bar.grab().toImage().pixelColor(x, y); };
    const Theme& theme = Theme::current();
    EXPECT_EQ(at(3, heightOf(101)), theme.statusDeleted);
    EXPECT_EQ(at(bar.width() - 3, heightOf(301)), theme.statusAdded);
    EXPECT_NE(at(3, heightOf(301)), theme.statusAdded) << "added is at the right";
    EXPECT_NE(at(3, heightOf(200)), theme.statusDeleted);

    DiffFound found{{{200, 0, 3}}, -1};
    section().setFound(&found);
    EXPECT_EQ(at(3, heightOf(200)), theme.foundBorder);
    found.current = 0;
    section().setFound(&found);
    EXPECT_EQ(at(3, heightOf(200)), theme.text);
    section().setFound(nullptr);
    EXPECT_NE(at(3, heightOf(200)), theme.foundBorder);

    QTest::mouseClick(&bar, Qt::LeftButton, {}, {4, heightOf(301) + 2});
    const int y = section().rowRect(301).top() + section().y();
    EXPECT_TRUE(y > DiffSectionBar::barHeight() && y < view.viewport()->height()) << y;
}

TEST_F(DiffViewTest, TheFunctionsNameStaysAtTheTop)
{
    std::string text = std::string(diffHeader) + "@@ -10,60 +10,60 @@ int outer()\n-a\n+b\n";
    for (int i = 0; i < 30; ++i)
        text += "     inside();\n";
    text += " }\n \n-int old(int a)\n+int inner(int a)\n {\n";
    for (int i = 0; i < 30; ++i)
        text += "     more();\n";
    text += "@@ -200,3 +200,3 @@\n-x\n+y\n" + repeatedContext(40);
    DiffContent content = contentOf(text);
    content.path = "a.cpp";
    show({content});
    auto* const name = section().findChild<FunctionBar*>();
    const auto shownAt = [&](int row) {
        view.verticalScrollBar()->setValue(section().rowRect(row).top() - DiffSectionBar::barHeight());
        return name->isVisible() ? name->accessibleName() : QString();
    };
    EXPECT_EQ(shownAt(0), QString()) << "its own line is in sight";
    EXPECT_EQ(shownAt(5), u"Function int outer()"_s);
    EXPECT_EQ(shownAt(45), u"Function int inner(int a)"_s) << "as it is now, not as it was";
    QTest::mouseClick(name, Qt::LeftButton);
    EXPECT_GE(section().rowRect(36).top() + section().y(), DiffSectionBar::barHeight())
        << "a click shows where it begins";
    const int header = controller().diff().document().hunks()[1].first;
    view.verticalScrollBar()->setValue(section().rowRect(header).top() - DiffSectionBar::barHeight() - 10);
    EXPECT_EQ(name->geometry().bottom() + 1, section().rowRect(header).top()) << "the next header pushes it away";
    EXPECT_EQ(shownAt(header + 5), QString()) << "git knows no function there";

    // What is gone to stands below it.
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    controller().setCurrentRow(12);
    press(Qt::Key_Up);
    EXPECT_GE(section().rowRect(11).top(), name->geometry().bottom());
}

TEST(DiffOutline, KnowsWhatBeginsAFunction)
{
    for (const char* line :
         {"int main(int argc)", "static void f(", "    pub(crate) fn go() {", "  def each", "class A {",
          "export default function List() {", "async def f():", "  public class B extends C {"})
        EXPECT_TRUE(beginsFunction(line)) << line;
    for (const char* line : {"", "}", "    call(1);", "call(1);", "return f(x)", "if (x) {", "  other(x) {", "public:",
                             "// class x", "#include <a>", "classes(1, 2),", "for (;;) {", "using a::b;", "fun"})
        EXPECT_FALSE(beginsFunction(line)) << line;
}

TEST_F(DiffViewTest, TellsWhereMovedLinesCameFromAndWent)
{
    DiffContent content =
        contentOf(std::string(diffHeader) + "@@ -5,4 +5,4 @@\n-one\n-two\n-three\n a\n+one\n+two\n+three\n+four\n");
    content.diff.moved = {{1, 5, 3}};
    show({content});
    const Theme& theme = Theme::current();
    EXPECT_GT(pixels(view, section(), 2, theme.moved), 20);
    EXPECT_GT(pixels(view, section(), 6, theme.moved), 20);
    EXPECT_EQ(pixels(view, section(), 8, theme.moved), 0);
    hover(inGutter(6));
    EXPECT_TRUE(section().toolTip().contains(u"Moved from line 6"_s)) << section().toolTip().toStdString();
    hover(inGutter(2));
    EXPECT_TRUE(section().toolTip().contains(u"Moved to line 7"_s)) << section().toolTip().toStdString();
    hover(inGutter(8));
    EXPECT_EQ(section().toolTip(), QString());
    QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(&section());
    EXPECT_TRUE(read->text(QAccessible::Value).contains(u"\n+one (Moved from line 5)\n"_s));
    EXPECT_TRUE(read->text(QAccessible::Value).endsWith(u"\n+three (Moved from line 7)\n+four"_s));

    controller().setCurrentRow(6);
    QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&section(), &event);
    const QPointer<QMenu> menu(qobject_cast<QMenu*>(QApplication::activePopupWidget()));
    ASSERT_TRUE(menu);
    const QList<QAction*> actions = menu->actions();
    const auto title = [](const QAction* action) { return action->text().remove(u'&'); };
    const auto offered = std::ranges::find(actions, u"Moved from line 6"_s, title);
    ASSERT_NE(offered, actions.end());
    (*offered)->trigger();
    menu->close();
    EXPECT_EQ(controller().currentRow(), 2);
}

TEST_F(DiffViewTest, WrapsLongLinesAtTheWidthOfTheView)
{
    const std::string words =
        "alpha beta gamma delta epsilon zeta eta theta iota kappa lambda mu nu xi omicron pi rho sigma";
    show({contentOf(std::string(diffHeader) + "@@ -1,3 +1,3 @@\n first\n-" + words + "\n+" + words + " tau\n last\n")});
    ASSERT_GT(view.horizontalScrollBar()->maximum(), 0);
    const int line = section().places().metrics().lineHeight;
    view.setWraps(true);
    EXPECT_EQ(view.horizontalScrollBar()->maximum(), 0);
    EXPECT_EQ(section().rowRect(1).height(), line);
    EXPECT_EQ(section().rowRect(2).height(), 2 * line);
    EXPECT_EQ(section().rowRect(4).top(), section().rowRect(3).top() + 2 * line);

    // The pointer finds the characters of the continuation line, and what is copied is one line.
    const QRect row = section().rowRect(2);
    const QPoint inSecond(inCode(2, 3).x(), row.top() + line + line / 2);
    const std::vector<qsizetype> points =
        controller().diff().document().wrapPoints(2, section().places().metrics().wrapColumns);
    ASSERT_EQ(points.size(), 1U);
    EXPECT_EQ(words[static_cast<std::size_t>(points[0]) - 1], ' ') << "broken behind a word";
    drag(QPoint(inCode(2, 0).x(), row.top() + line / 2), inSecond);
    section().copy();
    EXPECT_EQ(copied().toStdString(), words.substr(0, static_cast<std::size_t>(points[0]) + 3));
    EXPECT_EQ(section().places().lineOf(2, points[0]).top(), row.top() + line);

    // Narrower, it takes more lines; side by side both sides of a line are as high as the higher one.
    view.resize(400, 300);
    QApplication::processEvents();
    EXPECT_GE(section().rowRect(2).height(), 3 * line);
    EXPECT_EQ(section().height(), section().heightFor(view.viewport()->width()));
    view.setLayout(DiffLayout::sideBySide);
    EXPECT_EQ(section().rowRect(2).height(), section().rowRect(3).height());
    EXPECT_GE(section().rowRect(3).height(), 5 * line);
    view.setWraps(false);
    EXPECT_EQ(section().rowRect(3).height(), line);
}

TEST_F(DiffViewTest, KeepsWhatIsLookedAtWhenItWrapsAnew)
{
    std::string text = std::string(diffHeader) + "@@ -1,200 +1,200 @@\n";
    for (int i = 0; i < 200; ++i)
        text += " " + std::to_string(i) + std::string(150, 'x') + "\n";
    show({contentOf(text)});
    view.setWraps(true);
    view.verticalScrollBar()->setValue(section().rowRect(101).top() - DiffSectionBar::barHeight());
    const auto inSight = [this] { return section().rowRect(101).top() + section().y() - DiffSectionBar::barHeight(); };
    ASSERT_EQ(inSight(), 0);
    view.resize(420, 300);
    QApplication::processEvents();
    EXPECT_EQ(inSight(), 0);
    view.setWraps(false);
    EXPECT_EQ(inSight(), 0);
    Settings::shared().set(settings::codeFontSize, 18);
    EXPECT_EQ(inSight(), 0);
    Settings::shared().set(settings::codeFontSize, 12);
    EXPECT_EQ(inSight(), 0);
}

TEST_F(DiffViewTest, DrawsOnlyTheLinesInSightOfAnEndlessWrappedLine)
{
    std::string text = std::string(diffHeader) + "@@ -1 +1 @@\n-x\n+";
    for (int i = 0; i < 1 << 18; ++i)
        text += "word ";
    show({contentOf(text + "\n")});
    view.setWraps(true);
    QElapsedTimer clock;
    clock.start();
    for (int step = 0; step < 20; ++step) {
        view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum() / 20 * step);
        view.grab();
    }
    EXPECT_LT(clock.elapsed(), 8000) << "shaped whole it takes minutes";
}

TEST(LineWrap, BreaksBetweenCharactersAndAfterBlanks)
{
    const auto wrapped = [](const QString& text, int columns) {
        QStringList lines;
        qsizetype begin = 0;
        for (const qsizetype point : wrapPoints(text, columns)) {
            lines << text.sliced(begin, point - begin);
            begin = point;
        }
        return lines << text.sliced(begin);
    };
    EXPECT_EQ(wrapped(u"one two three"_s, 8), (QStringList{u"one two "_s, u"three"_s}));
    EXPECT_EQ(wrapped(u"a abcdefghij"_s, 6), (QStringList{u"a abcd"_s, u"efghij"_s})) << "no blank is near";
    EXPECT_EQ(wrapped(u"日本日本"_s, 5), (QStringList{u"日本"_s, u"日本"_s}));
    EXPECT_EQ(wrapped(u"🙂🙂e\u0301e"_s, 2), (QStringList{u"🙂"_s, u"🙂"_s, u"e\u0301e"_s}));
    EXPECT_EQ(wrapped(u"abcd"_s, 4), QStringList{u"abcd"_s});
    EXPECT_FALSE(mayNeedWrapping("abcd", 8, 4));
    EXPECT_TRUE(mayNeedWrapping("\ta", 4, 4));
}

TEST_F(DiffViewTest, ShapesOnlyWhatIsInSightOfAnEndlessLine)
{
    // Shaped whole, a line like this takes minutes and gigabytes under the sanitizers.
    std::string text = std::string(diffHeader) + "@@ -1 +1 @@\n-x\n+";
    for (int i = 0; i < 1 << 20; ++i)
        text += "word\t\xE6\x97\xA5 ";
    show({contentOf(text + "\n")});
    for (const DiffLayout layout : {DiffLayout::unified, DiffLayout::sideBySide}) {
        view.setLayout(layout);
        view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->maximum() / 2);
        click(inCode(2, 3));
        for (int step = 0; step < 20; ++step) {
            view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->value() + 500);
            view.grab();
        }
    }
    view.setLayout(DiffLayout::unified);
    const ShownLine& line = controller().diff().document().shown(2);
    EXPECT_LE(line.shown.size(), 4 * ShownLine::mostShown);
    EXPECT_GT(line.notShown, 0);
    section().selectAll();
    section().copy();
    EXPECT_EQ(copied().size(), 2 + qsizetype{7} * (1 << 20)); // copied it is whole
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/settings/Settings.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/diff/CheckeredPicture.h"
#include "app/ui/diff/CutButton.h"
#include "app/ui/diff/DiffFinder.h"
#include "app/ui/diff/DiffOptionsBar.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/FindBar.h"
#include "app/ui/diff/ImagePane.h"
#include "app/ui/diff/PictureComparison.h"
#include "app/ui/diff/WorkingDiffPane.h"
#include "app/ui/widgets/IconButton.h"
#include "tests/app/EventWait.h"
#include "tests/app/ShownWidgets.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TestRepository.h"

#include <QApplication>
#include <QBuffer>
#include <QElapsedTimer>
#include <QImageReader>
#include <QImageWriter>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QShortcut>
#include <QSlider>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using test::named;

std::string lines(int from, int to)
{
    std::string text;
    for (int line = from; line < to; ++line)
        text += "line " + std::to_string(line) + "\n";
    return text;
}

std::string picture(int width, int height, const char* format = "PNG", Qt::GlobalColor color = Qt::blue)
{
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    QBuffer buffer;
    QImageWriter writer(&buffer, format);
    if (std::string_view(format) == "JPEG")
        writer.setTransformation(QImageIOHandler::TransformationRotate90);
    writer.write(image);
    return buffer.data().toStdString();
}

/// Returns the button behind the last row of a diff; null where none is shown.
CutButton* cutButton(DiffSectionView& section)
{
    auto* const button = section.findChild<CutButton*>();
    return button->isVisible() ? button : nullptr;
}

class DiffPaneTest : public testing::Test {
protected:
    DiffPaneTest()
    {
        auto* const column = new QVBoxLayout(&window);
        column->addWidget(&other);
        column->addWidget(&pane, 1);
        QObject::connect(&shortcut, &QShortcut::activated, &window, [this] { ++searches; });
        window.resize(760, 420);
        window.show();
        window.activateWindow();
    }
    ~DiffPaneTest() override
    {
        pane.setParent(nullptr);
        other.setParent(nullptr);
        Settings::shared().set(settings::diffSideBySide, false);
        Settings::shared().set(settings::diffIgnoresWhiteSpace, false);
        Settings::shared().set(settings::pictureMode, u"beside"_s);
    }

    void settle()
    {
        worker.finishAll();
        QApplication::processEvents();
        worker.finishAll();
    }
    void refresh()
    {
        store.snapshot().refresh(RefreshScope::status);
        settle();
    }
    void select(const std::string& path)
    {
        refresh();
        store.window().selectPaths(std::set<std::string>{path});
        settle();
        if (!pane.view()->sections().empty())
            section().setFocus();
    }
    DiffSectionView& section(std::size_t index = 0) { return *pane.view()->sections()[index]; }
    DiffController& controller() { return section().controller(); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {})
    {
        QTest::keyClick(window.focusWidget(), key, modifiers);
    }
    void click(const QString& name) { named<IconButton>(pane, name)->click(); }
    void type(const QString& text)
    {
        QTest::keyClicks(field(), text);
        const auto& finder = *pane.findChild<DiffFinder*>();
        EXPECT_TRUE(test::waitUntil([&] { return !finder.isSearching(); }));
    }
    QLineEdit* field() { return named<QLineEdit>(pane, u"Find in Diff"_s); }
    QString matches() { return named<QLabel>(pane, u"Matches"_s)->text(); }
    bool isFinding() { return field()->isVisible(); }
    /// All that is said in the pane, diffs included.
    QString told()
    {
        QStringList texts;
        for (const DiffSectionView* each : pane.view()->sections())
            texts << each->controller().diff().notes().above;
        for (const QLabel* label : pane.findChildren<QLabel*>()) {
            if (label->isVisible())
                texts << label->text();
        }
        return texts.join(u'\n');
    }
    bool tells(const QString& text) { return told().contains(text); }
    CheckeredPicture* shownPicture(const QString& side)
    {
        return section().inset() ? named<CheckeredPicture>(*section().inset(), side) : nullptr;
    }
    QSize drawn(const QString& side) { return shownPicture(side)->size() - QSize(2, 2); }

    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    WorkingDiffPane pane{store};
    QLineEdit other;
    QWidget window;
    QShortcut shortcut{QKeySequence::Find, &window};
    int searches = 0; ///< of the window's own
};

TEST_F(DiffPaneTest, FindsInAllSectionsAndGoesAround)
{
    repo.write("a", lines(0, 60)).commit("one");
    repo.write("a", "Needle\n" + lines(0, 60)).git({"add", "a"});
    repo.write("a", "Needle\n" + lines(0, 60) + "two needles, one NEEDLE\n" + std::string(400, '.') + "needle\n");
    select("a");
    press(Qt::Key_F, Qt::ControlModifier);
    ASSERT_TRUE(isFinding());
    EXPECT_EQ(searches, 0);
    type(u"needle"_s);
    EXPECT_EQ(matches(), u"1 of 4"_s);
    press(Qt::Key_Return);
    press(Qt::Key_F3);
    EXPECT_EQ(matches(), u"3 of 4"_s);
    EXPECT_GT(pane.view()->horizontalScrollBar()->value(), 0);
    press(Qt::Key_Return);
    EXPECT_EQ(matches(), u"4 of 4"_s);
    EXPECT_EQ(pane.view()->horizontalScrollBar()->value(), 0);
    EXPECT_FALSE(tells(u"From the top"_s));
    press(Qt::Key_F3);
    EXPECT_EQ(matches(), u"1 of 4"_s);
    EXPECT_TRUE(tells(u"From the top"_s));
    press(Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_TRUE(tells(u"From the end"_s));

    click(u"Match Case"_s);
    EXPECT_TRUE(matches().endsWith(u"of 2"_s)) << matches().toStdString();
    // Behind a capital letter there are fewer; what was found stays tinted in the same place.
    field()->clear();
    type(u"NEEDLE!"_s);
    EXPECT_EQ(matches(), u"No matches"_s);

    press(Qt::Key_Escape);
    EXPECT_FALSE(isFinding());
    EXPECT_TRUE(section().hasFocus());
    other.setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_FALSE(isFinding());
    EXPECT_EQ(searches, 1);
}

TEST_F(DiffPaneTest, StaysAtItsMatchWhileTheDiffChanges)
{
    repo.write("a", lines(0, 100)).write("b", "b\n").commit("one");
    repo.write("a", lines(0, 50) + "x here\nx there\n" + lines(50, 100)).write("b", "x\n");
    select("a");
    controller().setCurrentRow(4);
    QTest::mouseDClick(&section(), Qt::LeftButton, {},
                       {section().places().metrics().codeLeft + 2, section().rowRect(4).center().y()});
    press(Qt::Key_F, Qt::ControlModifier);
    EXPECT_EQ(field()->text(), u"x"_s);
    EXPECT_EQ(matches(), u"1 of 2"_s);
    press(Qt::Key_Return);
    EXPECT_EQ(matches(), u"2 of 2"_s);

    const int scrolled = pane.view()->verticalScrollBar()->value();
    repo.write("a", "x first\n" + lines(0, 50) + "x here\nx there\n" + lines(50, 100) + "x last\n");
    refresh();
    EXPECT_TRUE(matches().endsWith(u"of 4"_s)) << matches().toStdString();
    EXPECT_EQ(pane.view()->verticalScrollBar()->value(), scrolled);
    click(u"Whole File"_s);
    EXPECT_TRUE(matches().endsWith(u"of 4"_s)) << matches().toStdString();
    select("b");
    EXPECT_EQ(matches(), u"1 match"_s);

    other.setFocus();
    store.window().selectPaths(std::set<std::string>{});
    EXPECT_FALSE(isFinding());
    EXPECT_TRUE(other.hasFocus());
}

TEST_F(DiffPaneTest, SearchesLongDiffsBetweenEvents)
{
    repo.write("a", "a\n").commit("one");
    repo.write("a", std::string(1'000'000, 'y') + " needle\n" + lines(0, 4900));
    select("a");
    press(Qt::Key_F, Qt::ControlModifier);
    type(u"y"_s);
    EXPECT_EQ(matches(), u"1 of 100,000+"_s);
    field()->clear();
    QElapsedTimer clock;
    clock.start();
    type(u"line 48"_s);
    EXPECT_TRUE(matches().endsWith(u"of 111"_s)) << matches().toStdString();
    RecordProperty("milliseconds", std::to_string(clock.elapsed()));
}

TEST_F(DiffPaneTest, ShowsPicturesBeforeAndAfter)
{
    repo.write("p.png", picture(16, 16)).write("gone.png", picture(800, 400)).commit("one");
    repo.write("p.png", picture(32, 16, "PNG", Qt::red)).write("new.jpg", picture(60, 40, "JPEG")).remove("gone.png");
    select("p.png");
    EXPECT_TRUE(tells(u"16 × 16 · "_s)) << told().toStdString();
    EXPECT_TRUE(tells(u"Resized from 16 × 16 to 32 × 16, "_s));
    EXPECT_EQ(drawn(u"Before"_s), QSize(32, 32)); // by the same whole factor
    EXPECT_EQ(drawn(u"After"_s), QSize(64, 32));
    EXPECT_TRUE(shownPicture(u"After"_s)->accessibleDescription().startsWith(u"32 × 16 · "_s));
    const QImage image = shownPicture(u"After"_s)->grab().toImage();
    EXPECT_EQ(image.pixelColor(image.rect().center()), QColor(Qt::red));

    // It stays as it is while the file does.
    const QWidget* const shown = section().inset();
    refresh();
    EXPECT_EQ(section().inset(), shown);

    select("new.jpg");
    EXPECT_TRUE(tells(u"40 × 60 · "_s)) << told().toStdString(); // turned as the camera says
    EXPECT_EQ(drawn(u"Added"_s), QSize(40, 60));
    select("gone.png");
    EXPECT_LE(drawn(u"Deleted"_s).width(), pane.width());
    EXPECT_LE(section().height(), pane.view()->viewport()->height());
}

TEST_F(DiffPaneTest, ShowsPicturesOverEachOther)
{
    repo.write("p.png", picture(60, 40)).write("t", "a\n").commit("one");
    repo.write("p.png", picture(60, 40, "PNG", Qt::red)).write("t", "b\n");
    select("p.png");
    EXPECT_FALSE(named<IconButton>(pane, u"Wrap Lines"_s)->isVisible()) << "a picture has no lines";
    named<QPushButton>(pane, u"Swipe"_s)->click();
    auto* const both = named<PictureComparison>(pane, u"Compared Pictures"_s);
    ASSERT_TRUE(both->isVisible());
    EXPECT_FALSE(shownPicture(u"After"_s)->isVisible());
    const auto colors = [&] {
        const QImage image = both->grab().toImage();
        return std::pair(image.pixelColor(12, 20), image.pixelColor(50, 20));
    };
    EXPECT_EQ(colors(), std::pair(QColor(Qt::blue), QColor(Qt::red))) << "the old one is at the left of the line";
    auto* const slider = named<QSlider>(pane, u"Place of the Line"_s);
    ASSERT_TRUE(slider->isVisible());
    slider->setFocus();
    press(Qt::Key_Home);
    EXPECT_EQ(colors(), std::pair(QColor(Qt::blue), QColor(Qt::blue)));
    QTest::mouseClick(both, Qt::LeftButton, {}, {2, 20});
    EXPECT_EQ(colors().first, QColor(Qt::red));

    named<QPushButton>(pane, u"Onion Skin"_s)->click();
    slider->setValue(50);
    const QColor mixed = colors().first;
    EXPECT_GT(mixed.red(), 60);
    EXPECT_GT(mixed.blue(), 60);

    // Another picture is shown the same way, and text has its options.
    select("t");
    EXPECT_TRUE(named<IconButton>(pane, u"Wrap Lines"_s)->isVisible());
    select("p.png");
    EXPECT_TRUE(named<PictureComparison>(*section().inset(), u"Compared Pictures"_s)->isVisible());
    named<QPushButton>(*section().inset(), u"Beside"_s)->click();
    EXPECT_TRUE(shownPicture(u"After"_s)->isVisible());
    EXPECT_EQ(drawn(u"After"_s), QSize(60, 40));
}

TEST_F(DiffPaneTest, RefusesPicturesThatWouldTakeTheMemory)
{
    // 40,000 pixels wide and high, as its header says.
    std::string bomb = picture(16, 16);
    bomb.replace(16, 8, std::string("\0\0\x9C\x40\0\0\x9C\x40", 8));
    quint32 sum = 0xFFFFFFFF;
    for (std::size_t at = 12; at < 29; ++at) {
        sum ^= static_cast<unsigned char>(bomb[at]);
        for (int bit = 0; bit < 8; ++bit)
            sum = sum & 1U ? sum >> 1U ^ 0xEDB88320U : sum >> 1U;
    }
    for (std::size_t at = 0; at < 4; ++at)
        bomb[29 + at] = static_cast<char>(~sum >> (24 - 8 * at) & 0xFFU);
    repo.write("a", "a").commit("one");
    repo.write("bomb.png", bomb)
        .write("broken.png", picture(9, 9).substr(0, 40))
        .write("large.png", std::string(33 << 20, '\0'));
    select("bomb.png");
    EXPECT_TRUE(tells(u"too many pixels"_s)) << told().toStdString();
    for (const char* name : {"bomb.png", "broken.png"}) {
        select(name);
        EXPECT_TRUE(tells(u"This picture"_s)) << told().toStdString();
        EXPECT_TRUE(tells(u" bytes"_s)) << told().toStdString();
        EXPECT_FALSE(shownPicture(u"Added"_s));
    }
    select("large.png");
    EXPECT_TRUE(tells(u"Pictures of more than 32 MB are not shown."_s)) << told().toStdString();
    EXPECT_TRUE(tells(u"33.0 MB"_s));
}

TEST_F(DiffPaneTest, ShowsDrawingsAboveTheirText)
{
    if (!QImageReader::supportedImageFormats().contains("svg"))
        GTEST_SKIP() << "Qt's plugin for SVG is not installed";
    const std::string start = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>\n";
    repo.write("d.svg", start + "<rect width='9' height='9'/>\n</svg>\n")
        .write("e.svg", start + "</svg>\n")
        .commit("one");
    repo.write("d.svg", start + "<rect width='19' height='9'/>\n</svg>\n");
    repo.write("e.svg", start + "<image href='/dev/zero'/>\n</svg>\n");
    select("d.svg");
    EXPECT_GT(controller().diff().document().rowCount(), 3);
    ASSERT_TRUE(section().inset());
    EXPECT_EQ(drawn(u"After"_s), QSize(40, 30));
    EXPECT_GE(section().rowRect(0).top(), section().inset()->geometry().bottom());
    EXPECT_TRUE(named<QPushButton>(pane, u"Stage Hunk"_s)->isEnabled());
    select("e.svg"); // would read a device
    EXPECT_TRUE(shownPicture(u"Before"_s));
    EXPECT_FALSE(shownPicture(u"After"_s));
    EXPECT_GT(controller().diff().document().rowCount(), 3);
}

TEST_F(DiffPaneTest, SaysWhatBinaryFilesAre)
{
    const auto wide = [](const char* text, int width, bool isBig) {
        std::string bytes;
        for (; *text; ++text)
            bytes += isBig ? std::string(static_cast<std::size_t>(width - 1), '\0') + *text
                           : *text + std::string(static_cast<std::size_t>(width - 1), '\0');
        return bytes;
    };
    const char* const text = "id,name\r\n1,first\r\n2,second\r\n";
    struct Case {
        const char* name;
        std::string bytes;
        QString said;
    };
    const std::vector<Case> cases{
        {"a.csv", "\xFF\xFE" + wide(text, 2, false), u"“*.csv text working-tree-encoding=UTF-16LE-BOM”"_s},
        {"b.csv", "\xFE\xFF" + wide(text, 2, true), u"“*.csv text working-tree-encoding=UTF-16”"_s},
        {"c", wide(text, 2, false), u"“c text working-tree-encoding=UTF-16LE”"_s},
        {"d.txt", std::string("\xFF\xFE\0\0", 4) + wide(text, 4, false), u"encoded in UTF-32, "_s},
        {"e.txt", wide(text, 4, true), u"working-tree-encoding=UTF-32BE”"_s},
        {"f.bin", std::string(2048, '\0'), u"New binary file, 2.0 KB."_s},
        {"g.bin", std::string("\x01\0\x10\0\x02\0\x7f\0\x12\0\x08\0", 12), u"New binary file, 12 bytes."_s},
    };
    repo.write("h.bin", std::string(1 << 20, '\0')).commit("one");
    repo.write("h.bin", std::string(3 << 19, '\0'));
    for (const Case& each : cases)
        repo.write(each.name, each.bytes);
    for (const Case& each : cases) {
        select(each.name);
        EXPECT_TRUE(tells(each.said)) << each.name << ": " << told().toStdString();
    }
    select("h.bin");
    EXPECT_TRUE(tells(u"Binary file, 1.0 MB → 1.5 MB."_s)) << told().toStdString();
}

TEST_F(DiffPaneTest, OptionsAreReachedByTabAlsoWhereNoLineIsLeft)
{
    repo.write("a", "a\nb\n").commit("one");
    repo.write("a", "  a\nb\n");
    select("a");
    QStringList reached;
    for (int step = 0; step < 20; ++step) {
        reached << window.focusWidget()->accessibleName();
        press(Qt::Key_Tab);
    }
    for (const QString& name :
         {u"Side by Side"_s, u"Ignore White Space"_s, u"Whole File"_s, u"Wrap Lines"_s, u"Find"_s})
        EXPECT_TRUE(reached.contains(name)) << name.toStdString() << " in " << reached.join(u", "_s).toStdString();
    click(u"Ignore White Space"_s);
    settle();
    ASSERT_EQ(controller().diff().document().rowCount(), 0);
    EXPECT_TRUE(named<IconButton>(pane, u"Ignore White Space"_s)->isVisible()) << "or there would be no way back";
}

TEST_F(DiffPaneTest, OptionsHoldForEveryPaneAndAreRemembered)
{
    repo.write("a", "a\nb\n" + lines(0, 40) + "c\n").write("b", "b\n").commit("one");
    repo.write("a", "  a\nB\n" + lines(0, 40) + "C\n");
    select("a");
    WorkingDiffPane second(store);
    settle();
    click(u"Side by Side"_s);
    EXPECT_TRUE(Settings::shared().value(settings::diffSideBySide));
    EXPECT_EQ(second.view()->diffLayout(), DiffLayout::sideBySide);
    click(u"Wrap Lines"_s);
    EXPECT_TRUE(second.view()->sections().front()->controller().diff().wraps());
    click(u"Wrap Lines"_s);
    EXPECT_FALSE(controller().diff().wraps());

    click(u"Ignore White Space"_s);
    settle();
    for (const DiffPane* each : {static_cast<DiffPane*>(&pane), static_cast<DiffPane*>(&second)}) {
        EXPECT_EQ(each->view()->sections().front()->controller().diff().content().diff.additions, 2);
        EXPECT_TRUE(named<IconButton>(*each, u"Ignore White Space"_s)->isChecked());
    }
    for (const QString& name : {u"Stage Hunk"_s, u"Stage All Hunks"_s}) {
        const auto* const button = named<QPushButton>(pane, name);
        ASSERT_TRUE(button && button->isVisible()) << name.toStdString();
        EXPECT_FALSE(button->isEnabled());
        EXPECT_TRUE(button->toolTip().contains(u"white space"_s)) << button->toolTip().toStdString();
    }
    press(Qt::Key_S);
    settle();
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "");
    click(u"Ignore White Space"_s);
    settle();
    EXPECT_EQ(controller().diff().content().diff.additions, 3);
    EXPECT_TRUE(named<QPushButton>(pane, u"Stage Hunk"_s)->isEnabled());
}

TEST_F(DiffPaneTest, ButtonsOfTheBarNeverStandUnderTheOptions)
{
    repo.write("a", "a\nb\n" + lines(0, 40) + "c\n").commit("one");
    repo.write("a", "  a\nB\n" + lines(0, 40) + "C\n");
    select("a");
    const auto* const options = pane.findChild<DiffOptionsBar*>();
    const auto* const stage = named<QPushButton>(pane, u"Stage All Hunks"_s);
    for (const int width : {420, 760, 1200}) {
        window.resize(width, 420);
        QApplication::processEvents();
        ASSERT_TRUE(options->isVisible() && stage->isVisible());
        const QRect bar(options->mapTo(&pane, QPoint()), options->size());
        const QRect button(stage->mapTo(&pane, QPoint()), stage->size());
        EXPECT_LE(button.right(), bar.left()) << width;
        EXPECT_LE(bar.right(), pane.view()->viewport()->geometry().right()) << width;
    }
    store.window().selectPaths(std::set<std::string>{});
    settle();
    EXPECT_FALSE(options->isVisible());
}

TEST_F(DiffPaneTest, ACutDiffIsReadOnFromWhereItWasCut)
{
    repo.write("long", lines(0, 7000)).write("short", "1\n");
    select("long");
    settle();
    ASSERT_TRUE(cutButton(section()));
    EXPECT_EQ(cutButton(section())->text(), u"Show All 7,001 Lines"_s);
    EXPECT_GT(cutButton(section())->y(), section().rowRect(4999).bottom());
    EXPECT_LE(cutButton(section())->geometry().bottom(), section().height());
    controller().setCurrentRow(4990);
    cutButton(section())->setFocus(Qt::TabFocusReason);
    const int scrolled = pane.view()->verticalScrollBar()->value();
    EXPECT_LE(section().y() + cutButton(section())->geometry().bottom(), pane.view()->viewport()->height());

    QTest::keyClick(cutButton(section()), Qt::Key_Space);
    settle();
    EXPECT_FALSE(cutButton(section()));
    EXPECT_EQ(controller().diff().document().rowCount(), 7001);
    EXPECT_EQ(pane.view()->verticalScrollBar()->value(), scrolled);
    EXPECT_TRUE(section().hasFocus());
    EXPECT_EQ(controller().currentRow(), 4990);
    EXPECT_FALSE(controller().canTakeParts());
    EXPECT_TRUE(controller().diff().plainText().startsWith(u"A diff this long cannot be staged by lines"_s));

    // It stays whole while the file changes, and begins anew after another file.
    repo.write("long", lines(0, 7100));
    refresh();
    EXPECT_EQ(controller().diff().document().rowCount(), 7101);
    select("short");
    EXPECT_TRUE(controller().canTakeParts());
    select("long");
    EXPECT_EQ(controller().diff().document().rowCount(), 5000);
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
// The commit list and what stands around it: places kept, selection both ways, what is drawn and what is told.

#include "GitKit/CommitGraph.h"
#include "app/settings/Settings.h"
#include "app/ui/history/GraphCell.h"
#include "app/ui/history/HistoryHeader.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/history/HistoryView.h"
#include "app/ui/history/RefBadges.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/history/WorkingCopyRow.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/Given.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <QAccessible>
#include <QApplication>
#include <QDateTime>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScrollBar>
#include <QtTest/QTest>

#include <gtest/gtest.h>

#include <ctime>
#include <optional>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

constexpr int rowHeight = 28;

std::string hashOf(int number)
{
    std::string digits = std::to_string(number);
    return std::string(40 - digits.size(), '0') + digits;
}

/// Whether two colours are the same but for the rounding of antialiasing.
bool isAlike(const QColor& one, const QColor& other)
{
    const auto near = [](int a, int b) { return std::abs(a - b) <= 8; };
    return near(one.red(), other.red()) && near(one.green(), other.green()) && near(one.blue(), other.blue());
}

/// Rows of one straight line of commits, named by their numbers.
std::vector<HistoryRow> rowsFrom(int first, int count)
{
    std::vector<HistoryRow> rows;
    for (int number = first; number < first + count; ++number) {
        gitkit::Commit commit{hashOf(number), {hashOf(number + 1)}, "Ada", "ada@example.org", gitkit::Date{}, "", {}};
        commit.subject = "Subject " + std::to_string(number);
        rows.push_back({commit, {0, {0}, {}, {0}}});
    }
    return rows;
}

void press(QWidget* widget, int key, const QString& text = {})
{
    for (const auto type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, key, Qt::NoModifier, text);
        QApplication::sendEvent(widget, &event);
    }
}

void type(QWidget* widget, const QString& text)
{
    for (const QChar character : text)
        press(widget, character.toUpper().unicode(), character);
}

void click(QWidget* widget, QPointF place)
{
    for (const auto kind : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent event(kind, place, widget->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(widget, &event);
    }
}

class HistoryListTest : public testing::Test {
protected:
    HistoryListTest()
    {
        given(store.history().history, rowsFrom(100, 200));
        list.resize(700, 10 * rowHeight);
        list.show();
        QApplication::processEvents();
    }

    int selectedRow() const
    {
        const auto rows = list.selectionModel()->selectedIndexes();
        return rows.isEmpty() ? -1 : rows.first().row();
    }

    int topRow() const { return list.verticalScrollBar()->value() / rowHeight; }
    QImage picture() { return list.viewport()->grab().toImage(); }

    ManualWorker worker;
    RepositoryStore store{"/nowhere", worker};
    HistoryList list{store};
};

} // namespace

TEST_F(HistoryListTest, ALongerPageIsAppendedAndMovesNothing)
{
    store.window().selectCommit(hashOf(150));
    list.verticalScrollBar()->setValue(45 * rowHeight + 5);
    int resets = 0;
    std::vector<std::pair<int, int>> inserts;
    QObject::connect(list.model(), &QAbstractItemModel::modelReset, &list, [&] { ++resets; });
    QObject::connect(list.model(), &QAbstractItemModel::rowsInserted, &list,
                     [&](const QModelIndex&, int first, int last) { inserts.emplace_back(first, last); });

    given(store.history().history, rowsFrom(100, 300));
    QApplication::processEvents();
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(inserts, (std::vector{std::pair(200, 299)}));

    auto labelled = rowsFrom(100, 300);
    labelled[60].commit.refs = {{gitkit::RefLabel::Kind::tag, "v1", false}};
    given(store.history().history, labelled);
    QApplication::processEvents();
    EXPECT_EQ(resets, 0);
    EXPECT_EQ(inserts.size(), 1U);
    EXPECT_EQ(list.verticalScrollBar()->value(), 45 * rowHeight + 5);
    EXPECT_EQ(selectedRow(), 50);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(150));
}

TEST_F(HistoryListTest, AnotherPageKeepsThePlaceAndTheSelection)
{
    store.window().selectCommit(hashOf(103));
    list.verticalScrollBar()->setValue(50 * rowHeight + 9);

    given(store.history().history, rowsFrom(97, 200)); // three new commits on top
    QApplication::processEvents();
    EXPECT_EQ(list.verticalScrollBar()->value(), 53 * rowHeight + 9);
    EXPECT_EQ(selectedRow(), 6);

    auto without = rowsFrom(97, 200);
    without.erase(without.begin() + 40, without.begin() + 55); // the commits at the top of the screen are gone
    given(store.history().history, without);
    QApplication::processEvents();
    EXPECT_EQ(topRow(), 38) << "the first commit that is still there keeps its height";

    list.verticalScrollBar()->setValue(0);
    given(store.history().history, rowsFrom(90, 200));
    QApplication::processEvents();
    EXPECT_EQ(list.verticalScrollBar()->value(), 0) << "at the top, what is new shows";
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(103));

    given(store.history().history, rowsFrom(500, 20));
    EXPECT_EQ(selectedRow(), -1);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(103)) << "dropping it is the store's to do";
}

TEST_F(HistoryListTest, TheSelectionIsTheStoresBothWays)
{
    list.setFocus();
    EXPECT_EQ(store.window().selectedCommit.value(), std::nullopt) << "nothing is selected by itself";
    press(&list, Qt::Key_Down);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(100));
    press(&list, Qt::Key_Down);
    EXPECT_EQ(selectedRow(), 1);

    click(list.viewport(), QPointF(300, 4 * rowHeight + 3));
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(104));
    press(&list, Qt::Key_End);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(299));

    store.window().selectCommit(hashOf(180));
    EXPECT_TRUE(list.viewport()->rect().contains(list.visualRect(list.model()->index(80, 0))));
    type(&list, u"Subject 12"_s);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(120)) << "typing finds a subject";
    store.window().selectCommit(std::nullopt);
    EXPECT_EQ(selectedRow(), -1);
}

TEST_F(HistoryListTest, TheEndOfThePageAsksForMoreOnceUntilItHasGrown)
{
    int asked = 0;
    QObject::connect(&list, &HistoryList::moreWanted, &list, [&] {
        ++asked;
        given(store.history().hasMoreHistory, false);
    });
    given(store.history().hasMoreHistory, true);
    QApplication::processEvents();
    EXPECT_EQ(asked, 0) << "at the top nobody has asked for the end";
    list.verticalScrollBar()->setValue(150 * rowHeight);
    list.verticalScrollBar()->setValue(list.verticalScrollBar()->maximum());
    QApplication::processEvents();
    EXPECT_EQ(asked, 1);

    given(store.history().history, rowsFrom(100, 205));
    given(store.history().hasMoreHistory, true);
    QApplication::processEvents();
    EXPECT_EQ(asked, 2) << "still near the end";
}

TEST_F(HistoryListTest, ARowsAccessibleNameHoldsSubjectAuthorAndShortHash)
{
    auto rows = rowsFrom(100, 2);
    rows[0].commit.subject = "Fix \xff bytes";
    rows[0].commit.hash = "abcdef0123456789abcdef0123456789abcdef01";
    given(store.history().history, rows);
    QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&list);
    ASSERT_EQ(accessible->childCount(), 2);
    EXPECT_EQ(accessible->text(QAccessible::Name), u"History"_s);
    EXPECT_EQ(accessible->child(0)->text(QAccessible::Name), u"Fix \uFFFD bytes, Ada, abcdef0"_s);
}

TEST_F(HistoryListTest, RowsOfAnEarlierSearchStandBack)
{
    const QImage before = picture();
    given(store.history().isOutdated, true);
    EXPECT_NE(picture(), before);
    given(store.history().isOutdated, false);
    EXPECT_EQ(picture(), before);
}

TEST_F(HistoryListTest, EndReadsAllAndEscapeStops)
{
    TestRepository repo;
    std::string stream;
    for (int number = 0; number < 900; ++number)
        stream += "commit refs/heads/main\ncommitter A <a@example.org> " + std::to_string(1'700'000'000 + number) +
                  " +0000\ndata 1\nx\n";
    repo.read({"fast-import", "--quiet"}, stream);
    ManualWorker jobs;
    RepositoryStore large(repo.path(), jobs);
    HistoryList rows(large);
    rows.resize(700, 10 * rowHeight);
    rows.show();
    large.snapshot().refresh(RefreshScope::full);
    jobs.finishAll();
    EXPECT_EQ(rows.model()->rowCount(), 500);

    press(&rows, Qt::Key_End);
    EXPECT_TRUE(large.history().isReadingToEnd.value());
    press(&rows, Qt::Key_Escape);
    EXPECT_FALSE(large.history().isReadingToEnd.value());
    press(&rows, Qt::Key_End);
    jobs.finishAll();
    EXPECT_EQ(rows.model()->rowCount(), 900);
    EXPECT_EQ(rows.currentIndex().row(), 899);
    EXPECT_EQ(large.window().selectedCommit.value(), large.history().history.value().hashAt(899));
    press(&rows, Qt::Key_Home);
    press(&rows, Qt::Key_End);
    EXPECT_EQ(rows.currentIndex().row(), 899) << "now it is the last one at once";
}

TEST_F(HistoryListTest, AFilteredListHidesTheGraph)
{
    const QColor blue = Theme::current().lane(0);
    const QPoint onLine(12, 3 * rowHeight + 4);
    EXPECT_EQ(picture().pixelColor(onLine), blue);
    given(store.history().isHistoryFiltered, true);
    const QImage filtered = picture();
    for (int y = 0; y < filtered.height(); ++y)
        ASSERT_NE(filtered.pixelColor(12, y), blue);
}

TEST_F(HistoryListTest, IsMirroredWhereTextIsReadFromRightToLeft)
{
    list.setLayoutDirection(Qt::RightToLeft);
    QApplication::processEvents();
    const QImage image = picture();
    EXPECT_TRUE(isAlike(image.pixelColor(image.width() - 12, 3 * rowHeight + 4), Theme::current().lane(0)));
    EXPECT_FALSE(isAlike(image.pixelColor(12, 3 * rowHeight + 4), Theme::current().lane(0)));
    const auto* const date = list.findChild<HistoryHeader*>()->findChild<QAbstractButton*>();
    EXPECT_LT(date->geometry().right(), list.width() / 2);
}

TEST(GraphCellTest, DrawsLinesCurvesAndDotsWhereTheyBelong)
{
    const Theme& theme = Theme::light();
    const auto draw = [&theme](const gitkit::GraphRow& row, int laneCount = 12) {
        QImage image(200, rowHeight, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        const GraphLanes lanes(laneCount, 176);
        GraphCell{row, lanes}.paint(painter, {0, 0}, rowHeight, theme);
        return image;
    };
    const auto isInk = [](const QImage& image, int x, int y) { return image.pixelColor(x, y) != QColor(Qt::white); };

    const QImage straight = draw({0, {0}, {9}, {0}});
    for (int y = 0; y < rowHeight; ++y) {
        ASSERT_EQ(straight.pixelColor(11, y), theme.lanes[0]);
        ASSERT_EQ(straight.pixelColor(12, y), theme.lanes[0]);
        ASSERT_EQ(straight.pixelColor(9 * 14 + 12, y), theme.lanes[1]) << "the colours repeat after eight";
    }
    EXPECT_FALSE(isInk(straight, 10, 2));
    EXPECT_FALSE(isInk(straight, 13, 2));
    EXPECT_TRUE(isInk(straight, 8, 14)) << "the dot's radius is 4";
    EXPECT_FALSE(isInk(straight, 7, 14));

    const QImage merge = draw({0, {}, {}, {0, 1}});
    EXPECT_TRUE(isInk(merge, 7, 14)) << "a merge's dot has a radius of 4.5";
    EXPECT_TRUE(isAlike(merge.pixelColor(26, rowHeight - 1), theme.lanes[1]))
        << "and the second parent's curve ends at its column";
    EXPECT_TRUE(isAlike(merge.pixelColor(25, rowHeight - 1), theme.lanes[1]));
    EXPECT_FALSE(isInk(merge, 26, 16)) << "having left from the dot";
    EXPECT_FALSE(isInk(merge, 12, 4));

    // Of 41 lanes 19 have room; the others share the edge.
    const GraphLanes many(41, 176);
    EXPECT_EQ(many.pitch(), 8);
    EXPECT_EQ(many.edge(), 164);
    for (const int lane : {18, 19, 20, 40}) {
        const QImage row = draw({lane, {lane}, {}, {lane}}, 41);
        EXPECT_TRUE(isInk(row, lane < 19 ? 156 : 164, rowHeight / 2)) << "no row is without its dot: " << lane;
        EXPECT_EQ(isInk(row, 172, rowHeight / 2), lane >= 19) << "one beyond the edge says so";
        EXPECT_FALSE(isInk(row, 176, rowHeight / 2)) << "and nothing reaches out of the column";
    }
    const QImage passing = draw({0, {0}, {20, 30}, {0, 25}}, 41);
    int ink = 0;
    for (int y = 0; y < rowHeight; ++y)
        ink += isInk(passing, 163, y) || isInk(passing, 164, y) ? 1 : 0;
    EXPECT_GE(ink, rowHeight / 3) << "lanes beyond the edge go on as one line";
    EXPECT_TRUE(isInk(passing, 172, 23)) << "and a line that leaves says so";

    EXPECT_EQ(GraphLanes::widthFor(1), 22);
    EXPECT_EQ(GraphLanes::widthFor(12), 176);
    EXPECT_EQ(GraphLanes::widthFor(20), 176) << "more lanes stand closer together first";
    EXPECT_EQ(GraphLanes::widthFor(40), 334);
}

TEST(GraphCellTest, LightsTheLineOfACommitFromItsBeginningToItsEnd)
{
    // The line in lane 1 begins as the second parent of row 0, has its commits in rows 1 and 3, and ends in row 4.
    const std::vector<gitkit::GraphRow> rows{{0, {}, {}, {0, 1}}, {1, {1}, {0}, {1}},   {0, {0}, {1}, {0}},
                                             {1, {1}, {0}, {1}},  {0, {0, 1}, {}, {0}}, {0, {0}, {}, {0}}};
    const auto lit = litLine(rows, 3);
    std::vector<std::pair<bool, bool>> parts;
    for (const GraphCell::Lit& one : lit) {
        EXPECT_EQ(one.lane, one.above || one.below ? 1 : -1);
        parts.emplace_back(one.above, one.below);
    }
    EXPECT_EQ(parts, (std::vector<std::pair<bool, bool>>{
                         {false, true}, {true, true}, {true, true}, {true, true}, {true, false}, {false, false}}));
}

TEST(HistoryColumnsTest, ANarrowListDropsTheHashThenTheAuthorThenTheDate)
{
    const HistoryColumns::Widths widths{160, 90, 60};
    const auto shown = [&](double width) {
        const HistoryColumns columns = HistoryColumns::fitting(width, 22, widths);
        EXPECT_GE(columns.subjectRight - columns.subjectLeft, std::min(width - 50, 220.0)) << width;
        std::string text;
        for (const HistoryColumns::Edge& edge : columns.edges())
            text += "gadh"[static_cast<int>(edge.column)];
        return text;
    };
    EXPECT_EQ(shown(900), "gadh");
    EXPECT_EQ(shown(600), "gad");
    EXPECT_EQ(shown(500), "gd");
    EXPECT_EQ(shown(300), "g");
    const HistoryColumns wide = HistoryColumns::fitting(900, 22, widths);
    EXPECT_EQ(wide.widthAt(HistoryColumn::author, wide.edges()[1].x - 10), 170) << "dragged to the left";
    EXPECT_EQ(wide.widthAt(HistoryColumn::graph, wide.edges()[0].x + 10), 32);
}

TEST_F(HistoryListTest, TheTitlesResizeAndHideColumnsAndChooseTheDates)
{
    Settings& settings = Settings::shared();
    auto* const header = list.findChild<HistoryHeader*>();
    const QImage before = picture();
    const auto* const date = header->findChild<QAbstractButton*>();
    const int edge = date->geometry().right() + 10; // between date and hash
    const auto send = [&](QEvent::Type type, double x) {
        QMouseEvent event(type, {x, 5.0}, header->mapToGlobal(QPointF{x, 5.0}), Qt::LeftButton, Qt::LeftButton, {});
        QApplication::sendEvent(header, &event);
    };
    send(QEvent::MouseButtonPress, edge);
    send(QEvent::MouseMove, edge - 40);
    send(QEvent::MouseButtonRelease, edge - 40);
    EXPECT_GT(settings.value(settings::historyHashWidth), 60);
    EXPECT_NE(picture(), before);
    send(QEvent::MouseButtonDblClick, edge - 40);
    EXPECT_EQ(settings.value(settings::historyHashWidth), 0);
    EXPECT_EQ(picture(), before);

    settings.set(settings::historyShowsDate, false);
    EXPECT_FALSE(date->isVisible());
    settings.set(settings::historyShowsDate, true);
    click(header->findChild<QAbstractButton*>(), {3, 3});
    EXPECT_TRUE(settings.value(settings::historyAbsoluteDates));
    settings.set(settings::historyAbsoluteDates, false);
    EXPECT_EQ(picture(), before);
}

TEST_F(HistoryListTest, ChangesStandAboveTheNewestCommit)
{
    gitkit::RepoStatus status;
    status.files = std::vector<gitkit::FileChange>(2);
    auto* const row = list.findChild<WorkingCopyRow*>();
    EXPECT_TRUE(row->isVisible()) << "nothing jumps when changes come and go";
    given(store.snapshot().hasLoaded, true);
    EXPECT_EQ(row->accessibleName(), u"Working Copy · No changes"_s);
    given(store.snapshot().status, status);
    EXPECT_EQ(row->accessibleName(), u"Working Copy · 2 changes"_s);
    press(&list, Qt::Key_Down);
    press(&list, Qt::Key_Up);
    EXPECT_TRUE(row->hasFocus() || list.focusProxy() == row || QApplication::focusWidget() == row);
    store.window().select(SidebarItem::history());
    press(row, Qt::Key_Return);
    EXPECT_EQ(store.window().selection.value(), SidebarItem::workingCopy());
    given(store.history().isHistoryFiltered, true);
    EXPECT_FALSE(row->isVisible()) << "it is no search result";
}

TEST_F(HistoryListTest, RowsJoinWithoutASeamAtFractionalScales)
{
    for (const double scale : {1.0, 1.1, 1.25, 1.5, 1.75}) {
        QImage image((QSizeF(list.viewport()->size()) * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        list.viewport()->render(&image);
        const int x = static_cast<int>(12 * scale);
        for (int y = 0; y < image.height() - 1; ++y)
            ASSERT_TRUE(isAlike(image.pixelColor(x, y), Theme::current().lane(0))) << scale << " at " << y;
    }
}

TEST(RefBadgesTest, WhatDoesNotFitCollapsesAndIsNamedInFull)
{
    using Kind = gitkit::RefLabel::Kind;
    std::vector<gitkit::RefLabel> labels{{Kind::localBranch, std::string(300, 'm'), true}};
    for (int i = 0; i < 50; ++i)
        labels.push_back({Kind::tag, "v" + std::to_string(i), false});
    const RefBadges badges(labels, 260, RefBadges::Fonts::current());
    EXPECT_LE(badges.width(), 260);
    EXPECT_EQ(badges.namesAt(2, labels), QString(300, u'm')) << "however much of it is shown";
    const QString collapsed = badges.namesAt(badges.width() - 1, labels);
    EXPECT_TRUE(collapsed.endsWith(u" more"_s)) << collapsed.toStdString();
    EXPECT_TRUE(collapsed.contains(u"v20\n"_s));
    EXPECT_EQ(RefBadges({}, 260, RefBadges::Fonts::current()).width(), 0);

    labels = {{Kind::remoteBranch, "origin/topic"},
              {Kind::localBranch, "topic"},
              {Kind::tag, "v1"},
              {Kind::remoteBranch, "origin/main", false, true},
              {Kind::localBranch, "main", false, true},
              {Kind::localBranch, "work", true}};
    const RefBadges few(labels, 100, RefBadges::Fonts::current());
    EXPECT_EQ(few.namesAt(2, labels), u"work"_s);
    std::string order;
    for (const gitkit::RefLabel& label : few.collapsedAt(few.width() - 1, labels))
        order += label.name + ' ';
    EXPECT_EQ(order, "main origin/main v1 topic origin/topic ");
    EXPECT_TRUE(few.collapsedAt(2, labels).empty());
}

TEST(RelativeDateTest, IsToldByTheLocalCalendar)
{
    auto zone = std::make_optional<ScopedVariable>("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    tzset();
    const auto at = [](const char* text) {
        const QDateTime local = QDateTime::fromString(QString::fromLatin1(text), u"yyyy-MM-dd hh:mm:ss"_s);
        return gitkit::Date(std::chrono::seconds(local.toSecsSinceEpoch()));
    };
    const auto told = [&at](const char* date, const char* now) {
        return RelativeDate::between(at(date), at(now)).text(QLocale::c()).toStdString();
    };
    EXPECT_EQ(told("2026-06-10 12:00:00", "2026-06-10 12:00:59"), "just now");
    EXPECT_EQ(told("2026-06-10 12:00:00", "2026-06-10 12:59:59"), "59 min ago");
    EXPECT_EQ(told("2026-06-10 00:10:00", "2026-06-10 23:50:00"), "23 h ago");
    EXPECT_EQ(told("2026-06-09 23:30:00", "2026-06-10 01:30:00"), "2 h ago") << "one sitting, across midnight";
    EXPECT_EQ(told("2026-06-09 12:00:00", "2026-06-10 08:00:00"), "yesterday");
    EXPECT_EQ(told("2026-06-08 23:59:00", "2026-06-10 00:01:00"), "2 days ago");
    EXPECT_EQ(told("2026-06-03 12:00:00", "2026-06-10 12:00:00"), "last week");
    EXPECT_EQ(told("2026-05-27 12:00:00", "2026-06-10 12:00:00"), "27 May 2026");

    // The night in which the clocks are put forward has 23 hours, the one in which they are put back 25.
    EXPECT_EQ(told("2026-03-28 12:00:00", "2026-03-29 11:00:00"), "yesterday");
    EXPECT_EQ(told("2026-03-27 23:30:00", "2026-03-29 23:15:00"), "2 days ago");
    EXPECT_EQ(told("2026-10-25 00:30:00", "2026-10-25 23:45:00"), "24 h ago");

    // Clocks differ a little between machines; a date further ahead is told as it stands.
    EXPECT_EQ(told("2026-06-10 12:00:30", "2026-06-10 12:00:00"), "just now");
    EXPECT_EQ(told("2026-06-10 15:00:00", "2026-06-10 12:00:00"), "10 Jun 2026");
    EXPECT_EQ(RelativeDate::between(gitkit::Date{}, at("2026-06-10 12:00:00")), RelativeDate{});
    EXPECT_EQ(RelativeDate::between(gitkit::Date(std::chrono::seconds::max()), at("2026-06-10 12:00:00")),
              RelativeDate{});
    zone.reset();
    tzset();
}

class HistoryViewTest : public testing::Test {
protected:
    HistoryViewTest()
    {
        view.resize(900, 700);
        view.show();
    }

    bool shows(const QString& text) const
    {
        const auto labels = view.findChildren<QLabel*>();
        return std::ranges::any_of(labels,
                                   [&](const QLabel* label) { return label->isVisible() && label->text() == text; });
    }

    template <typename Widget>
    Widget* named(const QString& name) const
    {
        const auto widgets = view.findChildren<Widget*>();
        const auto found = std::ranges::find(widgets, name, &QWidget::accessibleName);
        return found == widgets.end() ? nullptr : *found;
    }

    ManualWorker worker;
    RepositoryStore store{"/nowhere", worker};
    HistoryView view{store};
};

TEST_F(HistoryViewTest, SaysWhyThereIsNothing)
{
    EXPECT_FALSE(shows(u"No Commits Yet"_s)) << "git has not answered yet";
    given(store.snapshot().hasLoaded, true);
    EXPECT_TRUE(shows(u"No Commits Yet"_s));
    given(store.snapshot().readProblem, u"fatal: not a git repository"_s);
    EXPECT_FALSE(shows(u"No Commits Yet"_s)) << "an unreadable repository is not an empty one";
    EXPECT_TRUE(shows(u"fatal: not a git repository"_s));

    given(store.snapshot().readProblem, QString());
    gitkit::RepoStatus status;
    status.oid = hashOf(1);
    given(store.snapshot().status, status);
    given(store.history().historyProblem, u"fatal: bad object"_s);
    EXPECT_TRUE(shows(u"The history could not be read"_s));
    EXPECT_TRUE(shows(u"fatal: bad object"_s));

    given(store.history().historyProblem, QString());
    given(store.history().historySearch, u"nonsense"_s);
    given(store.history().isHistoryFiltered, true);
    EXPECT_TRUE(shows(u"No Matching Commits"_s));
    const auto buttons = view.findChildren<QPushButton*>();
    const auto clear = std::ranges::find(buttons, u"Clear Search"_s, &QPushButton::text);
    ASSERT_NE(clear, buttons.end());
    ASSERT_TRUE((*clear)->isVisible());
    (*clear)->click();
    EXPECT_EQ(store.history().historySearch.value(), QString());
}

TEST_F(HistoryViewTest, CountsCommitsAndSearchesByKeyboard)
{
    gitkit::RepoStatus status;
    status.oid = hashOf(0);
    given(store.snapshot().status, status);
    given(store.snapshot().hasLoaded, true);
    given(store.history().history, rowsFrom(0, 1));
    EXPECT_TRUE(shows(u"1 commit"_s));
    given(store.history().history, rowsFrom(0, 500));
    given(store.history().hasMoreHistory, true);
    EXPECT_TRUE(shows(u"500+ commits"_s));
    auto* list = named<QListView>(u"History"_s);
    QMetaObject::invokeMethod(list, "moreWanted");
    EXPECT_FALSE(store.history().hasMoreHistory.value());
    EXPECT_TRUE(shows(u"500+ commits"_s)) << "while the longer page is being read";
    given(store.history().history, rowsFrom(0, 700));
    EXPECT_TRUE(shows(u"700 commits"_s));

    auto* search = named<QLineEdit>(u"History Search"_s);
    view.focusSearch();
    type(search, u"fix"_s);
    EXPECT_EQ(store.history().historySearch.value(), u"fix"_s);
    store.window().selectCommit(hashOf(5));
    press(search, Qt::Key_Return);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(6));
    QTest::keyClick(search, Qt::Key_Return, Qt::ShiftModifier);
    EXPECT_EQ(store.window().selectedCommit.value(), hashOf(5));
    EXPECT_EQ(view.focusWidget(), search) << "Return goes on to the next match";
    given(store.history().searchProblem, u"git cannot read this"_s);
    EXPECT_TRUE(shows(u"git cannot read this"_s));
    press(search, Qt::Key_Escape);
    EXPECT_EQ(store.history().historySearch.value(), QString());
    EXPECT_FALSE(shows(u"git cannot read this"_s));
    EXPECT_EQ(view.focusWidget(), search);
    press(search, Qt::Key_Escape);
    EXPECT_EQ(view.focusWidget(), list);

    worker.finishAll(); // there is no such folder
    EXPECT_TRUE(shows(u"The history could not be read"_s));
}

} // namespace plovik

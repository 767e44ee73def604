// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/SplitPane.h"

#include <QApplication>
#include <QMouseEvent>

#include <gtest/gtest.h>

namespace plovik {
namespace {

constexpr Setting<double> testSize{"testSplitSize", 150};

/// A split of its own size, with no window around it.
struct Split {
    QWidget* first = new QWidget;
    QWidget* second = new QWidget;
    SplitPane pane;

    explicit Split(SplitPane::Sized sized = SplitPane::Sized::second, QSize size = {300, 500})
        : pane(testSize, Qt::Vertical, sized, 100, 200, first, second)
    {
        pane.resize(size);
        pane.show();
    }

    void send(QEvent::Type type, QPointF global) const
    {
        QWidget* const divider = pane.handle(1);
        QMouseEvent event(type, divider->mapFromGlobal(global), global, Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(divider, &event);
    }

    QPointF dividerCenter() const
    {
        const QWidget* const divider = pane.handle(1);
        return divider->mapToGlobal(QPointF(divider->rect().center()));
    }
};

class SplitPaneTest : public testing::Test {
protected:
    void SetUp() override { Settings::shared().set(testSize, testSize.fallback); }

    static double kept() { return Settings::shared().value(testSize); }
};

TEST_F(SplitPaneTest, ShowsAKeptSizeThatNoLongerFitsClampedAndKeepsIt)
{
    Settings::shared().set(testSize, 400);
    const Split split;
    EXPECT_EQ(split.pane.currentSize(), 300);
    EXPECT_EQ(split.second->height(), 300);
    EXPECT_EQ(split.first->height(), 199); // less the line
    EXPECT_EQ(kept(), 400);

    // Upwards would make it 350: what is written never leaves the limits.
    const QPointF start = split.dividerCenter();
    split.send(QEvent::MouseButtonPress, start);
    split.send(QEvent::MouseMove, start - QPointF(0, 50));
    EXPECT_EQ(kept(), 300);
}

TEST_F(SplitPaneTest, SqueezesTheOtherPaneWhereBothDoNotFit)
{
    EXPECT_EQ((SplitLimits{100, 200}.clamped(150, 250)), 100);
    const Split split(SplitPane::Sized::first, {300, 120});
    EXPECT_EQ(split.first->height(), 100);
    EXPECT_EQ(split.second->height(), 19);
}

TEST_F(SplitPaneTest, FollowsThePointerFromWhereTheDragBegan)
{
    const Split split;
    const QPointF start = split.dividerCenter();
    split.send(QEvent::MouseButtonPress, start);
    split.send(QEvent::MouseMove, start + QPointF(0, 0.4));
    EXPECT_EQ(kept(), 150);
    split.send(QEvent::MouseMove, start - QPointF(0, 30));
    EXPECT_EQ(kept(), 180);
    // Far beyond a limit and back to 40 above the start: no distance is lost at the limit.
    split.send(QEvent::MouseMove, start - QPointF(0, 900));
    EXPECT_EQ(kept(), 300);
    split.send(QEvent::MouseMove, start - QPointF(0, 40));
    EXPECT_EQ(kept(), 190);
    split.send(QEvent::MouseButtonRelease, start - QPointF(0, 40));
    split.send(QEvent::MouseMove, start);
    EXPECT_EQ(kept(), 190);
}

TEST_F(SplitPaneTest, MovesWithEverySplitOfItsKey)
{
    const Split one;
    const Split other(SplitPane::Sized::first);
    const QPointF start = one.dividerCenter();
    one.send(QEvent::MouseButtonPress, start);
    one.send(QEvent::MouseMove, start - QPointF(0, 25));
    EXPECT_EQ(one.second->height(), 175);
    EXPECT_EQ(other.first->height(), 175);
}

TEST_F(SplitPaneTest, GivesAllTheRoomToTheOtherPaneWhileTheSizedOneIsHidden)
{
    Split split;
    split.pane.setSizedVisible(false);
    EXPECT_EQ(split.first->height(), 500);
    EXPECT_EQ(split.pane.minimumSizeHint().height(), 200);
    split.pane.setSizedVisible(true);
    EXPECT_EQ(split.second->height(), 150);
}

TEST_F(SplitPaneTest, ReadsAnUnsetSizeAsItsFallback)
{
    Settings::shared().set(testSize, 0);
    EXPECT_EQ(Split().pane.currentSize(), 150);
}

} // namespace
} // namespace plovik

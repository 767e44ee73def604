// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"
#include "app/ui/diff/DiffOffers.h"
#include "app/ui/diff/DiffPointer.h"
#include "tests/app/DiffViewTest.h"

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using Use = DiffContent::Use;

class DiffControllerTest : public testing::Test {
protected:
    /// The titles of what is offered; in brackets what is refused.
    static QStringList titles(const std::vector<DiffOffer>& offers)
    {
        QStringList titles;
        for (const DiffOffer& offer : offers)
            titles << (offer.refusal.isEmpty() ? offer.title : u'(' + offer.title + u')');
        return titles;
    }

    DiffController controller;
};

TEST_F(DiffControllerTest, OffersWhatTheDiffAllows)
{
    controller.setContent(contentOf(twoHunks), DiffPlace::start);
    EXPECT_EQ(titles(hunkOffers(controller)), (QStringList{u"Stage Hunk"_s, u"Discard Hunk…"_s}));
    EXPECT_EQ(titles(barOffers(controller)), QStringList{u"Stage All Hunks"_s}); // files are discarded in their list
    controller.setCurrentRow(3);
    controller.toggleCurrent();
    EXPECT_EQ(titles(barOffers(controller)), (QStringList{u"Stage 1 Line"_s, u"Discard Lines…"_s}));
    EXPECT_EQ(actionTitle(DiffAction::Verb::stage, DiffAction::Part::lines, 20'000), u"Stage 20,000 Lines"_s);
    controller.selectAll();
    controller.setActionsAvailable(false);
    EXPECT_EQ(titles(menuOffers(controller)),
              (QStringList{u"(Stage 4 Lines)"_s, u"(Discard Lines…)"_s, u"(Stash Lines…)"_s, u"(Stage Hunk)"_s,
                           u"(Discard Hunk…)"_s, u"(Stash Hunk…)"_s}));

    controller.setActionsAvailable(true);
    controller.setContent(contentOf(twoHunks, Use::unstage), DiffPlace::kept);
    EXPECT_EQ(titles(menuOffers(controller)), (QStringList{u"Unstage 4 Lines"_s, u"Unstage Hunk"_s}));
    // What cannot be taken in parts has no buttons, unless it is an option in sight that takes them away.
    DiffContent cut = contentOf(twoHunks);
    cut.diff.isTruncated = true;
    controller.setContent(cut, DiffPlace::start);
    EXPECT_EQ(titles(hunkOffers(controller)) + titles(barOffers(controller)), QStringList());
    DiffContent ignoring = contentOf(twoHunks);
    ignoring.diff.whiteSpace = gitkit::WhiteSpace::ignored;
    controller.setContent(ignoring, DiffPlace::start);
    EXPECT_EQ(titles(hunkOffers(controller)), (QStringList{u"(Stage Hunk)"_s, u"(Discard Hunk…)"_s}));
}

TEST_F(DiffControllerTest, ItsGeometryFindsEveryRowAndCharacterAgain)
{
    controller.setContent(contentOf(twoHunks), DiffPlace::start);
    DiffGeometry geometry(controller.diff());
    for (const DiffLayout layout : {DiffLayout::unified, DiffLayout::sideBySide}) {
        controller.setLayout(layout);
        geometry.measure();
        geometry.setWidth(701);
        for (int row = 0; row < controller.diff().document().rowCount(); ++row)
            EXPECT_EQ(geometry.rowAt(geometry.rowRect(row).center()), row);
        EXPECT_EQ(geometry.rowsEnd(), geometry.rowRect(9).bottom() + 1);
        EXPECT_EQ(geometry.rowAt({350, geometry.rowsEnd()}), -1);
        EXPECT_EQ(geometry.rowNear({350, geometry.rowsEnd() + 99}), 9);
        const QRect cell = geometry.rowRect(3);
        const QPoint behindTab(cell.left() + geometry.xOf(3, 1) + 1, cell.center().y());
        EXPECT_EQ(geometry.positionAt(behindTab, geometry.sideAt(behindTab.x())).column, 1);
        DiffPointer(controller, geometry).selectWord(behindTab);
        EXPECT_EQ(controller.diff().textOf(controller.selection()), u"B"_s);
    }
}

} // namespace
} // namespace plovik

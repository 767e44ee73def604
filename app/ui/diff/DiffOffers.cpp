// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffOffers.h"

#include "app/ui/diff/DiffController.h"
#include "app/ui/window/OperationText.h"

#include <QCoreApplication>

#include <span>

namespace plovik {

namespace {

using ActionVerb = DiffAction::Verb;
using Part = DiffAction::Part;

QString refusalOf(const DiffController& controller)
{
    if (!controller.areActionsAvailable())
        return QCoreApplication::translate("Diff", "The changes are being read.");
    return controller.diff().notes().wholeOnly;
}

/// Returns whether buttons for hunks are shown, enabled or not. They stay in sight when ignored white space is what
/// disables them, because that can be changed right beside them.
bool showsHunkActions(const DiffController& controller)
{
    return controller.diff().notes().wholeOnly.isEmpty() ||
           controller.diff().content().diff.whiteSpace == gitkit::WhiteSpace::ignored;
}

constexpr ActionVerb buttonVerbs[] = {ActionVerb::stage, ActionVerb::unstage, ActionVerb::discard, ActionVerb::toFirst,
                                      ActionVerb::toSecond};
constexpr ActionVerb menuVerbs[] = {ActionVerb::stage, ActionVerb::unstage, ActionVerb::discard,
                                    ActionVerb::stash, ActionVerb::toFirst, ActionVerb::toSecond};

void append(std::vector<DiffOffer>& offers, const DiffController& controller, Part part, int count = 0,
            std::span<const ActionVerb> verbs = buttonVerbs)
{
    for (const ActionVerb verb : verbs) {
        if (controller.diff().content().allows(verb))
            offers.push_back(
                {verb, part, actionTitle(verb, part, count), actionName(verb, part), refusalOf(controller)});
    }
}

std::vector<DiffOffer> sideOffers(const DiffController& controller)
{
    const DiffContent& content = controller.diff().content();
    const QString refusal = controller.areActionsAvailable() ? QString() : refusalOf(controller);
    std::vector<DiffOffer> offers;
    for (const ActionVerb verb : {ActionVerb::useOurs, ActionVerb::useTheirs}) {
        const gitkit::ConflictSide side = *sideOf(verb);
        const bool isOurs = side == gitkit::ConflictSide::ours;
        const QString title = operationText::useSide(side, isOurs ? content.sides.ours : content.sides.theirs);
        offers.push_back({verb, Part::all, title, title, refusal});
    }
    return offers;
}

} // namespace

std::vector<DiffOffer> barOffers(const DiffController& controller)
{
    if (controller.diff().content().allows(ActionVerb::useOurs))
        return sideOffers(controller);
    std::vector<DiffOffer> offers;
    if (const auto count = static_cast<int>(controller.selectedChanges().size()); count > 0) {
        append(offers, controller, Part::lines, count);
    } else if (controller.diff().document().hunks().size() > 1 && showsHunkActions(controller)) {
        append(offers, controller, Part::all);
        // A whole file is discarded in the list of files, where it is plain what is lost.
        std::erase_if(offers, [](const DiffOffer& offer) { return offer.verb == ActionVerb::discard; });
    }
    return offers;
}

std::vector<DiffOffer> hunkOffers(const DiffController& controller)
{
    std::vector<DiffOffer> offers;
    if (showsHunkActions(controller) && !controller.diff().document().hunks().empty())
        append(offers, controller, Part::hunk);
    return offers;
}

std::vector<DiffOffer> menuOffers(const DiffController& controller)
{
    std::vector<DiffOffer> offers;
    if (const auto count = static_cast<int>(controller.selectedChanges().size()); count > 0)
        append(offers, controller, Part::lines, count, menuVerbs);
    if (controller.activeHunk() >= 0)
        append(offers, controller, Part::hunk, 0, menuVerbs);
    return offers;
}

} // namespace plovik

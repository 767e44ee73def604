// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAnchor.h"

#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"

#include <algorithm>
#include <utility>

namespace plovik {

DiffAnchor::DiffAnchor(const DiffController& controller, const DiffGeometry& geometry)
    : controller_(controller), geometry_(geometry)
{}

void DiffAnchor::hold(std::optional<int> row, const Sight& sight)
{
    const int held = row ? *row : rowInSight(sight);
    row_.reset();
    if (held >= 0)
        row_ = Row{controller_.diff().document().placeOf(held), geometry_.rowRect(held).top()};
}

int DiffAnchor::release()
{
    const std::optional<Row> held = std::exchange(row_, std::nullopt);
    return held ? geometry_.rowRect(controller_.diff().document().rowOf(held->place)).top() - held->y : 0;
}

void DiffAnchor::holdWholeFile(DiffPlace place, const Sight& sight)
{
    const ShownDiff& diff = controller_.diff();
    if (place == DiffPlace::start)
        line_.reset();
    else if (const int row = rowInSight(sight);
             row >= 0 && diff.showsWholeFile() && diff.document().gaps().showsLines())
    {
        if (const std::optional<int> number = diff.document().row(row).newNumber)
            line_ = Line{*number, geometry_.rowRect(row).top() - sight.top};
    }
}

std::optional<int> DiffAnchor::releaseWholeFile(const Sight& sight)
{
    const DiffDocument& document = controller_.diff().document();
    if (!document.gaps().areKnown())
        return std::nullopt;
    const std::optional<Line> held = std::exchange(line_, std::nullopt);
    if (!held || !controller_.diff().showsWholeFile())
        return std::nullopt;
    return geometry_.rowRect(document.rowOf({-1, held->number})).top() - held->y - sight.top;
}

bool DiffAnchor::isInSight(int row, const Sight& sight) const
{
    return sight.seen.adjusted(0, geometry_.barHeight(), 0, 0).intersects(geometry_.rowRect(row));
}

/// Returns -1 where the diff begins below the top of what is in sight: its own start stays in place then.
int DiffAnchor::rowInSight(const Sight& sight) const
{
    if (sight.top < 0 || controller_.diff().document().rowCount() == 0)
        return -1;
    if (const int current = controller_.currentRow(); current >= 0 && isInSight(current, sight))
        return current;
    const int line = geometry_.lineAt(sight.top + geometry_.barHeight());
    return controller_.diff().lines().nearestRow(line, controller_.keyboardSide());
}

int DiffAnchor::walkStart(int direction, const Sight& sight) const
{
    const int current = controller_.currentRow();
    if (current < 0 || isInSight(current, sight))
        return current;
    return std::max(0, rowInSight(sight)) - (direction > 0 ? 1 : 0);
}

} // namespace plovik

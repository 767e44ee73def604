// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

#include <vector>

class QPainter;

namespace plovik {

class DiffController;
class DiffDocument;
class DiffGeometry;

/// A small button in a hunk's header that shows lines which the diff leaves out. Value.
struct GapButton {
    enum class Shows { above, below, between, wholeFile };

    Shows shows = Shows::above;
    int row = -1; ///< the header that it stands in; -1 for no button
    QRect area;

    bool operator==(const GapButton&) const = default;
};

/// Returns the buttons of a row, from left to right; none for a row that is no header.
std::vector<GapButton> gapButtons(const DiffDocument& document, const DiffGeometry& geometry, int row);
/// Returns the button at a point, or one without a row.
GapButton gapButtonAt(const DiffDocument& document, const DiffGeometry& geometry, QPoint point);
/// Returns what the button does, for its tooltip; empty without a button.
QString gapButtonTitle(const DiffDocument& document, const GapButton& button);
void paintGapButton(QPainter& painter, const GapButton& button, bool isHovered);
void press(DiffController& controller, const GapButton& button);

} // namespace plovik

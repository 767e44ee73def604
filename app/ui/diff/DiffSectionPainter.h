// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/GapButtons.h"

#include <QStringList>

class QPainter;

namespace plovik {

class DiffButtons;
class DiffController;
class DiffGeometry;
class DiffRowPainter;
struct DiffCell;
struct DiffFound;

/// Draws the sentences and the rows of one diff with the buttons in its headers and the mark of the current line. Holds
/// references: made for one use. Main thread.
class DiffSectionPainter {
public:
    struct Looks {
        const DiffFound* found = nullptr; ///< what a search has found; null without one
        GapButton hovered;
        bool hasFocus = false;
    };

    DiffSectionPainter(const DiffController& controller, const DiffGeometry& geometry, const DiffButtons& hunkButtons,
                       Looks looks)
        : controller_(controller), geometry_(geometry), hunkButtons_(hunkButtons), looks_(looks)
    {}

    void paint(QPainter& painter, const QRect& exposed) const;

private:
    void paintNotes(QPainter& painter, const QStringList& notes, int top) const;
    void paintRows(QPainter& painter, const QRect& exposed) const;
    void paintLine(QPainter& painter, const DiffRowPainter& rows, int line) const;
    void paintHeaderButtons(QPainter& painter, int row) const;
    void paintCurrent(QPainter& painter) const;

    const DiffController& controller_;
    const DiffGeometry& geometry_;
    const DiffButtons& hunkButtons_;
    Looks looks_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionPainter.h"

#include "app/ui/diff/DiffButtons.h"
#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"
#include "app/ui/widgets/Theme.h"

#include <QPainter>

namespace plovik {

void DiffSectionPainter::paint(QPainter& painter, const QRect& exposed) const
{
    const DiffNotes& notes = controller_.diff().notes();
    painter.fillRect(exposed, Theme::current().content);
    paintNotes(painter, notes.above, geometry_.barHeight());
    paintRows(painter, exposed);
    paintNotes(painter, notes.below, geometry_.rowsEnd());
}

void DiffSectionPainter::paintNotes(QPainter& painter, const QStringList& notes, int top) const
{
    painter.setFont(Theme::font());
    painter.setPen(Theme::current().secondaryText);
    int y = top + DiffGeometry::noteGap;
    for (const QString& note : notes) {
        QRect taken;
        painter.drawText(DiffGeometry::noteRoom(y, geometry_.rowsArea().width()), Qt::TextWordWrap, note, &taken);
        y += taken.height() + DiffGeometry::noteGap;
    }
}

void DiffSectionPainter::paintRows(QPainter& painter, const QRect& exposed) const
{
    const QRect area = geometry_.rowsArea() & exposed;
    if (area.isEmpty() || controller_.diff().document().rowCount() == 0)
        return;
    const DiffRowPainter rows = geometry_.rowPainter(looks_.found, exposed);
    for (int line = geometry_.lineAt(area.top()); line <= geometry_.lineAt(area.bottom()); ++line)
        paintLine(painter, rows, line);
    paintCurrent(painter);
}

void DiffSectionPainter::paintLine(QPainter& painter, const DiffRowPainter& rows, int line) const
{
    const DiffCell first = geometry_.cellAt(line, DiffSide::before);
    rows.paint(painter, first, controller_.selection(), hunkButtons_.width());
    if (first.side != DiffSide::both) {
        const DiffCell second = geometry_.cellAt(line, DiffSide::after);
        rows.paint(painter, second, controller_.selection(), 0);
        painter.fillRect(second.area.left(), second.area.top(), 1, second.area.height(), Theme::current().separator);
    } else if (controller_.diff().document().row(first.row).kind == DiffDocument::Kind::hunk) {
        paintHeaderButtons(painter, first.row);
    }
}

void DiffSectionPainter::paintHeaderButtons(QPainter& painter, int row) const
{
    const DiffDocument& document = controller_.diff().document();
    for (const GapButton& button : gapButtons(document, geometry_, row))
        paintGapButton(painter, button, button == looks_.hovered);
    const int active = controller_.activeHunk();
    if (document.row(row).isRest() || active < 0 || document.row(row).hunk == active)
        return;
    // The buttons themselves stand in one header at a time; the other headers show pictures of them.
    const int own = geometry_.rowRect(document.hunks()[static_cast<std::size_t>(active)].first).top();
    hunkButtons_.paint(painter, geometry_.rowRect(row).top() - own);
}

void DiffSectionPainter::paintCurrent(QPainter& painter) const
{
    const int row = controller_.currentRow();
    if (row < 0 || !(looks_.hasFocus || controller_.wasWalked()))
        return;
    const int line = controller_.diff().lines().lineOf(row);
    const QRect own = geometry_.cellAt(line, controller_.currentSide()).area;
    const QColor& color = looks_.hasFocus ? Theme::current().accent : Theme::current().gutterText;
    painter.fillRect(own.left(), own.top(), 3, own.height(), color);
}

} // namespace plovik

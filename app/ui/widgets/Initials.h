// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRectF>
#include <QString>

#include <string_view>

class QPainter;

/// Small coloured circles with the initials of people, in place of their pictures. Main thread.
namespace plovik {

/// Returns the first letters of the first and the last word of a name, in capitals; "?" for a name without letters.
QString initialsOf(const QString& name);

/// Draws a circle with initials into a square. `who` chooses the colour, the same one for the same e-mail address.
void paintInitials(QPainter& painter, const QRectF& square, const QString& initials, std::string_view who);

} // namespace plovik

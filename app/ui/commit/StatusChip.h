// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QPainter;
class QRect;

/// What happened to a file, from git's status letter. Main thread.
namespace plovik {

/// Returns the side of the square, in pixels.
int statusChipSize();
/// Draws the letter in a tinted square.
void paintStatusChip(QPainter& painter, const QRect& chip, char code);
/// Returns the letter in words, for tooltips and assistive technology.
QString statusDescription(char code);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRectF>

class QPainter;

namespace plovik {

/// The line drawings of the settings and welcome windows, on a grid of 24 units, and the application's own sign.
enum class SettingsSymbol { gear, text, terminal, play, sparkles, folder, globe };

/// Draws a symbol in one colour, as large as the square `area`.
void paintSymbol(QPainter& painter, SettingsSymbol symbol, const QRectF& area, const QColor& color);

/// Draws the application's sign, as large as the square `area`.
void paintApplicationSign(QPainter& painter, const QRectF& area);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/// The font of code and diffs, and the width of tabs in it. Main thread.
namespace plovik::CodeFont {

inline constexpr double minSize = 8;
inline constexpr double maxSize = 32;
inline constexpr int minTabWidth = 1;
inline constexpr int maxTabWidth = 16;

/// Returns the family `name` where it is installed, else the desktop's fixed font. `size` is clamped to what can be
/// read; its points are as high as a pixel of an unscaled screen, so that 12 stand well beside the desktop's ordinary
/// text.
QFont font(const QString& name, double size);

/// Returns the font that the settings name.
QFont current();

/// Returns the size of that font: the one that the settings name, else one that stands well beside the desktop's ordinary
/// font, which is 12 beside all but large ones.
double size();
/// Makes it larger by so many points, or smaller.
void changeSize(double points);
/// Makes it larger by a point for each notch of a wheel, or smaller. Returns what `angle`, in the unit of wheels, has
/// left beyond whole notches.
int changeSizeByWheel(int angle);

/// Returns how many columns the settings put between two tab stops.
int tabWidth();

/// Returns the families of all installed fonts whose Latin letters are equally wide, sorted, each once. Slow: it may
/// load every installed font.
QStringList monospacedFamilies();

} // namespace plovik::CodeFont

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/// The font of code and diffs. Main thread.
namespace plovik::CodeFont {

inline constexpr double minSize = 8;
inline constexpr double maxSize = 32;

/// Returns the family `name` where it is installed, else the desktop's fixed font. `size` is clamped to what can be
/// read; its points are as high as a pixel of an unscaled screen, so that 12 stand well beside the desktop's ordinary
/// text.
QFont font(const QString& name, double size);

/// Returns the font that the settings name.
QFont current();

/// Returns the families of all installed fonts whose Latin letters are equally wide, sorted, each once. Slow: it may
/// load every installed font.
QStringList monospacedFamilies();

} // namespace plovik::CodeFont

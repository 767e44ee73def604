// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFont>
#include <QString>
#include <QStringList>

/// The font of code and diffs. Main thread.
namespace plovik::CodeFont {

inline constexpr double minSize = 8;
inline constexpr double maxSize = 32;

/// The family `name` at a fixed pitch where it is installed, else the desktop's fixed font. `size` is clamped to
/// what can be read; its points are as high as a pixel of an unscaled screen, so that 12 stand well beside the
/// desktop's ordinary text.
QFont font(const QString& name, double size);

/// The font that the settings name.
QFont current();

/// The families of all installed fonts of fixed pitch, sorted, each once.
QStringList monospacedFamilies();

} // namespace plovik::CodeFont

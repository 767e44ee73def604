// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

#include <filesystem>
#include <optional>

class QWidget;

namespace plovik::windowFrames {

inline constexpr QSize ordinarySize{1240, 780};

/// Writes a frame as "x y width height", and reads it. Reading returns nullopt for a text that is no rectangle of a
/// positive size.
QString text(const QRect& frame);
std::optional<QRect> frame(const QString& text);

/// Puts a new repository window where the repository's window was last, or beside the last used window, or in the
/// middle of the screen with the ordinary size. Its title bar is always on a screen.
void restore(QWidget& window, const std::filesystem::path& root);

/// Remembers where the window is, for its repository and as the last used one.
void remember(const QWidget& window, const std::filesystem::path& root);

} // namespace plovik::windowFrames

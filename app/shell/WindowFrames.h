// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QRect>
#include <QString>

#include <filesystem>
#include <optional>

class QWidget;

namespace plovik::windowFrames {

inline constexpr QSize ordinarySize{1240, 780};

/// Returns a frame as "x y width height", in device-independent pixels.
QString text(const QRect& frame);
/// Returns the frame that such a text describes, or nullopt when it is no rectangle of a positive size.
std::optional<QRect> frame(const QString& text);

/// Returns the frame as it fits into `available`, which is a screen without its panels.
QRect fitted(const QRect& frame, const QRect& available);

/// Places a new repository window where the repository's window was last, or beside the last used window, or in the
/// middle of the screen with the ordinary size. It always fits on its screen.
void restore(QWidget& window, const std::filesystem::path& root);

/// Remembers the frame of the window, for its repository and as the last used one.
void remember(const QWidget& window, const std::filesystem::path& root);

} // namespace plovik::windowFrames

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <string>
#include <string_view>

namespace plovik {

/// A picture that was read from a file's bytes. Value.
struct Picture {
    QImage image;    ///< turned upright, and no larger than a screen; null when it could not be read
    QSize pixels;    ///< the size in the file, which is larger than `image` if that was scaled down
    QString problem; ///< a sentence that says why there is no image

    bool isVector = false; ///< a drawing, whose size in pixels is only a suggestion

    bool operator==(const Picture&) const = default;
};

/// Reads a picture: the first image of several, or the largest one of an icon. The memory that this takes is bounded,
/// whatever size the file claims. Any thread; does not throw.
Picture readPicture(const std::string& bytes);

/// Returns whether files of this name are pictures that can be read here.
bool isPictureName(std::string_view path);
/// Returns whether files of this name are pictures that git takes for text.
bool isTextPictureName(std::string_view path);

} // namespace plovik

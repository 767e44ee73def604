// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QSize>
#include <QString>

#include <string>
#include <string_view>

namespace plovik {

/// One picture, read from a file's bytes. Value.
struct Picture {
    QImage image;    ///< upright, and no larger than a screen; null when it could not be read
    QSize pixels;    ///< of the file; larger than `image` where that was scaled down
    QString problem; ///< why there is no image

    bool isVector = false; ///< its size in pixels is only what it suggests

    bool operator==(const Picture&) const = default;
};

/// Reads a picture: the first image of several, the largest of an icon. Takes no more memory than a screen's picture
/// asks for, whatever the file claims to be. Any thread.
Picture readPicture(const std::string& bytes);

/// Whether files of this name are pictures that can be read here.
bool isPictureName(std::string_view path);
/// Whether files of this name are pictures that git sees as text.
bool isTextPictureName(std::string_view path);

} // namespace plovik

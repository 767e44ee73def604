// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Functions that change the body of a commit message as git's own conventions have it. Pure; any thread.
namespace plovik::messageFormat {

/// Bodies are wrapped at this column.
inline constexpr int bodyColumns = 72;

/// Returns whether a line is a trailer, like "Signed-off-by: Ada <ada@example.org>".
bool isTrailer(QStringView line);

/// Returns the body with a trailer at its end: in the last paragraph if that consists of trailers, otherwise in one of
/// its own. A trailer that is there already is not added again.
QString withTrailer(const QString& body, const QString& trailer);

/// Returns the body with lines that are longer than `columns` broken between words. Paragraphs are filled anew, items of
/// lists go on under their text, and quotes, indented lines, trailers and comments stay as they are.
QString wrapped(const QString& body, int columns = bodyColumns);

} // namespace plovik::messageFormat

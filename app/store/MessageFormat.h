// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

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

/// Returns the body with those line breaks taken out that its writer made because the line was full, at whatever column.
/// Lists, quotes, indented and fenced lines, tables and trailers keep their lines, and so does what was written short.
QString flowed(const QString& body);

/// A body in two parts.
struct BodyAndTrailers {
    QString body;
    QStringList trailers; ///< the lines of the last paragraph when it consists of trailers, empty otherwise
};
BodyAndTrailers withTrailersApart(const QString& body);

} // namespace plovik::messageFormat

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/MessageFormat.h"

#include <QRegularExpression>
#include <QStringList>

#include <algorithm>

namespace plovik::messageFormat {

using namespace Qt::StringLiterals;

namespace {

/// Returns the length of what begins an item of a list, like "- " or "12. "; 0 for any other line.
qsizetype markerLength(QStringView line)
{
    static const QRegularExpression marker(u"^([-*+\u2022]|\\d{1,3}[.)])\\s+"_s);
    return marker.match(line.toString()).capturedLength();
}

/// Returns whether a line must keep its place and its end.
bool isFixed(QStringView line)
{
    return line.isEmpty() || line.front().isSpace() || line.front() == u'>' || line.front() == u'|' ||
           line.front() == u'#' || isTrailer(line);
}

/// Fills lines with the words of `text`. Lines after the first begin with `indent` spaces.
QStringList filled(QStringView text, int columns, qsizetype indent)
{
    QStringList lines;
    QString line;
    for (const QStringView word : text.split(u' ', Qt::SkipEmptyParts)) {
        if (!line.isEmpty() && line.size() + 1 + word.size() > columns) {
            lines.append(line);
            line.clear();
        }
        if (line.isEmpty())
            line = QString(lines.isEmpty() ? 0 : indent, u' ') + word.toString();
        else
            line += u' ' + word.toString();
    }
    return line.isEmpty() ? lines : lines << line;
}

bool isTooLong(const QString& line, int columns) { return line.size() > columns; }

} // namespace

bool isTrailer(QStringView line)
{
    static const QRegularExpression trailer(u"^[A-Za-z0-9][A-Za-z0-9-]*: \\S"_s);
    return trailer.match(line.toString()).hasMatch();
}

QString withTrailer(const QString& body, const QString& trailer)
{
    QString text = body;
    while (!text.isEmpty() && text.back().isSpace())
        text.chop(1);
    if (text.isEmpty())
        return trailer;
    const QStringList lines = text.split(u'\n');
    const auto blank = std::find_if(lines.rbegin(), lines.rend(), [](const QString& line) { return line.isEmpty(); });
    const auto isTrailing = [](const QString& line) { return isTrailer(line); };
    if (!std::all_of(lines.rbegin(), blank, isTrailing))
        return text + u"\n\n"_s + trailer;
    const auto isSame = [&](const QString& line) { return line.compare(trailer, Qt::CaseInsensitive) == 0; };
    return std::any_of(lines.rbegin(), blank, isSame) ? text : text + u'\n' + trailer;
}

QString wrapped(const QString& body, int columns)
{
    QStringList result;
    QStringList paragraph; // of lines that may be filled anew
    const auto finish = [&] {
        // What nobody wrote too long keeps its lines.
        const bool isToBeFilled =
            std::ranges::any_of(paragraph, [columns](const QString& line) { return isTooLong(line, columns); });
        result += isToBeFilled ? filled(paragraph.join(u' '), columns, 0) : paragraph;
        paragraph.clear();
    };
    for (const QString& line : body.split(u'\n')) {
        const qsizetype marker = markerLength(line);
        if (marker == 0 && !isFixed(line)) {
            paragraph.append(line);
            continue;
        }
        finish();
        if (marker > 0 && isTooLong(line, columns))
            result += filled(line, columns, marker);
        else
            result.append(line);
    }
    finish();
    return result.join(u'\n');
}

} // namespace plovik::messageFormat

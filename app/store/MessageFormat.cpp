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

/// Characters from here on are two columns wide, but for some that do not matter here.
constexpr char16_t firstWide = 0x2E80;
constexpr int leastFullLine = 45; ///< nobody takes a shorter line for a full one
constexpr int mostColumns = 120;  ///< a longer line was not broken by a hand
constexpr int slack = 8;          ///< by which a line that was filled by hand may be too short

bool isWide(QChar character) { return character.unicode() >= firstWide && !character.isSurrogate(); }

qsizetype columnsOf(QStringView text) { return text.size() + std::ranges::count_if(text, isWide); }

QStringView firstWord(QStringView line)
{
    const qsizetype end = line.indexOf(u' ');
    return end < 0 ? line : line.first(end);
}

/// Returns whether the places of a line's words mean something, or all of it is a rule, a command or a fence.
bool isDrawn(QStringView line)
{
    static const QRegularExpression drawn(u"\\t|[^\\s.!?:;)\"'\u201D]\\s{2,}\\S|\\s{3,}\\S|\\\\$|^[$%] |^[^\\w\\s]+$"_s,
                                          QRegularExpression::UseUnicodePropertiesOption);
    return drawn.match(line.toString()).hasMatch();
}

bool isFence(QStringView line) { return line.startsWith(u"```") || line.startsWith(u"~~~"); }

/// Appends a paragraph, whose lines may be joined, to `result`.
void appendFlowed(QStringList& result, const QStringList& paragraph)
{
    qsizetype longest = 0;
    for (const QString& line : paragraph)
        longest = std::max(longest, columnsOf(line));
    bool wasFull = false;
    for (qsizetype index = 0; index < paragraph.size(); ++index) {
        const QString& line = paragraph[index];
        if (wasFull) {
            const bool isSpaced = !isWide(result.back().back()) || !isWide(line.front());
            result.back() += (isSpaced ? u" "_s : QString()) + line;
        } else {
            result.append(line);
        }
        const qsizetype length = columnsOf(line);
        wasFull = index + 1 < paragraph.size() && longest >= leastFullLine && longest <= mostColumns &&
                  length >= leastFullLine - slack &&
                  length + 1 + columnsOf(firstWord(paragraph[index + 1])) > longest - slack;
    }
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

QString flowed(const QString& body)
{
    QStringList result;
    QStringList paragraph; // of lines that may be joined
    const auto finish = [&] {
        appendFlowed(result, paragraph);
        paragraph.clear();
    };
    bool isFenced = false;
    for (QString line : body.split(u'\n')) {
        const bool isFenceLine = isFence(line);
        if (!isFenced && !isFenceLine && markerLength(line) == 0 && !isFixed(line) && !isDrawn(line)) {
            while (line.endsWith(u' '))
                line.chop(1);
            paragraph.append(line);
            continue;
        }
        isFenced ^= isFenceLine;
        finish();
        result.append(line);
    }
    finish();
    return result.join(u'\n');
}

BodyAndTrailers withTrailersApart(const QString& body)
{
    // Git adds a line like "(cherry picked from commit 1234567)" among the trailers, and people their remarks.
    static const QRegularExpression remark(u"^(\\(cherry picked from commit .*\\)|\\[.*\\])$"_s);
    const QStringList lines = body.split(u'\n');
    qsizetype first = lines.size();
    bool hasTrailer = false;
    while (first > 0 && !lines[first - 1].isEmpty()) {
        --first;
        const bool goesOn = lines[first].front().isSpace() && first > 0 && !lines[first - 1].isEmpty();
        const bool isOne = isTrailer(lines[first]);
        if (!isOne && !goesOn && !remark.match(lines[first]).hasMatch())
            return {body, {}};
        hasTrailer |= isOne;
    }
    if (!hasTrailer)
        return {body, {}};
    qsizetype end = first;
    while (end > 0 && lines[end - 1].isEmpty())
        --end;
    return {lines.first(end).join(u'\n'), lines.mid(first)};
}

} // namespace plovik::messageFormat

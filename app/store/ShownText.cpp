// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/ShownText.h"

#include <QCoreApplication>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

bool runsFromRightToLeft(char32_t character)
{
    const QChar::Direction direction = QChar::direction(character);
    return direction == QChar::DirR || direction == QChar::DirAL;
}

/// Keeps the order of a text within it, so that a name cannot reorder the sentence or the row that it stands in.
QString isolated(const QString& text)
{
    constexpr QChar firstStrong(0x2068);
    constexpr QChar end(0x2069);
    return std::ranges::any_of(text.toUcs4(), runsFromRightToLeft) ? firstStrong + text + end : text;
}

} // namespace

bool isInvisible(char16_t unit)
{
    return (unit >= 0x80 && unit < 0xA0) || unit == 0xAD || unit == 0x61C || unit == 0x180E ||
           (unit >= 0x200B && unit <= 0x200F) || (unit >= 0x2028 && unit <= 0x202E) ||
           (unit >= 0x2060 && unit <= 0x206F) || unit == 0xFEFF || (unit >= 0xFFF9 && unit <= 0xFFFB);
}

QString standInFor(char16_t unit)
{
    // Terminals write them this way. The pictures that Unicode has for them are too small to read in most fonts.
    if (unit < 0x20 || unit == 0x7F)
        return QString(u'^') + QChar(unit ^ 0x40);
    // A zero-width joiner is harmless: it only joins letters or the parts of an emoji.
    if (unit != 0x200D && isInvisible(unit))
        return u"‹U+%1›"_s.arg(unit, 4, 16, QLatin1Char('0')).toUpper();
    return {};
}

QString withStandIns(const QString& text)
{
    QString shown;
    shown.reserve(text.size());
    for (const QChar unit : text) {
        const bool isLayout = unit == u'\n' || unit == u'\t';
        const QString standIn = isLayout ? QString() : standInFor(unit.unicode());
        if (standIn.isEmpty())
            shown += unit;
        else
            shown += standIn;
    }
    return shown;
}

QString shownText(std::string_view bytes)
{
    // No character has more than four bytes, so a character that substr() cuts lies beyond those that are kept.
    QString text = exactText(bytes.substr(0, 4 * (longestShownText + 1)));
    if (text.size() > longestShownText)
        text = text.left(longestShownText - (text[longestShownText - 1].isHighSurrogate() ? 1 : 0)) + u'…';
    return isolated(withStandIns(text));
}

QString namesOfFiles(const std::vector<std::string>& paths) { return namesOfFiles(paths.front(), paths.size()); }

QString namesOfFiles(const std::string& first, std::size_t count)
{
    const auto others = static_cast<int>(count) - 1;
    return others == 0 ? inQuotes(first)
                       : QCoreApplication::translate("plovik::Discards", "%1 and %Ln other file(s)", nullptr, others)
                             .arg(inQuotes(first));
}

QString namesInLines(const std::vector<std::string>& paths)
{
    constexpr std::size_t most = 8;
    QStringList lines;
    for (std::size_t index = 0; index < std::min(paths.size(), most); ++index)
        lines.append(shownText(paths[index]));
    if (const auto others = static_cast<int>(paths.size()) - static_cast<int>(most); others > 0)
        lines.append(QCoreApplication::translate("plovik::Changes", "and %Ln other(s)", nullptr, others));
    return lines.join(u'\n');
}

} // namespace plovik

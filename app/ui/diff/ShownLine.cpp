// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/ShownLine.h"

#include "app/store/ShownText.h"

#include <algorithm>

namespace plovik {

namespace {

using namespace Qt::StringLiterals;

bool isBlank(QChar unit) { return unit == u' ' || unit == u'\t'; }

qsizetype trailingBlanksOf(const QString& text)
{
    qsizetype end = text.size();
    if (text.endsWith(u'\r'))
        --end;
    while (end > 0 && isBlank(text[end - 1]))
        --end;
    return end;
}

class Writer {
public:
    Writer(ShownLine& line, int tabWidth) : line_(line), tabWidth_(tabWidth) {}

    void take(qsizetype position, char16_t unit)
    {
        if (unit == u'\t') {
            const int stop = tabWidth_ - column_ % tabWidth_;
            replace(position, QString(stop, u' '), ShownLine::Sign::tab);
            return;
        }
        const bool endsLine = unit == u'\r' && position + 1 == line_.source.size();
        if (const QString stands = standInFor(unit); !stands.isEmpty()) {
            replace(position, stands, endsLine ? ShownLine::Sign::carriageReturn : ShownLine::Sign::control);
            return;
        }
        line_.shown += QChar(unit);
        if (!QChar::isLowSurrogate(unit))
            ++column_;
    }

private:
    void replace(qsizetype position, const QString& text, ShownLine::Sign sign)
    {
        line_.replacements.push_back({position, line_.shown.size(), text.size(), sign});
        line_.shown += text;
        column_ += static_cast<int>(text.size());
    }

    ShownLine& line_;
    int tabWidth_;
    int column_ = 0;
};

} // namespace

QString textOf(std::string_view bytes)
{
    // Qt drops a byte-order mark at the start, but in a line it is text.
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (bytes.starts_with(mark))
        return QChar(0xFEFF) + exactText(bytes.substr(mark.size()));
    return exactText(bytes);
}

ShownLine ShownLine::of(std::string_view text, int tabWidth)
{
    ShownLine line;
    line.source = textOf(text);
    line.trailingBlanks = trailingBlanksOf(line.source);
    const qsizetype end = std::min(line.source.size(), mostShown);
    line.notShown = line.source.size() - end;
    line.shown.reserve(end);
    Writer writer(line, tabWidth);
    for (qsizetype position = 0; position < end; ++position)
        writer.take(position, line.source[position].unicode());
    return line;
}

qsizetype ShownLine::toShown(qsizetype position) const
{
    const auto after = std::ranges::upper_bound(replacements, position - 1, {}, &Replacement::source);
    if (after == replacements.begin())
        return std::min(position, shown.size());
    const Replacement& last = *(after - 1);
    return std::min(last.shown + last.length + position - last.source - 1, shown.size());
}

qsizetype ShownLine::toSource(qsizetype position) const
{
    const auto after = std::ranges::upper_bound(replacements, position, {}, &Replacement::shown);
    if (after == replacements.begin())
        return std::min(position, source.size());
    const Replacement& last = *(after - 1);
    const qsizetype inside = position - last.shown;
    // Inside a replacement, the nearer edge counts.
    if (inside < last.length)
        return 2 * inside < last.length ? last.source : last.source + 1;
    return std::min(last.source + 1 + inside - last.length, source.size());
}

int columnsOf(std::string_view text, int tabWidth)
{
    const std::size_t end = std::min(text.size(), static_cast<std::size_t>(ShownLine::mostShown));
    int columns = 0;
    for (const char byte : text.substr(0, end)) {
        const auto unit = static_cast<unsigned char>(byte);
        if (unit == '\t')
            columns += tabWidth - columns % tabWidth;
        else if ((unit & 0xC0U) != 0x80U)
            columns += unit < 0xE0 ? 1 : 2; // characters of three bytes are often wide
    }
    return columns;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/SyntaxFormats.h"

#include "app/ui/diff/ShownLine.h"
#include "app/ui/widgets/Theme.h"

#include <algorithm>
#include <array>

namespace plovik {

namespace {

using Formats = std::array<QTextCharFormat, 8>; ///< by style

Formats formatsOf(const Theme& theme)
{
    Formats formats;
    const auto set = [&formats](SyntaxStyle style, const QColor& color) {
        formats[static_cast<std::size_t>(style)].setForeground(color);
    };
    set(SyntaxStyle::keyword, theme.syntaxKeyword);
    set(SyntaxStyle::type, theme.syntaxType);
    set(SyntaxStyle::string, theme.syntaxString);
    set(SyntaxStyle::number, theme.syntaxNumber);
    set(SyntaxStyle::comment, theme.syntaxComment);
    set(SyntaxStyle::preprocessor, theme.syntaxPreprocessor);
    set(SyntaxStyle::function, theme.syntaxFunction);
    set(SyntaxStyle::name, theme.syntaxName);
    return formats;
}

/// Keeps the formats, because each takes an allocation and a frame needs hundreds.
const Formats& currentFormats()
{
    static const Formats light = formatsOf(Theme::light());
    static const Formats dark = formatsOf(Theme::dark());
    return Theme::current().isDark ? dark : light;
}

} // namespace

void appendSyntaxFormats(QList<QTextLayout::FormatRange>& formats, std::span<const SyntaxRun> runs,
                         const ShownLine& line, qsizetype first, qsizetype length)
{
    const Formats& styles = currentFormats();
    for (const SyntaxRun& run : runs) {
        const qsizetype begin = std::max(line.toShown(run.first), first);
        const qsizetype end = std::min(line.toShown(run.first + run.length), first + length);
        if (begin < end)
            formats.append({static_cast<int>(begin - first), static_cast<int>(end - begin),
                            styles[static_cast<std::size_t>(run.style)]});
    }
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/Beginning.h"

#include <QStringDecoder>
#include <QTextBoundaryFinder>

namespace plovik {

namespace {

/// Returns the text of a piece, without the character that the end of the piece cuts through.
QString textIn(std::string_view piece)
{
    QStringDecoder decode(QStringDecoder::Utf8);
    return decode(piece);
}

qsizetype endOf(qsizetype count, const QString& text)
{
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (; count > 0 && end < text.size(); --count)
        end = finder.toNextBoundary();
    return end;
}

} // namespace

Beginning beginningOf(std::string_view utf8, qsizetype count)
{
    // The first piece is long enough where nearly every character is one byte.
    for (std::size_t size = static_cast<std::size_t>(count) * 5 / 4 + 64;; size *= 2) {
        const bool isAll = size >= utf8.size();
        const QString text = isAll ? QString::fromUtf8(utf8) : textIn(utf8.substr(0, size));
        const qsizetype end = endOf(count, text);
        // The last character of a piece may go on behind the piece.
        if (isAll || end < text.size())
            return {text.first(end), isAll && end == text.size()};
    }
}

} // namespace plovik

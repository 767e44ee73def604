// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Initials.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

namespace plovik {

namespace {

constexpr double readableContrast = 4.5;
constexpr float tint = 0.2F; ///< of the colour in the circle

struct Ink {
    QColor circle, text;
};

/// Returns the lane's colour as a tint, and for the letters as much of it as leaves them readable.
Ink inkOf(const Theme& theme, int lane)
{
    Ink ink{Theme::mixed(theme.content, theme.lane(lane), tint), theme.lane(lane)};
    for (float share = 0; share < 1 && Theme::contrast(ink.circle, ink.text) < readableContrast; share += 0.05F)
        ink.text = Theme::mixed(theme.lane(lane), theme.text, share);
    return ink;
}

const Ink& inkFor(std::string_view who)
{
    constexpr int inks = 8;
    static std::array<Ink, inks> kept;
    static int keptOf = -1;
    const Theme& theme = Theme::current();
    if (std::exchange(keptOf, Theme::generation()) != Theme::generation()) {
        for (int lane = 0; lane < inks; ++lane)
            kept[static_cast<std::size_t>(lane)] = inkOf(theme, lane);
    }
    std::uint32_t hash = 2166136261U;
    for (const char character : who)
        hash = (hash ^ static_cast<unsigned char>(character)) * 16777619U;
    return kept[hash % inks];
}

} // namespace

QString initialsOf(const QString& name)
{
    QString first;
    QString last;
    const QStringList words = name.split(u' ', Qt::SkipEmptyParts);
    for (const QString& word : words) {
        const auto letter = std::ranges::find_if(word, [](QChar c) { return c.isLetterOrNumber() || c.isSurrogate(); });
        if (letter == word.end())
            continue;
        const QString initial(letter, letter->isHighSurrogate() && letter + 1 != word.end() ? 2 : 1);
        (first.isEmpty() ? first : last) = initial.toUpper();
    }
    return first.isEmpty() ? QStringLiteral("?") : first + last;
}

void paintInitials(QPainter& painter, const QRectF& square, const QString& initials, std::string_view who)
{
    const Ink& ink = inkFor(who);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink.circle);
    painter.drawEllipse(square);
    QFont font = Theme::font(0, QFont::DemiBold);
    font.setPixelSize(std::max(1, static_cast<int>(square.height() * 0.45)));
    painter.setFont(font);
    painter.setPen(ink.text);
    painter.drawText(square, Qt::AlignCenter, initials);
}

} // namespace plovik

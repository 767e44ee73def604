// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Initials.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace plovik {

namespace {

constexpr double readableContrast = 4.5;
constexpr float tint = 0.2F; ///< of the colour in the circle

struct Ink {
    QColor circle, text;
};

QColor mixed(const QColor& one, const QColor& other, float share)
{
    return QColor::fromRgbF(one.redF() + (other.redF() - one.redF()) * share,
                            one.greenF() + (other.greenF() - one.greenF()) * share,
                            one.blueF() + (other.blueF() - one.blueF()) * share);
}

double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(const QColor& one, const QColor& other)
{
    const auto [dark, light] = std::minmax({luminance(one), luminance(other)});
    return (light + 0.05) / (dark + 0.05);
}

/// Returns the lane's colour as a tint, and for the letters as much of it as leaves them readable.
Ink inkOf(const Theme& theme, int lane)
{
    Ink ink{mixed(theme.content, theme.lane(lane), tint), theme.lane(lane)};
    for (float share = 0; share < 1 && contrast(ink.circle, ink.text) < readableContrast; share += 0.05F)
        ink.text = mixed(theme.lane(lane), theme.text, share);
    return ink;
}

const Ink& inkFor(std::string_view who)
{
    constexpr int inks = 8;
    static std::array<Ink, inks> kept;
    static const Theme* keptOf = nullptr;
    const Theme& theme = Theme::current();
    if (keptOf != &theme) {
        keptOf = &theme;
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

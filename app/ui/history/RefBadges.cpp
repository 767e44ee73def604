// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/RefBadges.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RowText.h"

#include <QCoreApplication>
#include <QPainterPath>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

struct BadgeText {
    Q_DECLARE_TR_FUNCTIONS(RefBadges)
};

constexpr double padding = 8;
constexpr double betweenBadges = 6;
constexpr double corner = 5;
constexpr double widestBadge = 220;
constexpr double tagGlyphRoom = 13; ///< the width of the glyph and of the space after it

struct Ink {
    QColor fill, border, text;
};

/// The lower, the further in front.
int rankOf(const gitkit::RefLabel& label)
{
    using Kind = gitkit::RefLabel::Kind;
    if (label.isHead)
        return 0;
    switch (label.kind) {
    case Kind::head:
        return 0;
    case Kind::localBranch:
        return label.isDefault ? 1 : 4;
    case Kind::remoteBranch:
        return label.isDefault ? 2 : 5;
    case Kind::tag:
        break;
    }
    return 3;
}

std::vector<std::size_t> shownOrder(const std::vector<gitkit::RefLabel>& labels)
{
    std::vector<std::size_t> order(labels.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::ranges::sort(order, {}, [&labels](std::size_t i) { return std::pair(rankOf(labels[i]), i); });
    return order;
}

/// Draws a price tag: a square with a pointed left side and a hole.
void paintTagGlyph(QPainter& painter, QPointF middleLeft, const QColor& colour)
{
    QPainterPath glyph(middleLeft + QPointF(0, 0));
    glyph.lineTo(middleLeft + QPointF(4, -4));
    glyph.lineTo(middleLeft + QPointF(9, -4));
    glyph.lineTo(middleLeft + QPointF(9, 4));
    glyph.lineTo(middleLeft + QPointF(4, 4));
    glyph.closeSubpath();
    glyph.addEllipse(middleLeft + QPointF(4, 0), 1.25, 1.25);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawPath(glyph);
}

} // namespace

RefBadges::Fonts RefBadges::Fonts::current()
{
    Fonts fonts{Theme::font(-1.5), Theme::font(-1.5, QFont::DemiBold)};
    const QFontMetricsF metrics(fonts.plain);
    fonts.height = std::max(18.0, std::ceil(metrics.height()) + 4);
    fonts.moreWidth = std::ceil(metrics.horizontalAdvance(u"+99"_s)) + 2 * padding;
    return fonts;
}

RefBadges::RefBadges(const std::vector<gitkit::RefLabel>& labels, double budget, const Fonts& fonts)
    : order_(shownOrder(labels))
{
    for (std::size_t i = 0; i < labels.size(); ++i) {
        const std::size_t left = labels.size() - i - 1;
        const double reserved = left > 0 ? fonts.moreWidth + betweenBadges : 0;
        const double start = badges_.empty() ? 0 : width() + betweenBadges;
        // The first label is shortened; later ones that do not fit are collapsed.
        const double most = badges_.empty() ? std::min(widestBadge, budget - reserved) : widestBadge;
        const gitkit::RefLabel& label = labels[order_[i]];
        Badge badge = makeBadge(lookOf(label), shownLine(label.name), most, fonts);
        const bool fits = badges_.empty() || start + badge.width + reserved <= budget;
        if (!fits)
            badge = makeBadge(Look::more, u"+%L1"_s.arg(left + 1), widestBadge, fonts);
        badge.left = start;
        badge.place = i;
        badges_.push_back(std::move(badge));
        if (!fits)
            return;
    }
}

RefBadges::Look RefBadges::lookOf(const gitkit::RefLabel& label)
{
    using Kind = gitkit::RefLabel::Kind;
    switch (label.kind) {
    case Kind::head:
        return Look::checkedOut;
    case Kind::localBranch:
        return label.isHead ? Look::checkedOut : Look::local;
    case Kind::remoteBranch:
        return Look::remote;
    case Kind::tag:
        return Look::tag;
    }
    return Look::remote;
}

RefBadges::Badge RefBadges::makeBadge(Look look, const QString& name, double maxWidth, const Fonts& fonts)
{
    const double around = 2 * padding + (look == Look::tag ? tagGlyphRoom : 0);
    const QFont& font = look == Look::checkedOut ? fonts.strong : fonts.plain;
    Badge badge{look, QStaticText(name)};
    badge.text.setTextFormat(Qt::PlainText);
    badge.text.prepare({}, font);
    if (badge.text.size().width() + around > maxWidth) {
        // Names of neighbours often differ only at their ends, so the middle is left out.
        const double room = std::max(0.0, maxWidth - around);
        badge.text.setText(QFontMetricsF(font).elidedText(name, Qt::ElideMiddle, room));
        badge.text.prepare({}, font);
    }
    badge.width = std::ceil(badge.text.size().width() + around);
    return badge;
}

void RefBadges::paint(QPainter& painter, QPointF middleLeft, const Fonts& fonts, const Theme& theme) const
{
    for (const Badge& badge : badges_)
        paintBadge(painter, badge, middleLeft + QPointF(badge.left, 0), fonts, theme);
}

void RefBadges::paintMirrored(QPainter& painter, QPointF middleRight, const Fonts& fonts, const Theme& theme) const
{
    for (const Badge& badge : badges_)
        paintBadge(painter, badge, middleRight - QPointF(badge.left + badge.width, 0), fonts, theme);
}

void RefBadges::paintBadge(QPainter& painter, const Badge& badge, QPointF middleLeft, const Fonts& fonts,
                           const Theme& theme) const
{
    const auto ink = [&]() -> Ink {
        switch (badge.look) {
        case Look::checkedOut:
            return {theme.accent, theme.accent, theme.onAccent};
        case Look::local:
            return {theme.content, theme.accent, theme.accent};
        case Look::tag:
            return {theme.tagBadge, theme.tagBadge, theme.tagBadgeText};
        case Look::remote:
        case Look::more:
            break;
        }
        return {theme.badge, theme.quietBorder, theme.badgeText};
    }();
    const QRectF frame(middleLeft.x(), middleLeft.y() - fonts.height / 2, badge.width, fonts.height);
    // Filling one shape inside the other costs a fraction of stroking the outer one.
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink.border);
    painter.drawRoundedRect(frame, corner, corner);
    if (ink.fill != ink.border) {
        painter.setBrush(ink.fill);
        painter.drawRoundedRect(frame.adjusted(1, 1, -1, -1), corner - 1, corner - 1);
    }

    double textLeft = middleLeft.x() + padding;
    if (badge.look == Look::tag) {
        paintTagGlyph(painter, {textLeft - 1, middleLeft.y()}, ink.text);
        textLeft += tagGlyphRoom;
    }
    painter.setFont(badge.look == Look::checkedOut ? fonts.strong : fonts.plain);
    painter.setPen(ink.text);
    painter.drawStaticText(QPointF(textLeft, std::round(middleLeft.y() - badge.text.size().height() / 2)), badge.text);
}

const RefBadges::Badge* RefBadges::badgeAt(double x) const
{
    const auto hit = std::ranges::find_if(
        badges_, [x](const Badge& badge) { return x >= badge.left && x < badge.left + badge.width; });
    return hit == badges_.end() ? nullptr : &*hit;
}

std::optional<RefBadges::Found> RefBadges::labelAt(double x, const std::vector<gitkit::RefLabel>& labels) const
{
    const Badge* const hit = badgeAt(x);
    if (!hit || hit->look == Look::more || labels.size() != order_.size())
        return std::nullopt;
    return Found{labels[order_[hit->place]], hit->left, hit->width};
}

std::vector<gitkit::RefLabel> RefBadges::collapsedAt(double x, const std::vector<gitkit::RefLabel>& labels) const
{
    const Badge* const hit = badgeAt(x);
    std::vector<gitkit::RefLabel> collapsed;
    if (!hit || hit->look != Look::more || labels.size() != order_.size())
        return collapsed;
    for (std::size_t i = hit->place; i < order_.size(); ++i)
        collapsed.push_back(labels[order_[i]]);
    return collapsed;
}

QString RefBadges::namesAt(double x, const std::vector<gitkit::RefLabel>& labels) const
{
    constexpr std::size_t mostNames = 30;
    const Badge* const hit = badgeAt(x);
    if (!hit || labels.size() != order_.size())
        return {};
    if (hit->look != Look::more)
        return shownText(labels[order_[hit->place]].name);

    QStringList names;
    const std::size_t end = std::min(labels.size(), hit->place + mostNames);
    for (std::size_t i = hit->place; i < end; ++i)
        names << shownText(labels[order_[i]].name);
    if (end < labels.size())
        names << BadgeText::tr("and %Ln more", nullptr, static_cast<int>(labels.size() - end));
    return names.join(u'\n');
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/welcome/RecentRowDelegate.h"

#include "app/ui/settings/SettingsSymbols.h"
#include "app/ui/widgets/RowPainting.h"

#include <QPainter>

namespace plovik {

namespace {

constexpr int padding = 6;
constexpr int margin = 10;
constexpr int symbolSize = 22;

QFont smaller(QFont font)
{
    if (font.pointSizeF() > 0)
        font.setPointSizeF(font.pointSizeF() - 1);
    return font;
}

} // namespace

void RecentRowDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const QPalette& palette = option.palette;
    const RowMirror mirror(option);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const bool isSelected = option.state & QStyle::State_Selected;
    if (isSelected || (option.state & QStyle::State_MouseOver)) {
        painter->setPen(Qt::NoPen);
        painter->setBrush(palette.color(isSelected ? QPalette::Highlight : QPalette::Light));
        painter->drawRoundedRect(QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5), 6, 6);
    }
    const QRect inner = option.rect.adjusted(margin, padding, -margin, -padding);
    const QRectF symbol(inner.left(), inner.center().y() + 1 - symbolSize / 2.0, symbolSize, symbolSize);
    paintSymbol(*painter, SettingsSymbol::folder, mirror(symbol), palette.color(QPalette::Link));

    const QFont quiet = smaller(option.font);
    QRect line = inner.adjusted(symbolSize + margin, 0, 0, 0);
    line.setHeight(QFontMetrics(option.font).height());
    paintText(*painter, line, index.data().toString(), option.font, palette.color(QPalette::Text), Qt::AlignLeft,
              Qt::ElideMiddle);
    line.moveTop(line.bottom() + 1);
    line.setHeight(QFontMetrics(quiet).height());
    paintText(*painter, line, index.data(placeRole).toString(), quiet, palette.color(QPalette::PlaceholderText),
              Qt::AlignLeft, Qt::ElideMiddle);
    painter->restore();
}

QSize RecentRowDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& /*index*/) const
{
    return {0, QFontMetrics(option.font).height() + QFontMetrics(smaller(option.font)).height() + 2 * padding};
}

} // namespace plovik

#include "moc_RecentRowDelegate.cpp"

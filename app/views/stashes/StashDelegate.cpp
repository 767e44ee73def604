#include "app/views/stashes/StashDelegate.h"

#include "app/views/RowPainting.h"
#include "app/views/Theme.h"
#include "app/views/stashes/StashesModel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace plovik {

namespace {

constexpr int rowInset = 6;
constexpr int textInset = 16;
constexpr int gap = 12;
constexpr int traySize = 14;
constexpr int trayGap = 8;

/// A tray, seen from the front: open at the top, with the place where papers lie.
void paintTray(QPainter& painter, const QRect& inner, const QColor& color)
{
    const QPointF corner(inner.left(), inner.top() + (inner.height() - traySize) / 2.0);
    QPainterPath tray;
    tray.moveTo(1, 8);
    tray.lineTo(3.4, 2.2);
    tray.lineTo(10.6, 2.2);
    tray.lineTo(13, 8);
    tray.lineTo(13, 12);
    tray.lineTo(1, 12);
    tray.closeSubpath();
    tray.moveTo(1, 8);
    tray.lineTo(4.4, 8);
    tray.cubicTo(4.8, 10.4, 9.2, 10.4, 9.6, 8);
    tray.lineTo(13, 8);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(corner);
    painter.strokePath(tray, QPen(color, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.restore();
}

} // namespace

void StashDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    const auto& model = static_cast<const StashesModel&>(*index.model());
    const Theme& theme = Theme::current();
    paintRowBackground(*painter, option.rect, option, rowInset);
    const QRect row = option.rect.adjusted(textInset, 0, -textInset, 0);
    paintTray(*painter, row, theme.secondaryText);
    const QRect inner = row.adjusted(traySize + trayGap, 0, 0, 0);
    const QFont small = Theme::font(-1);
    const QString date = shownDate(model.stash(index));
    paintText(*painter, inner, date, small, theme.secondaryText, Qt::AlignRight, Qt::ElideNone);
    paintText(*painter, inner.adjusted(0, 0, -textWidth(date, small) - gap, 0), index.data().toString(), option.font,
              theme.text);
}

QSize StashDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    Q_UNUSED(index)
    return {textInset * 2, std::max(listRowHeight, QFontMetrics(option.font).height() + 8)};
}

} // namespace plovik

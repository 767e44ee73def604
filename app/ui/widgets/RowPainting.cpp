// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/RowPainting.h"

#include "app/ui/widgets/Theme.h"

#include <QFontMetrics>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionViewItem>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

QFont pillFont() { return Theme::font(-1.5); }

} // namespace

void paintRowBackground(QPainter& painter, const QRect& row, const QStyleOptionViewItem& option, int inset)
{
    const Theme& theme = Theme::current();
    const bool isSelected = option.state & QStyle::State_Selected;
    const bool isCurrent = option.state & QStyle::State_HasFocus;
    if (!isSelected && !isCurrent)
        return;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isCurrent && !isSelected ? QPen(theme.accent) : QPen(Qt::NoPen));
    painter.setBrush(isSelected ? QBrush(theme.selection) : QBrush(Qt::NoBrush));
    painter.drawRoundedRect(QRectF(row).adjusted(inset + 0.5, 0.5, -inset - 0.5, -0.5), 5, 5);
    painter.restore();
}

void paintText(QPainter& painter, const QRect& area, const QString& text, const QFont& font, const QColor& color,
               Qt::Alignment alignment, Qt::TextElideMode elide)
{
    if (area.width() <= 0 || text.isEmpty())
        return;
    painter.setFont(font);
    painter.setPen(color);
    const QString shown = QFontMetrics(font).elidedText(text, elide, area.width());
    painter.drawText(area, static_cast<int>(alignment | Qt::AlignVCenter) | Qt::TextSingleLine, shown);
}

int textWidth(const QString& text, const QFont& font) { return QFontMetrics(font).horizontalAdvance(text); }

int pillWidth(const QString& text) { return std::max(textWidth(text, pillFont()) + 12, 20); }

int paintPill(QPainter& painter, const QRect& area, const QString& text)
{
    const Theme& theme = Theme::current();
    const int width = pillWidth(text);
    const int height = QFontMetrics(pillFont()).height() + 2;
    const QRect pill(area.right() + 1 - width, area.top() + (area.height() - height) / 2, width, height);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.badge);
    painter.drawRoundedRect(pill, height / 2.0, height / 2.0);
    painter.restore();
    paintText(painter, pill, text, pillFont(), theme.badgeText, Qt::AlignHCenter, Qt::ElideNone);
    return width;
}

void paintDisclosure(QPainter& painter, QPointF center, bool isOpen, const QColor& color)
{
    QPolygonF triangle = isOpen ? QPolygonF{QPointF(-3.5, -2), QPointF(3.5, -2), QPointF(0, 2.5)}
                                : QPolygonF{QPointF(-2, -3.5), QPointF(2.5, 0), QPointF(-2, 3.5)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawPolygon(triangle.translated(center));
    painter.restore();
}

QString plainToolTip(const QString& text)
{
    return u"<p style='white-space:pre-wrap'>%1</p>"_s.arg(text.toHtmlEscaped());
}

} // namespace plovik

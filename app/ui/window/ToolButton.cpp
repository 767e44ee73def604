// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/ToolButton.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>

namespace plovik {

namespace {

constexpr int sidePadding = 9;
constexpr int ordinaryIcon = 16;
constexpr int partGap = 6;
constexpr int triangleWidth = 9;
constexpr int leastTitle = 34; ///< of one that cuts its title
constexpr int mostTitle = 220;

int iconSide() { return Theme::scaled(ordinaryIcon); }

// All pictures are drawn around the origin, 14 pixels wide and high.

void paintTray(QPainter& painter)
{
    painter.drawPolyline(QPolygonF{QPointF(-6, 2.5), QPointF(-6, 5.5), QPointF(6, 5.5), QPointF(6, 2.5)});
}

/// Draws an arrow from one height to another.
void paintArrow(QPainter& painter, double from, double to)
{
    const double back = to > from ? -3.2 : 3.2;
    painter.drawLine(QPointF(0, from), QPointF(0, to));
    painter.drawPolyline(QPolygonF{QPointF(-3.2, to + back), QPointF(0, to), QPointF(3.2, to + back)});
}

void paintCloud(QPainter& painter)
{
    painter.drawArc(QRectF(-6.5, -3, 6, 6), 90 * 16, 180 * 16);
    painter.drawArc(QRectF(-4.5, -6.5, 7.5, 7.5), 10 * 16, 145 * 16);
    painter.drawArc(QRectF(0.5, -3, 6, 6), -90 * 16, 175 * 16);
}

void paintBranch(QPainter& painter)
{
    painter.drawEllipse(QPointF(-3.5, -4.5), 1.8, 1.8);
    painter.drawEllipse(QPointF(-3.5, 4.5), 1.8, 1.8);
    painter.drawEllipse(QPointF(4, -2.5), 1.8, 1.8);
    painter.drawLine(QPointF(-3.5, -2.7), QPointF(-3.5, 2.7));
    painter.drawArc(QRectF(-10.5, -6, 14.5, 8.5), -85 * 16, 78 * 16);
}

void paintStash(QPainter& painter)
{
    painter.drawRoundedRect(QRectF(-6, 0.5, 12, 5.5), 1.5, 1.5);
    painter.drawLine(QPointF(-4.5, -2.5), QPointF(4.5, -2.5));
    painter.drawLine(QPointF(-3, -5.5), QPointF(3, -5.5));
}

void paintFolder(QPainter& painter)
{
    painter.drawPolygon(
        QPolygonF{QPointF(-6, 5), QPointF(-6, -5), QPointF(-1.5, -5), QPointF(0, -3), QPointF(6, -3), QPointF(6, 5)});
}

void paintToolIcon(QPainter& painter, ToolIcon icon)
{
    switch (icon) {
    case ToolIcon::fetch:
        paintCloud(painter);
        return paintArrow(painter, 0, 6.5);
    case ToolIcon::pull:
        paintTray(painter);
        return paintArrow(painter, -6, 2.5);
    case ToolIcon::push:
        paintTray(painter);
        return paintArrow(painter, 2.5, -6);
    case ToolIcon::branch:
        return paintBranch(painter);
    case ToolIcon::stash:
        return paintStash(painter);
    case ToolIcon::repository:
        return paintFolder(painter);
    }
}

} // namespace

ToolButton::ToolButton(ToolIcon icon, const QString& name, Kind kind, QWidget* parent)
    : BarButton(name, parent), icon_(icon), kind_(kind), title_(name)
{
    if (kind == Kind::list)
        setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void ToolButton::setShownTitle(const QString& title)
{
    if (title == title_)
        return;
    title_ = title;
    setAccessibleDescription(badge().isEmpty() ? title : title + u' ' + badge());
    updateGeometry();
    update();
}

void ToolButton::setShowsTitle(bool shows)
{
    if (shows == showsTitle_)
        return;
    showsTitle_ = shows;
    updateGeometry();
    update();
}

int ToolButton::titleWidth() const
{
    const int whole = textWidth(title_, font()) + 1;
    return kind_ == Kind::list ? std::min(whole, mostTitle) : whole;
}

int ToolButton::widthFor(int title) const
{
    int width = 2 * sidePadding + iconSide() + (title > 0 ? partGap + title : 0);
    if (!badge().isEmpty())
        width += partGap + pillWidth(badge());
    return kind_ == Kind::list ? width + partGap + triangleWidth : width;
}

QSize ToolButton::minimumSizeHint() const
{
    return {widthFor(kind_ == Kind::list ? std::min(titleWidth(), leastTitle) : 0), heightHint()};
}

void ToolButton::paintEvent(QPaintEvent* /*event*/)
{
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    const auto states = QStyle::State_MouseOver | QStyle::State_Sunken | QStyle::State_HasFocus;
    if (kind_ == Kind::command || (option.state & states && isEnabled()))
        painter.drawControl(QStyle::CE_PushButtonBevel, option);

    const Theme& theme = Theme::current();
    const QColor color = isEnabled() ? theme.text : theme.disabledText;
    const RowMirror mirror(rect(), layoutDirection());
    painter.setRenderHint(QPainter::Antialiasing);
    QRect inner = rect().adjusted(sidePadding, 0, -sidePadding, 0);
    painter.save();
    painter.setPen(QPen(isEnabled() ? theme.secondaryText : color, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.translate(mirror(QPointF(inner.left() + iconSide() / 2.0, height() / 2.0)));
    painter.scale(iconSide() / double{ordinaryIcon}, iconSide() / double{ordinaryIcon});
    paintToolIcon(painter, icon_);
    painter.restore();
    inner.setLeft(inner.left() + iconSide() + partGap);
    if (kind_ == Kind::list) {
        paintDisclosure(painter, mirror(QPointF(inner.right() - triangleWidth / 2.0, height() / 2.0)), true,
                        theme.secondaryText);
        inner.setRight(inner.right() - triangleWidth - partGap);
    }
    if (!badge().isEmpty())
        inner.setRight(inner.right() - paintPill(painter, inner, badge()) - partGap);
    if (showsTitle_)
        paintText(painter, inner, title_, font(), color, Qt::AlignLeft, Qt::ElideMiddle);
}

} // namespace plovik

#include "moc_ToolButton.cpp"

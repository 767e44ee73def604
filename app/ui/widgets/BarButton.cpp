// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/BarButton.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QStyleOptionButton>
#include <QStylePainter>

namespace plovik {

namespace {

constexpr int badgeGap = 7;

} // namespace

BarButton::BarButton(const QString& title, QWidget* parent) : QPushButton(title, parent)
{
    setAccessibleName(title);
    setFocusPolicy(Qt::TabFocus);
}

void BarButton::setBadge(const QString& badge)
{
    if (badge == badge_)
        return;
    badge_ = badge;
    setAccessibleDescription(badge);
    updateGeometry();
    update();
}

QSize BarButton::sizeHint() const
{
    QSize size = QPushButton::sizeHint();
    if (!badge_.isEmpty())
        size.rwidth() += badgeGap + pillWidth(badge_);
    return size;
}

void BarButton::paintEvent(QPaintEvent* event)
{
    if (badge_.isEmpty()) {
        QPushButton::paintEvent(event);
        return;
    }
    QStylePainter painter(this);
    QStyleOptionButton option;
    initStyleOption(&option);
    painter.drawControl(QStyle::CE_PushButtonBevel, option);
    const int content = textWidth(text(), font()) + badgeGap + pillWidth(badge_);
    const QRect inner((width() - content) / 2, 0, content, height());
    const Theme& theme = Theme::current();
    paintText(painter, inner, text(), font(), isEnabled() ? theme.text : theme.disabledText);
    paintPill(painter, inner, badge_);
}

} // namespace plovik

#include "moc_BarButton.cpp"

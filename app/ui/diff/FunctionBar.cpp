// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/FunctionBar.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>

namespace plovik {

FunctionBar::FunctionBar(QWidget* parent) : QWidget(parent)
{
    setCursor(Qt::PointingHandCursor);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void FunctionBar::setText(const QString& text, const QFont& font, int left)
{
    if (text == text_ && font == font_ && left == left_)
        return;
    text_ = text;
    font_ = font;
    left_ = left;
    setAccessibleName(tr("Function %1").arg(text));
    update();
}

void FunctionBar::mousePressEvent(QMouseEvent* event)
{
    // It must not go on to the lines below, whatever the button.
    event->accept();
    if (event->button() == Qt::LeftButton)
        Q_EMIT pressed();
}

void FunctionBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // as code is
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.hunkHeader);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
    paintText(painter, rect().adjusted(left_, 0, -12, 0), text_, font_, theme.hunkHeaderText);
}

} // namespace plovik

#include "moc_FunctionBar.cpp"

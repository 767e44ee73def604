// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/ElidedLabel.h"

#include "app/ui/widgets/RowPainting.h"

#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>

namespace plovik {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) { setTextFormat(Qt::PlainText); }

void ElidedLabel::reserve(int width)
{
    reserved_ = width;
    updateGeometry();
}

QSize ElidedLabel::sizeHint() const { return QLabel::sizeHint().expandedTo({reserved_, 0}); }

QSize ElidedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

void ElidedLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintText(painter, rect(), text(), font(), palette().color(foregroundRole()), alignment());
}

bool ElidedLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QLabel::event(event);
    if (textWidth(text(), font()) > width())
        QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), plainToolTip(text()), this);
    return true;
}

} // namespace plovik

#include "moc_ElidedLabel.cpp"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/Spinner.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>
#include <QTimerEvent>

namespace plovik {

namespace {

constexpr int stepMilliseconds = 60;
constexpr int stepDegrees = 30;

} // namespace

Spinner::Spinner(QWidget* parent) : QWidget(parent) { setFixedSize(Spinner::sizeHint()); }

void Spinner::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    timer_.start(stepMilliseconds, this);
}

void Spinner::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    timer_.stop();
}

void Spinner::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != timer_.timerId())
        return;
    turned_ = (turned_ + stepDegrees) % 360;
    update();
}

void Spinner::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF circle = QRectF(rect()).adjusted(2, 2, -2, -2);
    painter.setPen(QPen(theme.separator, 2));
    painter.drawEllipse(circle);
    painter.setPen(QPen(theme.accent, 2, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(circle, -turned_ * 16, 100 * 16);
}

} // namespace plovik

#include "moc_Spinner.cpp"

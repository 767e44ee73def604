// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/settings/SizeControl.h"

#include "app/ui/widgets/FocusRing.h"

#include <QLineEdit>
#include <QLocale>
#include <QPainter>
#include <QStyleOptionSpinBox>

#include <algorithm>

namespace plovik {

namespace {

constexpr int controlHeight = 28;
constexpr double radius = 6;

} // namespace

SizeControl::SizeControl(double smallest, double largest, QWidget* parent) : QDoubleSpinBox(parent)
{
    setRange(smallest, largest);
    setDecimals(1);
    setSuffix(tr(" points"));
    lineEdit()->setTextMargins(6, 0, 0, 0);
    lineEdit()->setAutoFillBackground(false);
}

QSize SizeControl::sizeHint() const
{
    const QSize plain = QDoubleSpinBox::sizeHint();
    return {plain.width() + 16, std::max(plain.height(), controlHeight)};
}

QString SizeControl::textFromValue(double value) const
{
    return locale().toString(value, 'f', QLocale::FloatingPointShortest);
}

void SizeControl::paintEvent(QPaintEvent* /*event*/)
{
    QStyleOptionSpinBox option;
    initStyleOption(&option);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), radius, radius);
    if (hasFocus())
        paintFocusRing(painter, rect(), radius);
    paintStep(painter, style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxUp, this), StepUpEnabled);
    paintStep(painter, style()->subControlRect(QStyle::CC_SpinBox, &option, QStyle::SC_SpinBoxDown, this),
              StepDownEnabled);
}

void SizeControl::paintStep(QPainter& painter, const QRect& area, StepEnabledFlag step) const
{
    const bool isPossible = isEnabled() && stepEnabled().testFlag(step);
    const double up = step == StepUpEnabled ? -1 : 1;
    // The two arrows are drawn close together so that they look like one sign.
    const QPointF tip = QRectF(area).center() + QPointF(-3, up * 1.0);
    painter.setPen(QPen(isPossible ? palette().color(QPalette::PlaceholderText)
                                   : palette().color(QPalette::Disabled, QPalette::Text),
                        1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF{tip + QPointF(-3.5, -up * 1.5), tip + QPointF(0, up * 1.8), tip + QPointF(3.5, -up * 1.5)});
}

} // namespace plovik

#include "moc_SizeControl.cpp"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionBar.h"

#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/Theme.h"

#include <QEvent>
#include <QPainter>

namespace plovik {

namespace {

constexpr int titleGap = 6;

} // namespace

DiffSectionBar::DiffSectionBar(QWidget* parent) : QWidget(parent)
{
    setCursor(Qt::ArrowCursor);
    setFixedHeight(barHeight());
    connect(&buttons_, &DiffButtons::triggered, this, &DiffSectionBar::triggered);
}

void DiffSectionBar::setText(const QString& title, const QString& detail)
{
    title_ = title;
    detail_ = detail;
    update();
}

void DiffSectionBar::setOffers(const std::vector<DiffOffer>& offers)
{
    buttons_.show(offers);
    placeButtons();
}

void DiffSectionBar::setFollows(bool follows)
{
    follows_ = follows;
    update();
}

void DiffSectionBar::setReserve(int width)
{
    reserve_ = width;
    placeButtons();
}

void DiffSectionBar::placeButtons()
{
    buttonsLeft_ = buttons_.place(rect().adjusted(0, 0, -DiffMetrics::margin - reserve_, 0));
    update();
}

void DiffSectionBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // as code is
    const Theme& theme = Theme::current();
    painter.fillRect(rect(), theme.content);
    painter.fillRect(0, height() - 1, width(), 1, theme.separator);
    if (follows_)
        painter.fillRect(0, 0, width(), 1, theme.separator);
    const QFont strong = Theme::font(0, QFont::DemiBold);
    QRect area = rect();
    area.setLeft(DiffMetrics::margin);
    area.setRight(buttonsLeft_ - titleGap);
    paintText(painter, area, title_, strong, theme.text, Qt::AlignLeft, Qt::ElideMiddle);
    area.setLeft(area.left() + textWidth(title_, strong) + 10);
    paintText(painter, area, detail_, Theme::font(), theme.secondaryText, Qt::AlignLeft, Qt::ElideMiddle);
}

void DiffSectionBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    placeButtons();
}

void DiffSectionBar::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() != QEvent::ApplicationFontChange)
        return;
    setFixedHeight(barHeight());
    buttons_.applyFont();
    placeButtons();
}

} // namespace plovik

#include "moc_DiffSectionBar.cpp"

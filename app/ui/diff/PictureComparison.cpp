// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/PictureComparison.h"

#include "app/ui/diff/CheckeredPicture.h"
#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <utility>

namespace plovik {

PictureComparison::PictureComparison(QImage before, QImage after, QWidget* parent)
    : QWidget(parent), beforeImage_(std::move(before)), afterImage_(std::move(after))
{}

void PictureComparison::setMode(PictureMode mode)
{
    mode_ = mode;
    setCursor(mode == PictureMode::swipe ? Qt::SplitHCursor : Qt::ArrowCursor);
    update();
}

void PictureComparison::setDrawnSizes(QSize before, QSize after)
{
    if (before != std::exchange(beforeSize_, before) || after != std::exchange(afterSize_, after))
        ratio_ = 0;
    resize(before.expandedTo(after) + QSize(2, 2));
    update();
}

void PictureComparison::setShare(int share)
{
    share_ = std::clamp(share, 0, 100);
    update();
}

QPixmap PictureComparison::scaled(const QImage& image, QSize size) const
{
    const QSize target = (QSizeF(size) * ratio_).toSize().expandedTo(QSize(1, 1));
    const bool isEnlarged = target.width() > image.width();
    QPixmap pixmap = QPixmap::fromImage(
        image.scaled(target, Qt::IgnoreAspectRatio, isEnlarged ? Qt::FastTransformation : Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(ratio_);
    return pixmap;
}

void PictureComparison::scale()
{
    ratio_ = devicePixelRatioF();
    before_ = scaled(beforeImage_, beforeSize_);
    after_ = scaled(afterImage_, afterSize_);
}

void PictureComparison::paintEvent(QPaintEvent*)
{
    // The window may have moved to another screen.
    if (ratio_ != devicePixelRatioF())
        scale();
    const Theme& theme = Theme::current();
    QPainter painter(this);
    const QRect inner = rect().adjusted(1, 1, -1, -1);
    const QRect before(inner.topLeft(), beforeSize_);
    const QRect after(inner.topLeft(), afterSize_);
    paintCheckers(painter, inner);
    if (mode_ == PictureMode::onion) {
        // Both fade, so that what is in one only is half there in the middle.
        painter.setOpacity(1 - share_ / 100.0);
        painter.drawPixmap(before, before_);
        painter.setOpacity(share_ / 100.0);
        painter.drawPixmap(after, after_);
        painter.setOpacity(1);
    } else {
        // The new picture is at the right of the line.
        const int line = inner.left() + inner.width() * (100 - share_) / 100;
        painter.setClipRect(QRect(inner.topLeft(), QPoint(line - 1, inner.bottom())));
        painter.drawPixmap(before, before_);
        painter.setClipRect(QRect(QPoint(line, inner.top()), inner.bottomRight()));
        painter.drawPixmap(after, after_);
        painter.setClipping(false);
        painter.fillRect(line - 1, inner.top(), 3, inner.height(), theme.content);
        painter.fillRect(line, inner.top(), 1, inner.height(), theme.accent);
    }
    painter.setPen(theme.separator);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

void PictureComparison::mousePressEvent(QMouseEvent* event)
{
    if (mode_ == PictureMode::swipe && event->button() == Qt::LeftButton)
        mouseMoveEvent(event);
    else
        QWidget::mousePressEvent(event);
}

void PictureComparison::mouseMoveEvent(QMouseEvent* event)
{
    if (mode_ == PictureMode::swipe)
        Q_EMIT shareMoved(std::clamp(100 - qRound(100 * event->position().x() / std::max(1, width())), 0, 100));
}

} // namespace plovik

#include "moc_PictureComparison.cpp"

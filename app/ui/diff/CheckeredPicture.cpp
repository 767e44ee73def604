// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/CheckeredPicture.h"

#include "app/ui/widgets/Theme.h"

#include <QPainter>

#include <utility>

namespace plovik {

namespace {

constexpr int square = 8;

} // namespace

void paintCheckers(QPainter& painter, const QRect& area)
{
    const Theme& theme = Theme::current();
    painter.save();
    painter.setClipRect(area);
    painter.fillRect(area, theme.content);
    for (int y = 0; y * square < area.height(); ++y) {
        for (int x = y % 2; x * square < area.width(); x += 2)
            painter.fillRect(area.left() + x * square, area.top() + y * square, square, square, theme.checker);
    }
    painter.restore();
}

CheckeredPicture::CheckeredPicture(QImage image, QWidget* parent) : QLabel(parent), image_(std::move(image)) {}

void CheckeredPicture::setDrawnSize(QSize size)
{
    resize(size + QSize(2, 2));
    if (size == drawn_ && ratio_ == devicePixelRatioF())
        return;
    drawn_ = size;
    scale();
}

void CheckeredPicture::scale()
{
    ratio_ = devicePixelRatioF();
    const QSize target = (QSizeF(drawn_) * ratio_).toSize().expandedTo(QSize(1, 1));
    const bool isEnlarged = target.width() > image_.width();
    QPixmap pixmap = QPixmap::fromImage(
        image_.scaled(target, Qt::IgnoreAspectRatio, isEnlarged ? Qt::FastTransformation : Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(ratio_);
    // The label's own pixmap makes it a picture for assistive technology as well.
    setPixmap(pixmap);
}

void CheckeredPicture::paintEvent(QPaintEvent*)
{
    // The window may have moved to another screen.
    if (ratio_ != devicePixelRatioF())
        scale();
    QPainter painter(this);
    const QRect inner = rect().adjusted(1, 1, -1, -1);
    paintCheckers(painter, inner);
    painter.drawPixmap(inner, pixmap(Qt::ReturnByValue));
    painter.setPen(Theme::current().separator);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}

} // namespace plovik

#include "moc_CheckeredPicture.cpp"

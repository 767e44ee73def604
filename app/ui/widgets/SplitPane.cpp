// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/SplitPane.h"

#include "app/ui/widgets/Theme.h"

#include <QMouseEvent>
#include <QPainter>

#include <algorithm>
#include <optional>

namespace plovik {

namespace {

constexpr int lineThickness = 1;
constexpr int hitThickness = 9;

} // namespace

double SplitLimits::maxSize(double available) const { return std::max(minSize, available - minOtherSize); }

double SplitLimits::clamped(double size, double available) const
{
    return std::min(maxSize(available), std::max(size, minSize));
}

/// The separator line inside a wider area that takes the pointer.
class SplitPane::Divider : public QWidget {
public:
    explicit Divider(SplitPane* pane) : QWidget(pane), pane_(pane)
    {
        setObjectName(QStringLiteral("divider"));
        setAccessibleName(QStringLiteral("Divider"));
        setCursor(pane->orientation_ == Qt::Horizontal ? Qt::SizeHorCursor : Qt::SizeVerCursor);
    }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        Q_UNUSED(event)
        QRect line = rect();
        constexpr int margin = (hitThickness - lineThickness) / 2;
        if (pane_->orientation_ == Qt::Horizontal)
            line.adjust(margin, 0, -margin, 0);
        else
            line.adjust(0, margin, 0, -margin);
        QPainter(this).fillRect(line, Theme::current().separator);
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        pressed_ = event->globalPosition();
        startSize_.reset();
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!pressed_)
            return;
        // From the press on, never from the last move: rounding and clamping then cannot make the divider drift.
        const QPointF translation = event->globalPosition() - *pressed_;
        if (!startSize_) {
            if (translation.manhattanLength() < 1)
                return;
            startSize_ = pane_->currentSize();
        }
        pane_->drag(*startSize_, translation.toPoint());
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        if (event->button() != Qt::LeftButton)
            return;
        pressed_.reset();
        startSize_.reset();
    }

private:
    SplitPane* pane_;
    std::optional<QPointF> pressed_;
    std::optional<double> startSize_;
};

SplitPane::SplitPane(const Setting<double>& size, Qt::Orientation orientation, Sized sized, double minSize,
                     double minOtherSize, QWidget* first, QWidget* second, QWidget* parent)
    : QWidget(parent), size_(size), orientation_(orientation), sized_(sized), limits_{minSize, minOtherSize},
      first_(first), second_(second)
{
    first_->setParent(this);
    second_->setParent(this);
    divider_ = new Divider(this);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(size_.key))
            arrange();
    });
}

double SplitPane::available() const { return orientation_ == Qt::Horizontal ? width() : height(); }

double SplitPane::currentSize() const
{
    const double kept = Settings::shared().value(size_);
    return limits_.clamped(kept > 0 ? kept : size_.fallback, available());
}

void SplitPane::drag(double startSize, QPoint translation)
{
    const int along = orientation_ == Qt::Horizontal ? translation.x() : translation.y();
    const double grown = startSize + (sized_ == Sized::first ? along : -along);
    Settings::shared().set(size_, limits_.clamped(grown, available()));
}

void SplitPane::setSizedVisible(bool visible)
{
    isSizedVisible_ = visible;
    sizedPane()->setVisible(visible);
    divider_->setVisible(visible);
    updateGeometry();
    arrange();
}

void SplitPane::arrange()
{
    if (!isSizedVisible_) {
        otherPane()->setGeometry(rect());
        return;
    }
    const int length = static_cast<int>(available());
    const int sizedLength = qRound(currentSize());
    const int otherLength = std::max(0, length - sizedLength - lineThickness);
    const int firstLength = sized_ == Sized::first ? sizedLength : otherLength;
    const int secondStart = firstLength + lineThickness;
    const int secondLength = sized_ == Sized::second ? sizedLength : otherLength;
    const int dividerStart = firstLength - (hitThickness - lineThickness) / 2;
    if (orientation_ == Qt::Horizontal) {
        first_->setGeometry(0, 0, firstLength, height());
        second_->setGeometry(secondStart, 0, secondLength, height());
        divider_->setGeometry(dividerStart, 0, hitThickness, height());
    } else {
        first_->setGeometry(0, 0, width(), firstLength);
        second_->setGeometry(0, secondStart, width(), secondLength);
        divider_->setGeometry(0, dividerStart, width(), hitThickness);
    }
    divider_->raise();
}

void SplitPane::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    arrange();
}

bool SplitPane::event(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        divider_->update();
    return QWidget::event(event);
}

QSize SplitPane::minimumSizeHint() const
{
    const int sizedAlong = isSizedVisible_ ? qRound(limits_.minSize) + lineThickness : 0;
    const int along = sizedAlong + qRound(limits_.minOtherSize);
    const QSize first = first_->minimumSizeHint();
    const QSize second = second_->minimumSizeHint();
    if (orientation_ == Qt::Horizontal)
        return {along, std::max({first.height(), second.height(), 0})};
    return {std::max({first.width(), second.width(), 0}), along};
}

QSize SplitPane::sizeHint() const { return minimumSizeHint().expandedTo({640, 480}); }

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/SplitPane.h"

#include <QAccessibleWidget>
#include <QMouseEvent>
#include <QPainter>
#include <QSplitterHandle>

#include <algorithm>
#include <optional>
#include <utility>

namespace plovik {

namespace {

constexpr int lineThickness = 1;
constexpr int hitThickness = 9;

/// The separator line inside a wider area that takes the pointer.
class Divider : public QSplitterHandle {
public:
    Divider(Qt::Orientation orientation, QSplitter* split) : QSplitterHandle(orientation, split)
    {
        setAccessibleName(SplitPane::tr("Divider"));
        constexpr int margin = (hitThickness - lineThickness) / 2;
        const bool isUpright = orientation == Qt::Horizontal;
        setContentsMargins(isUpright ? margin : 0, isUpright ? 0 : margin, isUpright ? margin : 0,
                           isUpright ? 0 : margin);
        setAttribute(Qt::WA_MouseNoMask);
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter(this).fillRect(contentsRect(), palette().color(QPalette::Dark));
    }

    /// The base class would give a thin line five pixels to be caught at, which are few.
    void resizeEvent(QResizeEvent* event) override
    {
        QWidget::resizeEvent(event); // NOLINT(bugprone-parent-virtual-call): the base class sets another mask
        setMask(contentsRect());
    }

    // The base class counts from the border of the area, so that the line would jump at the first move.
    void mousePressEvent(QMouseEvent* event) override
    {
        QSplitterHandle::mousePressEvent(event);
        if (event->button() == Qt::LeftButton)
            caughtAt_ = event->position().toPoint() - contentsRect().topLeft();
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (!caughtAt_)
            return;
        const QPoint line = splitter()->mapFromGlobal(event->globalPosition().toPoint()) - *caughtAt_;
        moveSplitter(orientation() == Qt::Horizontal ? line.x() : line.y());
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        QSplitterHandle::mouseReleaseEvent(event);
        caughtAt_.reset();
    }

private:
    std::optional<QPoint> caughtAt_; ///< from the line's corner
};

/// The toolkit calls it a grip, which assistive technology does not know.
void nameDividers()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory([](const QString&, QObject* object) -> QAccessibleInterface* {
            auto* const divider = dynamic_cast<Divider*>(object);
            return divider ? new QAccessibleWidget(divider, QAccessible::Splitter) : nullptr;
        });
        return true;
    }();
    Q_UNUSED(isInstalled)
}

int along(Qt::Orientation orientation, QSize size)
{
    return orientation == Qt::Horizontal ? size.width() : size.height();
}

} // namespace

double SplitLimits::maxSize(double available) const { return std::max(minSize, available - minOtherSize); }

double SplitLimits::clamped(double size, double available) const
{
    return std::min(maxSize(available), std::max(size, minSize));
}

SplitPane::SplitPane(const Setting<double>& size, Qt::Orientation orientation, Sized sized, double minSize,
                     double minOtherSize, QWidget* first, QWidget* second, QWidget* parent)
    : QSplitter(orientation, parent), size_(size), sized_(sized), limits_{minSize, minOtherSize}
{
    nameDividers();
    setHandleWidth(lineThickness);
    setChildrenCollapsible(false);
    for (QWidget* child : {first, second}) {
        // The limits of the split hold, whatever its children would like to have.
        const bool isUpright = orientation == Qt::Vertical;
        child->setMinimumSize(isUpright ? child->minimumWidth() : 1, isUpright ? 1 : child->minimumHeight());
        addWidget(child);
    }
    connect(this, &QSplitter::splitterMoved, this, &SplitPane::keepDragged);
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(size_.key))
            arrange();
    });
}

QSplitterHandle* SplitPane::createHandle() { return new Divider(orientation(), this); }

double SplitPane::available() const { return along(orientation(), size()); }

double SplitPane::currentSize() const
{
    const double kept = Settings::shared().value(size_);
    const double unkept = automatic_ ? automatic_(available()) : size_.fallback;
    return limits_.clamped(kept > 0 ? kept : unkept, available());
}

void SplitPane::setAutomatic(std::function<double(double available)> size)
{
    automatic_ = std::move(size);
    handle(1)->installEventFilter(this);
    arrange();
}

bool SplitPane::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != handle(1) || event->type() != QEvent::MouseButtonDblClick)
        return QSplitter::eventFilter(watched, event);
    Settings::shared().set(size_, size_.fallback);
    return true;
}

void SplitPane::setSizedVisible(bool visible)
{
    widget(sizedIndex())->setVisible(visible);
    refresh();
    updateGeometry();
    arrange();
}

void SplitPane::keepDragged()
{
    Settings::shared().set(size_, limits_.clamped(sizes().at(sizedIndex()), available()));
    // Beyond a limit the setting does not change, but the divider has moved.
    arrange();
}

void SplitPane::arrange()
{
    const int sizedLength = qRound(currentSize());
    QList<int> lengths{sizedLength, sizedLength};
    lengths[1 - sizedIndex()] = std::max(0, static_cast<int>(available()) - sizedLength - lineThickness);
    setSizes(lengths);
}

void SplitPane::resizeEvent(QResizeEvent* event)
{
    QSplitter::resizeEvent(event);
    arrange();
}

QSize SplitPane::minimumSizeHint() const
{
    const bool isSizedShown = !widget(sizedIndex())->isHidden();
    const int length = qRound(limits_.minOtherSize) + (isSizedShown ? qRound(limits_.minSize) + lineThickness : 0);
    const QSize across = widget(0)->minimumSizeHint().expandedTo(widget(1)->minimumSizeHint()).expandedTo({0, 0});
    return orientation() == Qt::Horizontal ? QSize(length, across.height()) : QSize(across.width(), length);
}

QSize SplitPane::sizeHint() const { return minimumSizeHint().expandedTo({640, 480}); }

} // namespace plovik

#include "moc_SplitPane.cpp"

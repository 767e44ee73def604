// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/app/PaintedTexts.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainter>
#include <QWidget>

namespace plovik::test {

namespace {

/// Keeps texts, and throws everything else away.
class TextEngine : public QPaintEngine {
public:
    explicit TextEngine(QRectF room) : QPaintEngine(AllFeatures), room_(room) {}

    bool begin(QPaintDevice* /*device*/) override { return true; }
    bool end() override { return true; }
    Type type() const override { return User; }
    void updateState(const QPaintEngineState& /*state*/) override {}
    void drawPixmap(const QRectF& /*to*/, const QPixmap& /*pixmap*/, const QRectF& /*from*/) override {}
    void drawImage(const QRectF& /*to*/, const QImage& /*image*/, const QRectF& /*from*/,
                   Qt::ImageConversionFlags /*flags*/) override
    {}
    void drawTiledPixmap(const QRectF& /*to*/, const QPixmap& /*pixmap*/, const QPointF& /*from*/) override {}
    void drawPath(const QPainterPath& /*path*/) override {}
    void drawPolygon(const QPointF* /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}
    void drawTextItem(const QPointF& at, const QTextItem& item) override
    {
        const QTransform toWidget = painter()->combinedTransform();
        const QRectF place(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        const QRectF room =
            painter()->hasClipping() ? toWidget.mapRect(painter()->clipBoundingRect()).intersected(room_) : room_;
        texts.push_back({item.text(), toWidget.mapRect(place), room});
    }

    std::vector<PaintedText> texts;

private:
    QRectF room_;
};

class TextDevice : public QPaintDevice {
public:
    explicit TextDevice(const QWidget& widget) : engine_(QRectF(widget.rect())), like_(widget) {}

    QPaintEngine* paintEngine() const override { return &engine_; }
    const std::vector<PaintedText>& texts() const { return engine_.texts; }

protected:
    int metric(PaintDeviceMetric metric) const override
    {
        switch (metric) {
        case PdmWidth:
            return like_.width();
        case PdmHeight:
            return like_.height();
        case PdmWidthMM:
            return like_.widthMM();
        case PdmHeightMM:
            return like_.heightMM();
        case PdmDpiX:
        case PdmPhysicalDpiX:
            return like_.logicalDpiX();
        case PdmDpiY:
        case PdmPhysicalDpiY:
            return like_.logicalDpiY();
        case PdmDepth:
            return 32;
        case PdmNumColors:
            return 0;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default: // newer versions of Qt have more
            return QPaintDevice::metric(metric);
        }
    }

private:
    mutable TextEngine engine_;
    const QWidget& like_;
};

} // namespace

std::vector<PaintedText> paintedTexts(QWidget& widget)
{
    TextDevice device(widget);
    widget.render(&device, {}, {}, {});
    return device.texts();
}

} // namespace plovik::test

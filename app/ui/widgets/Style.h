// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace plovik {

/// Draws the ordinary controls in the colours of the theme in force, over Qt's Fusion. It uses no style sheet, which
/// would cost time at the start and in item views. A push button with the dynamic property "primary" is filled with the
/// accent colour, one with "destructive" with the colour for losing work, and one with "compact" is low enough for a
/// bar.
class Style : public QProxyStyle {
    Q_OBJECT

public:
    Style();

    void polish(QWidget* widget) override;
    using QProxyStyle::polish;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override;
};

} // namespace plovik

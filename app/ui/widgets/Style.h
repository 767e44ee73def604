// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProxyStyle>

namespace plovik {

/// The look of the ordinary controls, drawn from the theme in force over Qt's Fusion: no style sheet, so nothing is
/// parsed at the start and item views pay nothing. A push button with the dynamic property "primary" is filled with the
/// accent, a "destructive" one with the colour of what cannot be taken back; one with "compact" is as low as a bar
/// needs it.
class Style : public QProxyStyle {
    Q_OBJECT

public:
    Style();

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

/// Draws a check box as the style does, for rows that hold one.
void paintCheckBox(QPainter& painter, const QRect& box, Qt::CheckState state, bool isEnabled, bool hasFocus);

} // namespace plovik

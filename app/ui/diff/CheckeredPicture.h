// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QLabel>

class QPainter;

namespace plovik {

/// Draws the quiet checkerboard behind pictures.
void paintCheckers(QPainter& painter, const QRect& area);

/// Shows a picture on a quiet checkerboard, which is seen through its transparent parts. Small pictures keep sharp
/// edges when they are enlarged. Main thread.
class CheckeredPicture : public QLabel {
    Q_OBJECT

public:
    explicit CheckeredPicture(QImage image, QWidget* parent);

    void setDrawnSize(QSize size);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void scale();

    QImage image_;
    QSize drawn_;
    qreal ratio_ = 0; ///< of the screen that the picture was scaled for
};

} // namespace plovik

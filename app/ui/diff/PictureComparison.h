// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QImage>
#include <QPixmap>
#include <QWidget>

namespace plovik {

/// How the two sides of a changed picture are shown.
enum class PictureMode {
    beside,
    swipe, ///< one over the other, the new one behind a line that can be moved
    onion, ///< one over the other, the new one more or less transparent
};

/// Shows two pictures over each other, with their upper left corners in the same place. Main thread.
class PictureComparison : public QWidget {
    Q_OBJECT

public:
    PictureComparison(QImage before, QImage after, QWidget* parent);

    void setMode(PictureMode mode);
    void setDrawnSizes(QSize before, QSize after);
    /// Sets how much is seen of the new picture, from 0 to 100.
    void setShare(int share);

Q_SIGNALS:
    /// The line was moved with the pointer.
    void shareMoved(int share);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;

private:
    void scale();
    QPixmap scaled(const QImage& image, QSize size) const;

    QImage beforeImage_, afterImage_;
    QPixmap before_, after_;
    QSize beforeSize_, afterSize_;
    qreal ratio_ = 0; ///< of the screen that the pictures were scaled for
    PictureMode mode_ = PictureMode::swipe;
    int share_ = 50;
};

} // namespace plovik

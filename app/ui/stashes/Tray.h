// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRectF>
#include <QWidget>

class QPainter;

namespace plovik {

/// Draws a tray, the sign of a stash, as high and as wide as `area`, which is square.
void paintTray(QPainter& painter, const QRectF& area, const QColor& color);

/// A tray on its own, for where there are no stashes. Main thread.
class TraySign : public QWidget {
    Q_OBJECT

public:
    explicit TraySign(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QColor>
#include <QRectF>
#include <QWidget>

class QPainter;

namespace plovik {

/// Draws a tray, the sign of a stash, that fills `area`. `area` must be square.
void paintTray(QPainter& painter, const QRectF& area, const QColor& color);

/// A widget that shows a tray, for the place where there are no stashes. Main thread.
class TraySign : public QWidget {
    Q_OBJECT

public:
    explicit TraySign(QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace plovik

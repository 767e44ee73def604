// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDoubleSpinBox>

namespace plovik {

/// A field for a size, by default in points, with buttons for up and down, which looks like the pickers around it. Main thread.
class SizeControl : public QDoubleSpinBox {
    Q_OBJECT

public:
    SizeControl(double smallest, double largest, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    /// Writes no needless zeros: "12", "12.5".
    QString textFromValue(double value) const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void paintStep(QPainter& painter, const QRect& area, StepEnabledFlag step) const;
};

} // namespace plovik

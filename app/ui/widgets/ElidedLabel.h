// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QLabel>

namespace plovik {

/// Plain text on one line that is cut where it does not fit; its tooltip then has all of it. Main thread.
class ElidedLabel : public QLabel {
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget* parent);

    /// Makes the preferred width at least `width` pixels, whatever the text.
    void reserve(int width);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override;

private:
    int reserved_ = 0;
};

} // namespace plovik

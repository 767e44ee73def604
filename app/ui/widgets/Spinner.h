// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace plovik {

/// A small arc that turns while something runs. Costs nothing while it is hidden. Main thread.
class Spinner : public QWidget {
    Q_OBJECT

public:
    explicit Spinner(QWidget* parent = nullptr);

    QSize sizeHint() const override { return {14, 14}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    QBasicTimer timer_;
    int turned_ = 0; ///< degrees
};

} // namespace plovik

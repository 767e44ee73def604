// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

/// The background of the bars below the toolbar that tell of something unusual. Main thread.
class WarningBar : public QWidget {
    Q_OBJECT

public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace plovik

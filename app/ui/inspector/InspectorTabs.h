// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTabBar>

namespace plovik {

/// Tabs as quiet as the bars around them: plain titles, the current one underlined. Main thread.
class InspectorTabs : public QTabBar {
    Q_OBJECT

public:
    explicit InspectorTabs(QWidget* parent = nullptr);

protected:
    QSize tabSizeHint(int index) const override;
    QSize minimumTabSizeHint(int index) const override { return tabSizeHint(index); }
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    int hovered_ = -1;
};

} // namespace plovik

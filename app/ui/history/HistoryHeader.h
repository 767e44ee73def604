// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/history/HistoryColumns.h"

#include <QWidget>

#include <array>
#include <optional>

class QLabel;
class QToolButton;

namespace plovik {

/// The titles above the columns of a history list. Their edges are dragged to resize the columns, a double click on an
/// edge gives a column its usual width, the menu hides columns, and "Date" switches between relative and absolute
/// dates. What is chosen is kept in the settings. Main thread.
class HistoryHeader : public QWidget {
    Q_OBJECT

public:
    explicit HistoryHeader(QWidget* parent = nullptr);

    /// Puts the titles above `columns`.
    void setColumns(const HistoryColumns& columns);

    QSize sizeHint() const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    std::optional<HistoryColumns::Edge> edgeAt(double x) const;
    double logicalX(double x) const;
    void showDateChoice();

    HistoryColumns columns_;
    QLabel *graph_, *subject_, *author_, *hash_;
    QToolButton* date_;
    std::optional<HistoryColumns::Edge> dragged_;
    double grip_ = 0; ///< from the pointer to the dragged edge
};

} // namespace plovik

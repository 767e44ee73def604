// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QListView>

#include <functional>

namespace plovik {

/// A list of equally high rows, each as wide as the list, that scrolls by pixel. Where a row stands is computed from its
/// number: QListView goes through all rows whenever one comes or changes, which takes too long for a million. The height
/// is what the delegate wants for the first row. Main thread.
class EqualRowList : public QListView {
    Q_OBJECT

public:
    explicit EqualRowList(QWidget* parent = nullptr);

    /// Lets rows be dragged: `begin` is called with the place in the viewport where the mouse was pressed. The model says which
    /// rows can be dragged.
    void setDragged(std::function<void(QPoint pressed)> begin);

    QRect visualRect(const QModelIndex& index) const override;
    QModelIndex indexAt(const QPoint& point) const override;
    void reset() override;
    void doItemsLayout() override;

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void startDrag(Qt::DropActions supportedActions) override;
    void paintEvent(QPaintEvent* event) override;
    void updateGeometries() override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) override;
    void rowsInserted(const QModelIndex& parent, int first, int last) override;

private:
    /// Takes over a change that is to be laid out later, so that places are true at any time.
    void layOutIfNeeded() const;
    int rowCount() const;
    /// Returns the row at a height of the viewport, which may be above the first or below the last one.
    int rowAtHeight(int y) const;
    QModelIndex row(int number) const;

    int rowHeight_ = 0; ///< 0 while there are no rows
    QPoint pressed_;
    std::function<void(QPoint pressed)> beginDrag_;
};

} // namespace plovik

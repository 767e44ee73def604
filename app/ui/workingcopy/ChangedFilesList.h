// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/RowList.h"

#include <QElapsedTimer>
#include <QPersistentModelIndex>

namespace plovik {

/// The list of changed files. It turns mouse and keyboard into signals and changes no file itself. Typing finds a file by
/// the beginning of its name or of its path. Main thread.
class ChangedFilesList : public RowList {
    Q_OBJECT

public:
    explicit ChangedFilesList(QWidget* parent = nullptr);

    void keyboardSearch(const QString& typed) override;

Q_SIGNALS:
    /// The check box of a row was clicked. The selection has not changed.
    void checkBoxClicked(const QModelIndex& index);
    /// The space bar was pressed and there is a selection.
    void toggleRequested();
    void openRequested();
    void discardRequested();
    void menuRequested(const QPoint& globalPosition);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    QModelIndex checkBoxAt(const QPoint& point) const;
    bool pressCheckBox(const QMouseEvent& event);
    /// Selects the current row when nothing is selected. Returns false when there is no current row either.
    bool selectCurrent();

    QPersistentModelIndex pressed_; ///< the row whose check box was pressed
    bool isPressing_ = false;
    QString typed_;
    QElapsedTimer sinceTyped_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/RowList.h"

#include <QElapsedTimer>
#include <QPersistentModelIndex>

namespace plovik {

/// The list of changed files with its mouse and keyboard: says what the user asks for and does none of it. Typing finds
/// a file by the beginning of its name or of its path. Main thread.
class ChangedFilesList : public RowList {
    Q_OBJECT

public:
    explicit ChangedFilesList(QWidget* parent = nullptr);

    void keyboardSearch(const QString& typed) override;

Q_SIGNALS:
    /// A click on a row's check box; the selection is as it was.
    void checkBoxClicked(const QModelIndex& index);
    /// The space bar; there is a selection.
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
    /// Selects the row that the keyboard is on when nothing is selected; false when there is no such row either.
    bool selectCurrent();
    QModelIndex nextMatch(const QString& typed, int from) const;

    QPersistentModelIndex pressed_; ///< the row whose check box the button went down on
    bool isPressing_ = false;
    QString typed_;
    QElapsedTimer sinceTyped_;
};

} // namespace plovik

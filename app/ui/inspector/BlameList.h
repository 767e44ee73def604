// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/inspector/BlameModel.h"
#include "app/ui/inspector/BlameRowPainter.h"

#include <QListView>

#include <memory>
#include <vector>

class QMenu;

namespace plovik {

/// The lines of a blamed file with who wrote them. What a frame costs depends on what is in sight. What tells of the
/// commit stays at the left while the code scrolls sideways, and a run that began above is told of at the top. Main
/// thread.
class BlameList : public QListView {
    Q_OBJECT

public:
    explicit BlameList(QWidget* parent = nullptr);

    /// A row and how far below the top of the list it stands.
    struct Place {
        int row = -1;
        int y = 0;
    };

    /// `place` is where the list stands then; at the top without a row.
    void setDocument(std::shared_ptr<const BlameDocument> document, Place place);
    /// What is to be found again in another blame of the file.
    struct Hold {
        int top = -1; ///< the first row in sight
        int y = 0;    ///< where that stands
        int current = -1;
        int firstSelected = -1, lastSelected = -1;
    };
    Hold hold() const;
    /// The same file as it is now, its rows where they were.
    void replaceDocument(std::shared_ptr<const BlameDocument> document, const Hold& hold);
    /// The colours of the code, once they are known.
    void setSyntax(std::shared_ptr<const FileSyntax> syntax);
    const std::shared_ptr<const BlameDocument>& document() const { return model_->document(); }

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    /// The place of a row now.
    Place placeOf(int row) const;
    /// The first row in sight; -1 in an empty list.
    int topRow() const;
    /// How many lines have been drawn since the list was made.
    int linesDrawn() const { return linesDrawn_; }
    int currentRow() const { return currentIndex().row(); }
    std::vector<int> selectedRows() const;

    /// The menu of the current row. The caller's to delete.
    QMenu* makeMenu();
    /// Why there is no blame before the row's commit; empty when there is one.
    QString reasonAgainstBefore(int row) const;

public Q_SLOTS:
    /// The bytes of the selected lines, as text.
    void copy();

Q_SIGNALS:
    void commitRequested(int row);
    void beforeRequested(int row);
    void backRequested();
    void fileHistoryRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyboardSearch(const QString& typed) override;

private:
    class Delegate;

    void takeDocument(std::shared_ptr<const BlameDocument> document);
    void measure();
    void scrollRowTo(Place place);
    void pointAt(QPoint point);
    bool isOnBeforeButton(QPoint point) const;
    void askForBefore(int row);
    void showAbout(QPoint global, QPoint point);

    BlameModel* model_;
    BlameRowPainter rows_;
    int hovered_ = -1; ///< the row whose commit the pointer is on
    int pressed_ = -1; ///< the row whose commit a press began on
    bool pressedButton_ = false;
    int linesDrawn_ = 0;
};

} // namespace plovik

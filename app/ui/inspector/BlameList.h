// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/inspector/BlameModel.h"
#include "app/ui/inspector/BlameRowPainter.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QListView>

#include <memory>
#include <vector>

class QMenu;

namespace plovik {

/// The lines of a blamed file with the commits that wrote them. Painting costs time for the rows in sight alone. The
/// annotation stays at the left while the code scrolls sideways, and the first row in sight shows the commit of its run
/// even when the run began above. Main thread.
class BlameList : public QListView, public ContextMenuSource {
    Q_OBJECT

public:
    explicit BlameList(QWidget* parent = nullptr);

    /// A row and how far below the top of the list it stands.
    struct Place {
        int row = -1;
        int y = 0;
    };

    /// Shows a file scrolled to `place`, or from the top when `place` has no row.
    void setDocument(std::shared_ptr<const BlameDocument> document, Place place);
    /// Rows to find again in another blame of the same file.
    struct Hold {
        int top = -1; ///< the first row in sight
        int y = 0;    ///< how far below the top of the list it stands
        int current = -1;
        int firstSelected = -1, lastSelected = -1;
    };
    Hold hold() const;
    /// Shows another blame of the same file with the rows of `hold` where they were.
    void replaceDocument(std::shared_ptr<const BlameDocument> document, const Hold& hold);
    /// Sets the colours of the code, which arrive after the document.
    void setSyntax(std::shared_ptr<const FileSyntax> syntax);
    const std::shared_ptr<const BlameDocument>& document() const { return model_->document(); }

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    /// Returns where a row stands now.
    Place placeOf(int row) const;
    /// Returns the first row in sight, or -1 when the list is empty.
    int topRow() const;
    /// Returns the width of the commits' column, in pixels.
    int gutterWidth() const { return rows_.annotationWidth(); }
    /// Returns how many lines have been drawn since the list was made.
    int linesDrawn() const { return linesDrawn_; }
    /// Tints what a search has found; null without a search. Not owned.
    void setFound(const DiffFound* found);
    /// Brings a match into sight and makes its row current.
    void reveal(const DiffFound::Run& match);
    int currentRow() const { return currentIndex().row(); }
    std::vector<int> selectedRows() const;

    /// Returns why there is no blame before the row's commit, or an empty text when there is one.
    QString reasonAgainstBefore(int row) const;
    /// Sets why the lines are not those of a commit, so that their history cannot be asked for; empty where they are.
    void setReasonAgainstLines(const QString& reason) { reasonAgainstLines_ = reason; }
    const QString& reasonAgainstLines() const { return reasonAgainstLines_; }
    /// Asks for that blame, if there is one.
    void askForBefore(int row);

public Q_SLOTS:
    /// Copies the selected lines to the clipboard.
    void copy();

    /// Returns the menu of the current line, or null when there is none.
    QMenu* makeContextMenu() override;

Q_SIGNALS:
    void commitRequested(int row);
    void beforeRequested(int row);
    void backRequested();
    void fileHistoryRequested();
    void linesHistoryRequested(const gitkit::LineRange& lines);
    /// A link to lines is wanted, to be opened or copied.
    void linesLinkRequested(const gitkit::LineRange& lines, bool isOpened);

protected:
    void paintEvent(QPaintEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
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
    bool isOnGutterEdge(QPoint point) const;
    void showAbout(QPoint global, QPoint point);

    BlameModel* model_;
    int turned_ = 0; ///< by the wheel with Ctrl, since the code font's size changed
    BlameRowPainter rows_;
    int hovered_ = -1; ///< the row whose commit the pointer is on
    int pressed_ = -1; ///< the row whose commit a press began on
    bool pressedButton_ = false;
    bool isResizing_ = false; ///< the annotation, by its edge
    const DiffFound* found_ = nullptr;
    int linesDrawn_ = 0;
    QString reasonAgainstLines_;
};

} // namespace plovik

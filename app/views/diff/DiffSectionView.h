#pragma once

#include "app/views/diff/DiffAction.h"
#include "app/views/diff/DiffDocument.h"
#include "app/views/diff/DiffMetrics.h"
#include "app/views/diff/DiffSelection.h"

#include <QBasicTimer>
#include <QWidget>

#include <map>
#include <optional>

class QPushButton;

namespace plovik {

class DiffSectionBar;

/// One diff with its bar, as high as all of its lines; the view that it stands in scrolls it. Draws only what is
/// exposed. The keyboard has a line of its own; hunks and selected lines are staged, unstaged and discarded from
/// buttons, keys and a menu, where the content allows it. Main thread.
class DiffSectionView : public QWidget {
    Q_OBJECT

public:
    explicit DiffSectionView(QWidget* parent);

    /// Forgets the selection unless the diff is equal; the keyboard goes on near to where it was when `place` is kept.
    void setContent(DiffContent content, DiffPlace place);
    const DiffContent& content() const { return content_; }
    const DiffDocument& document() const { return document_; }
    const DiffNotes& notes() const { return notes_; }
    const DiffMetrics& metrics() const { return metrics_; }

    int heightFor(int width) const;
    /// Of the longest line, with the gutter.
    int contentWidth() const;
    void setOffset(int offset); ///< the horizontal scroll position
    void setVisibleTop(int y);  ///< what of this widget is scrolled out of sight
    void setFollows(bool follows);
    /// Without, buttons are disabled and keys do nothing: what is shown is about to be replaced.
    void setActionsAvailable(bool available);

    const DiffSelection& selection() const { return selection_; }
    /// The ids of the changes that are selected.
    std::set<int> selectedChanges() const;
    /// The row that the keyboard is on; -1 when there are none.
    int currentRow() const { return current_; }
    void setCurrentRow(int row);
    /// Where a row stands in this widget.
    QRect rowRect(int row) const;
    /// The lines as text with their signs, the sentences before and after them.
    QString plainText() const;
    /// Grows with every new content, so that who keeps something of it knows when it is old.
    int contentRevision() const { return contentRevision_; }

public Q_SLOTS:
    void copy();
    void selectAll();

Q_SIGNALS:
    void actionRequested(const plovik::DiffAction& action);
    void contentHeightChanged();
    void revealRequested(const QRect& area);
    /// The keyboard wants to go on to the diff before (-1) or behind (1).
    void leaveRequested(int direction);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    // Geometry (DiffSectionView.cpp)
    int barHeight() const;
    int notesHeight(const QStringList& notes, int width) const;
    int rowsTop() const;
    QRect visibleRowsArea() const;
    int rowAt(int y) const;
    bool isInGutter(int x) const { return x < metrics_.codeLeft; }
    void remeasure();
    void showDocument(DiffPlace place);
    void applyFonts();
    void paintNotes(QPainter& painter, const QStringList& notes, int top) const;
    void paintRows(QPainter& painter, const QRect& exposed) const;

    // What is offered (DiffSectionActions.cpp)
    int activeHunk() const;
    int keyboardHunk() const { return current_ < 0 ? -1 : document_.row(current_).hunk; }
    bool canTakeHunks() const;
    void request(DiffAction::Verb verb, DiffAction::Part part);
    void requestOf(int hunk, DiffAction::Verb verb, DiffAction::Part part);
    void requestFromKey(DiffAction::Verb verb);
    void updateOffers();
    void addHunkButton(DiffAction::Verb verb);
    void placeHunkButtons();
    void paintHunkButtons(QPainter& painter, int row) const;
    int hunkButtonsWidth() const;
    void orderTabs();
    void addActions(class QMenu& menu);

    // The user's hands (DiffSectionInput.cpp)
    void selectionChanged();
    void moveCurrent(int row, bool extend);
    void moveToHunk(int direction);
    bool handleMovement(QKeyEvent* event);
    void dragTo(QPoint point);
    DiffPosition positionAt(QPoint point) const;
    void pointAt(QPoint point);

    int contentRevision_ = 0;
    DiffContent content_;
    DiffDocument document_;
    DiffNotes notes_;
    DiffMetrics metrics_;
    DiffSelection selection_;
    int current_ = -1;
    int hovered_ = -1; ///< hunk under the pointer
    int offset_ = 0;
    int visibleTop_ = 0;
    bool isAvailable_ = true;
    enum class Drag { none, lines, text } drag_ = Drag::none;
    QBasicTimer dragTimer_; ///< scrolls on while the pointer rests outside
    QPoint dragPoint_;
    DiffSectionBar* bar_;
    std::map<DiffAction::Verb, QPushButton*> hunkButtons_;
};

} // namespace plovik

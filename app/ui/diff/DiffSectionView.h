// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffCell.h"
#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffLines.h"
#include "app/ui/diff/DiffMetrics.h"
#include "app/ui/diff/DiffSelection.h"

#include <QBasicTimer>
#include <QWidget>

#include <functional>
#include <map>
#include <optional>
#include <vector>

class QPushButton;

namespace plovik {

class DiffRowPainter;
class DiffSectionBar;
struct DiffFound;

/// One diff with its bar, as high as all of its lines; the view that it stands in scrolls it. Draws only what is
/// exposed. The keyboard has a line of its own; hunks and selected lines are staged, unstaged and discarded from
/// buttons, keys and a menu, where the content allows it. With the whole files at hand, lines that the diff leaves out
/// can be shown. Main thread.
class DiffSectionView : public QWidget {
    Q_OBJECT

public:
    explicit DiffSectionView(QWidget* parent);

    /// Forgets the selection unless the diff is equal; the keyboard goes on near to where it was when `place` is kept.
    void setContent(DiffContent content, DiffPlace place);
    const DiffContent& content() const { return content_; }
    const DiffDocument& document() const { return document_; }
    const DiffNotes& notes() const { return notes_; }
    const DiffLines& lines() const { return lines_; }
    const DiffMetrics& metrics() const { return metrics_; }
    /// The files that the diff compares; forgotten when the diff changes.
    void setTexts(DiffTexts texts);
    /// The colours of their code; forgotten likewise.
    void setSyntax(const SyntaxOf& syntax);
    void setDiffLayout(DiffLayout layout);
    /// As far as the files are known, and as soon as they are.
    void setShowsWholeFile(bool whole);

    int heightFor(int width) const;
    /// By how much the longest line is longer than there is room for it.
    int hiddenWidth(int width) const;
    void setOffset(int offset); ///< the horizontal scroll position
    void setVisibleTop(int y);  ///< what of this widget is scrolled out of sight
    void setFollows(bool follows);
    void setBarReserve(int width); ///< see DiffSectionBar::setReserve()
    /// Without, buttons are disabled and keys do nothing: what is shown is about to be replaced.
    void setActionsAvailable(bool available);

    const DiffSelection& selection() const { return selection_; }
    /// The ids of the changes that are selected.
    std::set<int> selectedChanges() const;
    /// What copy() takes.
    QString selectedText() const;
    /// The rows that are selected, were it only in part, in order.
    std::vector<int> selectedRows() const;
    /// The row that the keyboard is on; -1 when there are none.
    int currentRow() const { return current_; }
    void setCurrentRow(int row);
    /// Goes to the change before (-1) or behind (1), or to the first or last one when it `enters` from another diff;
    /// says whether there is one.
    bool moveToChange(int direction, bool enters);
    void stopWalk();
    bool wasWalked() const { return wasWalked_; } ///< whether the current row is where moveToChange() has led
    /// Where a row stands in this widget.
    QRect rowRect(int row) const;
    /// The row nearest to a point; -1 when there are none.
    int rowNear(QPoint point) const;
    /// The lines as text with their signs, the sentences before and after them.
    QString plainText() const;
    /// Grows with every new content, so that who keeps something of it knows when it is old.
    int contentRevision() const { return contentRevision_; }

    /// What a search has found here, to be tinted; null without one. Not owned.
    void setFound(const DiffFound* found);
    /// Brings a run of a row's source into sight.
    void revealText(int row, qsizetype begin, qsizetype end);
    /// A widget that stands above the lines, as high as its width asks for; takes it, and deletes the one before. To be
    /// called again when that height has changed.
    void setInset(QWidget* inset);
    QWidget* inset() const { return inset_; }

public Q_SLOTS:
    void copy();
    void selectAll();

Q_SIGNALS:
    void actionRequested(const plovik::DiffAction& action);
    /// What was looked at has moved down by `shift`.
    void contentHeightChanged(int shift);
    void wholeFileRequested(bool whole);
    void revealRequested(const QRect& area);
    /// The keyboard wants to go on to the diff before (-1) or behind (1): to its next hunk, or its next change.
    void leaveRequested(int direction);
    void changeRequested(int direction);

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
    int insetHeight(int width) const;
    void placeInset();
    int rowsTop() const;
    QRect visibleRowsArea() const;
    int lineAt(int y) const;
    DiffSide sideAt(int x) const;
    int leftOf(DiffSide side) const { return side == DiffSide::after && lines_.areSideBySide() ? width() / 2 : 0; }
    int cellWidth() const { return lines_.areSideBySide() ? width() / 2 : width(); }
    DiffCell cellAt(int line, DiffSide side) const;
    DiffRowPainter rowPainter() const;
    bool isInGutter(int x) const { return x - leftOf(sideAt(x)) < metrics_.codeLeft; }
    void remeasure(int shift = 0);
    void showDocument(DiffPlace place);
    void applyFonts();
    void paintNotes(QPainter& painter, const QStringList& notes, int top) const;
    void paintRows(QPainter& painter, const QRect& exposed) const;
    void paintLine(QPainter& painter, const DiffRowPainter& rows, int line) const;
    void paintCurrent(QPainter& painter) const;

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

    // What the diff leaves out (DiffSectionMore.cpp)
    enum class More { above, below, between, whole };
    struct MoreButton {
        More more = More::above;
        int row = -1; ///< that it stands in; -1 for none
        QRect area;

        bool operator==(const MoreButton&) const = default;
    };
    std::vector<MoreButton> moreButtons(int row) const;
    MoreButton moreButtonAt(QPoint point) const;
    QString moreTitle(const MoreButton& button) const;
    void hoverMore(QPoint point);
    void paintMoreButtons(QPainter& painter, int row) const;
    void pressMore(const MoreButton& button);
    int gapFrom(int hunk, More more) const;
    void showMore(int hunk, More more, int anchor);
    void showGaps(DiffGaps gaps, int anchor);
    int anchorRow() const;
    void holdWholeFile(DiffPlace place);
    void returnToHeld();
    bool isInSight(int row) const;
    void relay(const std::function<void()>& change, int anchor);
    void addMoreActions(class QMenu& menu);

    // The user's hands (DiffSectionInput.cpp, DiffSectionKeys.cpp)
    void selectionChanged();
    void moveCurrent(int row, bool extend);
    void moveBy(int lines, bool extend);
    bool moveToSide(DiffSide side);
    DiffSide currentSide() const;
    void moveToHunk(int direction);
    bool handleMovement(QKeyEvent* event);
    bool handleModified(QKeyEvent* event);
    void moveOn(int direction);
    void dragTo(QPoint point);
    DiffPosition positionAt(QPoint point, DiffSide side) const;
    void pointAt(QPoint point);

    int contentRevision_ = 0;
    DiffContent content_;
    DiffDocument document_;
    DiffNotes notes_;
    DiffTexts texts_;
    DiffLayout layout_ = DiffLayout::unified; ///< as wanted
    DiffLines lines_;
    DiffMetrics metrics_;
    DiffSelection selection_;
    int current_ = -1;
    DiffSide keyboardSide_ = DiffSide::after; ///< where the keyboard goes on, side by side
    bool wasWalked_ = false;
    bool showsWholeFile_ = false;
    int hovered_ = -1; ///< hunk under the pointer
    MoreButton hoveredMore_;
    struct Held {
        int number = 0; ///< of a line in the new file
        int y = 0;      ///< where it stood, below the top of what is in sight
    };
    std::optional<Held> held_; ///< what was looked at in a whole file, until the new diff's file is there
    int offset_ = 0;
    int visibleTop_ = 0;
    bool isAvailable_ = true;
    enum class Drag { none, lines, text } drag_ = Drag::none;
    QBasicTimer dragTimer_; ///< scrolls on while the pointer rests outside
    QPoint dragPoint_;
    DiffSectionBar* bar_;
    QWidget* inset_ = nullptr;
    const DiffFound* found_ = nullptr;
    std::map<DiffAction::Verb, QPushButton*> hunkButtons_;
};

} // namespace plovik

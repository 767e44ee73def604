// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/LineRange.h"
#include "app/ui/diff/ShownDiff.h"

#include <QObject>

#include <functional>
#include <optional>
#include <set>

namespace plovik {

/// Works one diff: holds what is shown of it, the selection and the cursor (the row that the keyboard is on), moves
/// them, and asks for what is to be done with a hunk or with lines. Knows no widget; the widget that shows the diff
/// follows the signals. Main thread.
class DiffController : public QObject {
    Q_OBJECT

public:
    const ShownDiff& diff() const { return diff_; }
    /// Does nothing when the content is equal. The selection is forgotten when the diff differs; the cursor stays near
    /// its place if `place` is kept.
    void setContent(DiffContent content, DiffPlace place);
    /// Sets the files that the diff compares. They are forgotten when the diff changes.
    void setTexts(DiffTexts texts);
    /// Sets the colours of their code, forgotten likewise.
    void setSyntax(const SyntaxOf& syntax);
    void setLayout(DiffLayout layout);
    /// Sets the width of tabs, in columns, for diffs that say nothing of it.
    void setTabWidth(int columns);
    void setWraps(bool wraps);
    /// Shows the whole file as soon as it is known.
    void setShowsWholeFile(bool whole);
    /// Shows more of what is left out above or below a hunk. `anchor` is the row that stays in place on the screen;
    /// nullopt lets the widget choose one, -1 keeps the scroll position.
    void showMore(int hunk, GapSide side, std::optional<int> anchor = {});
    /// While actions are not available, buttons are disabled and keys request nothing.
    void setActionsAvailable(bool available);
    bool areActionsAvailable() const { return isAvailable_; }

    const DiffSelection& selection() const { return selection_; }
    void setSelection(const DiffSelection& selection);
    void selectAll();
    /// Selects the current line besides what is selected, or takes it out. In a split it turns the tick of the selected
    /// lines, or of the current one, instead.
    void toggleCurrent();
    /// Turns the ticks of changes of a split: all of them go into the first commit, unless they do already.
    void turnTicks(DiffAction::Part part, const std::set<int>& changes);
    /// The same for a line, with the others that are selected if it is one of them.
    void turnTick(int row);
    /// Returns the lines from the first to the last that is selected, or the current one, as the commit numbers them that has
    /// the new side; of a diff of the working copy as the last commit does. nullopt where that has none of them.
    std::optional<gitkit::LineRange> linesAtHand() const;
    std::set<int> selectedChanges() const { return diff_.changesOf(selection_); }

    int currentRow() const { return current_; } ///< -1 when there are no rows
    DiffSide currentSide() const;
    DiffSide keyboardSide() const { return keyboardSide_; } ///< where the keyboard goes on, side by side
    void setCurrentRow(int row);
    void setKeyboardSide(DiffSide side) { keyboardSide_ = side; }
    void moveBy(int lines, bool extend);
    /// Returns whether there was a row to go to.
    bool moveToSide(DiffSide side);
    void moveToHunk(int direction);
    /// Goes on by hunks where they can be staged, and by changes where the diff is only read.
    void moveOn(int direction);
    /// Goes to the next (1) or previous (-1) run of changed lines as seen from a row. Returns whether there is one.
    bool moveToChange(int direction, int from);
    /// Returns whether the current row is where moveToChange() has led.
    bool wasWalked() const { return wasWalked_; }
    void stopWalk();

    int keyboardHunk() const { return current_ < 0 ? -1 : diff_.document().row(current_).hunk; }
    /// Returns the hunk whose buttons are shown: the one under the pointer, else the keyboard's; -1 for none.
    int activeHunk() const { return hovered_ >= 0 ? hovered_ : keyboardHunk(); }
    int hoveredHunk() const { return hovered_; }
    void setHoveredHunk(int hunk);

    /// Returns whether parts of the diff can be staged, unstaged or discarded now.
    bool canTakeParts() const { return isAvailable_ && diff_.notes().wholeOnly.isEmpty(); }
    /// Asks to do something with a part of the diff, if the content allows it and the part has changes.
    void request(int hunk, DiffAction::Verb verb, DiffAction::Part part);
    /// Asks for it for the selected lines, else for the keyboard's hunk.
    void requestFromKey(DiffAction::Verb verb);

Q_SIGNALS:
    /// The diff is about to be replaced by another one.
    void aboutToReplace(plovik::DiffPlace place);
    void contentChanged();
    /// The rows of the same diff are about to be laid out anew; see showMore() for the anchor.
    void aboutToRelay(std::optional<int> anchor);
    void relaid();
    void selectionChanged();
    void offersChanged();
    /// The cursor, the hunk under the pointer or the colours changed.
    void looksChanged();
    /// Rows are to be brought into sight, the first one in any case, with some lines around them.
    void revealRequested(int first, int last, int linesAround);
    void actionRequested(const plovik::DiffAction& action);
    void wholeFileRequested(bool whole);
    /// The history of lines of the new side is wanted.
    void linesHistoryRequested(const gitkit::LineRange& lines);
    /// A link to them is wanted, to be opened or copied.
    void linesLinkRequested(const gitkit::LineRange& lines, bool isOpened);
    void allLinesRequested();
    /// The keyboard goes on to the diff before (-1) or behind (1): to its next hunk, or to its next change.
    void leaveRequested(int direction);
    void changeRequested(int direction);
    /// The keyboard goes to the start (-1) or the end (1) of all diffs.
    void endRequested(int direction, bool extend);

private:
    void moveTo(int row, bool extend);
    void placeCursor(DiffPlace place, int hunk, std::size_t hunks);
    void relay(std::optional<int> anchor, const std::function<void()>& change);

    ShownDiff diff_;
    DiffSelection selection_;
    int current_ = -1;
    DiffSide keyboardSide_ = DiffSide::after;
    bool wasWalked_ = false;
    int hovered_ = -1;
    bool isAvailable_ = true;
};

} // namespace plovik

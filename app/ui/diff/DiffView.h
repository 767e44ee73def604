// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/LineRange.h"
#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffLayout.h"
#include "app/ui/diff/FileLines.h"

#include <QAbstractScrollArea>

#include <vector>

namespace plovik {

class ChangeMap;
class DiffSectionView;
struct MapMark;
struct SyntaxOf;

/// Shows diffs one below the other, scrolled together. Only what is in sight is drawn. Main thread.
class DiffView : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit DiffView(QWidget* parent = nullptr);

    /// Shows these, each of another kind. A diff that is equal to the one of its kind keeps its selection and its
    /// current line; the others go on at `place`.
    void setContents(std::vector<DiffContent> contents, DiffPlace place);
    const std::vector<DiffSectionView*>& sections() const { return sections_; }
    /// Lets the tab key go through the diffs in their order. Returns where it leaves the last one; null without diffs.
    QWidget* orderTabs();
    /// Sets the whole files of a diff, with which lines that it leaves out can be shown. They are forgotten when the
    /// diff changes.
    void setTexts(plovik::DiffKind kind, const plovik::DiffTexts& texts);
    /// Sets the colours of their code; may be called again when more of them are known.
    void setSyntax(plovik::DiffKind kind, const plovik::SyntaxOf& syntax);

    /// Sets the layout of every diff that has two sides; the others stay unified.
    void setLayout(DiffLayout layout);
    DiffLayout diffLayout() const { return layout_; }
    /// Sets whether long lines are wrapped.
    void setWraps(bool wraps);
    /// Shows the whole files of all diffs, as soon as they are known.
    void setShowsWholeFile(bool whole);
    bool showsWholeFile() const { return showsWholeFile_; }

    /// See DiffSectionBar::setReserve(). Every bar keeps the same room, so that their buttons stand below each other.
    void setBarReserve(int width);
    /// See DiffController::setActionsAvailable().
    void setActionsAvailable(bool available);
    /// Returns the text that is selected in the first diff with a selection.
    QString selectedText() const;

public Q_SLOTS:
    /// Copies the selection of the diff with the focus, else of the first one with a selection.
    void copy();
    void selectAll();
    /// Goes to the next or previous run of changed lines, from one diff to the other.
    void nextChange() { goToChange(1); }
    void previousChange() { goToChange(-1); }
    void toggleWholeFile() { setShowsWholeFile(!showsWholeFile_); }

Q_SIGNALS:
    /// A walk over the changes, or over the hunks, goes on beyond the first (-1) or last (1) one.
    void walkEnded(int direction);
    void left(int direction);
    void showsWholeFileChanged(bool whole);
    /// All lines of the diffs that were cut are wanted.
    void allLinesRequested();
    /// Sections, rows or sizes have changed.
    void laidOut();
    void actionRequested(const plovik::DiffContent& content, const plovik::DiffAction& action);
    /// The history of lines of the new side of a diff is wanted.
    void linesHistoryRequested(const plovik::DiffContent& content, const gitkit::LineRange& lines);
    /// A link to them is wanted, to be opened or copied.
    void linesLinkRequested(const plovik::DiffContent& content, const gitkit::LineRange& lines, bool isOpened);

protected:
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void changeEvent(QEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

private:
    DiffSectionView* takeSection(DiffKind kind, std::vector<DiffSectionView*>& from);
    DiffSectionView* addSection();
    void layOut(int shift);
    void placeSections();
    void reveal(DiffSectionView* section, QRect area);
    void leave(DiffSectionView* section, int direction);
    void goToChange(int direction);
    void goToEnd(int direction, bool extend);
    DiffSectionView* sectionAtHand() const;
    void applyTheme();
    std::vector<MapMark> mapMarks() const;
    void forgetMap(int total);

    ChangeMap* map_;
    std::vector<DiffSectionView*> sections_;
    std::vector<int> mapped_; ///< what the map shows: places and revisions of the diffs
    std::vector<int> tops_;   ///< of each section before scrolling
    int barReserve_ = 0;
    DiffLayout layout_ = DiffLayout::unified;
    bool wraps_ = false;
    bool showsWholeFile_ = false;
    bool areActionsAvailable_ = true;
    bool isFilling_ = false;
    int turned_ = 0; ///< by the wheel with Ctrl, since the code font's size changed
};

} // namespace plovik

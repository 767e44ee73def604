// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffDocument.h"
#include "app/ui/diff/DiffLines.h"
#include "app/ui/diff/DiffSelection.h"

#include <optional>
#include <set>
#include <vector>

namespace plovik {

/// Returns where a moved line comes from or has gone to, as a sentence; empty for another line.
QString movedText(const DiffDocument& document, int row);

/// The unchanged lines above a hunk, or those below it.
enum class GapSide { above, below };

/// One diff with all that it is shown with: its content, the sentences about it, its rows, their layout, and the files
/// that it compares. Knows no widget. Main thread.
class ShownDiff {
public:
    const DiffContent& content() const { return content_; }
    const DiffNotes& notes() const { return notes_; }
    const DiffDocument& document() const { return document_; }
    const DiffLines& lines() const { return lines_; }
    bool showsWholeFile() const { return showsWholeFile_; }
    /// Grows whenever the content or the rows change. What was computed from an older revision is out of date.
    int revision() const { return revision_; }

    void setContent(DiffContent content);
    /// Makes the rows of the content's diff. The files and their colours are forgotten.
    void makeRows();
    void setSyntax(const SyntaxOf& syntax) { document_.setSyntax(syntax); }
    /// Lays the rows out anew if the layout differs for this diff.
    void setLayout(DiffLayout layout);
    bool hasLayout(DiffLayout layout) const;
    void setGaps(DiffGaps gaps);
    /// Sets the width of tabs for diffs that say nothing of it, and makes the rows anew.
    void setTabWidth(int columns);
    int tabWidth() const { return tabWidth_; }
    /// Sets whether long lines are wrapped.
    void setWraps(bool wraps) { wraps_ = wraps; }
    bool wraps() const { return wraps_; }

    // These return the gaps to pass to setGaps(), or nullopt when the same lines are to be shown as now.
    std::optional<DiffGaps> gapsWithTexts(DiffTexts texts);
    std::optional<DiffGaps> gapsWithWholeFile(bool whole);
    std::optional<DiffGaps> gapsWithMore(int hunk, GapSide side) const;
    /// Returns whether a gap above or below the hunk still hides lines.
    bool canShowMore(int hunk, GapSide side) const { return openGap(hunk, side) >= 0; }

    /// Returns the sentences and the rows with their signs as text, and behind moved lines where they were or are.
    QString plainText() const;
    /// Returns the rows that are selected, at least in part, in order.
    std::vector<int> rowsOf(const DiffSelection& selection) const;
    /// Returns the ids of the changed lines that are selected.
    std::set<int> changesOf(const DiffSelection& selection) const;
    /// Returns the text that copying a selection takes.
    QString textOf(const DiffSelection& selection) const;

private:
    int openGap(int hunk, GapSide side) const;

    DiffContent content_;
    DiffNotes notes_;
    DiffDocument document_;
    DiffLines lines_;
    DiffTexts texts_;
    DiffLayout layout_ = DiffLayout::unified; ///< the wanted one; lines_ tells what it comes to
    bool showsWholeFile_ = false;
    bool wraps_ = false;
    int tabWidth_ = ShownLine::standardTabWidth;
    int revision_ = 0;
};

} // namespace plovik

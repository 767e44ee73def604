// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/DiffGaps.h"
#include "app/ui/diff/DiffLayout.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/WordMarks.h"
#include "app/ui/diff/syntax/FileSyntax.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace plovik {

/// The rows of a parsed diff, with as much of what it leaves out as is wanted. The text of a row and its marked words
/// are computed when they are first asked for. Main thread.
class DiffDocument {
public:
    using Kind = gitkit::DiffLine::Kind;

    struct Row {
        Kind kind = Kind::context;
        int id = -1;   ///< the id of the diff's line; -1 for a line that the diff leaves out
        int line = -1; ///< index into the diff's lines; -1 likewise
        DiffSide side = DiffSide::both;
        QString sign;
        std::optional<int> oldNumber, newNumber;
        int hunk = 0;     ///< index into hunks()
        int partner = -1; ///< the removed row that this added one replaces, or the other way round

        bool isChange() const { return kind == Kind::addition || kind == Kind::deletion; }
        bool isCode() const { return kind != Kind::hunk && kind != Kind::meta; }
        /// Returns whether this is the last row, which stands for the rest of the file.
        bool isRest() const { return kind == Kind::hunk && line < 0; }
    };
    struct Hunk {
        int first = 0; ///< the row of its header, or of its first line if it has no header
        int end = 0;   ///< one past its last row
    };

    /// Which hunks have headers: all of them, or only those before which lines are left out.
    enum class Headers { all, atGaps };
    /// Identifies a row independently of which other rows are shown.
    struct Place {
        int line = -1;
        int number = 0; ///< of the line in the new file, for one that the diff leaves out
    };

    /// `tabWidth` holds where the diff says nothing of it, in columns.
    explicit DiffDocument(gitkit::ParsedDiff diff = {}, int tabWidth = ShownLine::standardTabWidth);
    ~DiffDocument();
    DiffDocument(DiffDocument&&) noexcept;
    DiffDocument& operator=(DiffDocument&&) noexcept;

    const gitkit::ParsedDiff& diff() const { return diff_; }
    const DiffGaps& gaps() const { return gaps_; }
    /// Makes the rows anew, with the lines that `gaps` shows between the hunks.
    void setGaps(DiffGaps gaps, Headers headers);
    void setTabWidth(int tabWidth);
    int tabWidth() const { return diff_.tabWidth.value_or(tabWidth_); }
    Place placeOf(int row) const;
    /// Returns the row of a place, or the next row if that one is not shown.
    int rowOf(const Place& place) const;
    int rowCount() const { return static_cast<int>(rows_.size()); }
    const Row& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    const std::vector<Hunk>& hunks() const { return hunks_; }
    /// Returns whether this is the diff of a merge against several parents, whose lines have several signs.
    bool isCombined() const { return isCombined_; }
    /// Returns the layout that a wanted one comes to. A file that is all new or all gone is not shown side by side,
    /// which would leave half of the width empty.
    DiffLayout layoutFor(DiffLayout wanted) const;
    int longestLine() const { return longestLine_; } ///< in columns
    int largestNumber() const { return largestNumber_; }

    /// Returns the row's text for drawing. The reference is valid until the next call.
    const ShownLine& shown(int row) const;
    /// Returns where the continuation lines of a row of code begin, in units of what is shown of it, when no line may
    /// have more columns. The reference is valid until the next call.
    const std::vector<qsizetype>& wrapPoints(int row, int columns) const;
    void setSyntax(SyntaxOf syntax) { syntax_ = std::move(syntax); }
    const SyntaxOf& syntax() const { return syntax_; }
    /// Returns the coloured pieces of the row in units of its source; none if the highlighted file has another line
    /// there.
    std::span<const SyntaxRun> syntax(int row) const;
    /// Returns what is marked in a changed row, in units of its source.
    const std::vector<TextRange>& marks(int row) const;
    /// Returns the row's text without sign and numbers, as it is copied.
    QString text(int row) const;

    /// Returns the bytes of the row's text.
    std::string_view bytes(int row) const;
    /// Returns the row that a moved line comes from or has gone to; -1 for another line.
    int movedRow(int row) const;

    /// Returns the ids of the changed lines of a hunk.
    std::set<int> changesOf(const Hunk& hunk) const;

private:
    void makeRows();
    void addHunk(const gitkit::DiffLine& line);
    void addRow(const gitkit::DiffLine& line);
    void addGap(const DiffGaps::Gap& gap, int from, int count);
    void push(Row row);
    void takeCombinedSigns(Row& row, const gitkit::DiffLine& line);
    void pairChanges();
    gitkit::ParsedDiff diff_;
    DiffGaps gaps_;
    int tabWidth_;
    std::vector<int> movedLines_; ///< by the diff's line, that of the other place or -1; empty if nothing moved
    SyntaxOf syntax_;
    Headers headers_ = Headers::all;
    std::string rest_; ///< the text of the row for the rest of the file
    std::vector<Row> rows_;
    std::vector<int> rowOfLine_; ///< by the diff's line; for a header that is not shown, the row behind it
    std::vector<Hunk> hunks_;
    bool isCombined_ = false;
    std::size_t extraSigns_ = 0; ///< signs at the start of the texts of a combined diff's lines
    int combinedNumber_ = 0;
    int longestLine_ = 0;
    int largestNumber_ = 0;
    bool hasOldLines_ = false;
    bool hasNewLines_ = false;
    struct Caches; ///< what was computed, by row
    std::unique_ptr<Caches> caches_;
};

} // namespace plovik

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

/// A parsed diff as rows to look at, and of what it leaves out as much as is wanted: what costs is worked out for the
/// rows that are asked for. Main thread.
class DiffDocument {
public:
    using Kind = gitkit::DiffLine::Kind;

    struct Row {
        Kind kind = Kind::context;
        int id = -1;   ///< of the diff's line; -1 for one that the diff leaves out
        int line = -1; ///< index into the diff's lines, likewise
        DiffSide side = DiffSide::both;
        QString sign;
        std::optional<int> oldNumber, newNumber;
        int hunk = 0;     ///< index into hunks()
        int partner = -1; ///< the row that this one took the place of, or that took its place

        bool isChange() const { return kind == Kind::addition || kind == Kind::deletion; }
        bool isCode() const { return kind != Kind::hunk && kind != Kind::meta; }
        /// The last row, where more lines of the file can be had.
        bool isRest() const { return kind == Kind::hunk && line < 0; }
    };
    struct Hunk {
        int first = 0; ///< its header's row, or its first line's where it has no header
        int end = 0;   ///< one past its last row
    };

    /// Where hunks have headers: all of them, or only those before which lines are left out.
    enum class Headers { all, atGaps };
    /// What a row is, whatever else is shown.
    struct Place {
        int line = -1;
        int number = 0; ///< in the new file, for a line that the diff leaves out
    };

    explicit DiffDocument(gitkit::ParsedDiff diff = {});
    ~DiffDocument();
    DiffDocument(DiffDocument&&) noexcept;
    DiffDocument& operator=(DiffDocument&&) noexcept;

    const gitkit::ParsedDiff& diff() const { return diff_; }
    const DiffGaps& gaps() const { return gaps_; }
    /// Makes the rows anew, with what `gaps` shows between the hunks.
    void setGaps(DiffGaps gaps, Headers headers);
    Place placeOf(int row) const;
    /// The row of a place, or the next one where it is not shown.
    int rowOf(const Place& place) const;
    int rowCount() const { return static_cast<int>(rows_.size()); }
    const Row& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    const std::vector<Hunk>& hunks() const { return hunks_; }
    /// Whether this is a merge's diff against several parents, whose lines carry several signs.
    bool isCombined() const { return isCombined_; }
    /// What a layout comes to: half of the width is not left empty for a file that is all new or all gone.
    DiffLayout layoutFor(DiffLayout wanted) const;
    int longestLine() const { return longestLine_; } ///< in columns
    int largestNumber() const { return largestNumber_; }

    /// The row's text for drawing; valid until the next call.
    const ShownLine& shown(int row) const;
    void setSyntax(SyntaxOf syntax) { syntax_ = std::move(syntax); }
    const SyntaxOf& syntax() const { return syntax_; }
    /// The coloured pieces of the row, in units of its source. None where the file that they are of has another line.
    std::span<const SyntaxRun> syntax(int row) const;
    /// What is marked in a changed row, in units of its source.
    const std::vector<TextRange>& marks(int row) const;
    /// The row's text as it is copied: without sign and numbers.
    QString text(int row) const;

    /// The ids of the changes among the rows of a hunk.
    std::set<int> changesOf(const Hunk& hunk) const;

private:
    void makeRows();
    void addHunk(const gitkit::DiffLine& line);
    void addRow(const gitkit::DiffLine& line);
    void addGap(const DiffGaps::Gap& gap, int from, int count);
    void push(Row row);
    void takeCombinedSigns(Row& row, const gitkit::DiffLine& line);
    void pairChanges();
    std::string_view bytes(int row) const;

    gitkit::ParsedDiff diff_;
    DiffGaps gaps_;
    SyntaxOf syntax_;
    Headers headers_ = Headers::all;
    std::string rest_; ///< text of the row for the rest of the file
    std::vector<Row> rows_;
    std::vector<int> rowOfLine_; ///< by the diff's line: its row, or the one in place of a header that is not shown
    std::vector<Hunk> hunks_;
    bool isCombined_ = false;
    std::size_t extraSigns_ = 0; ///< of a combined diff, at the start of its lines' texts
    int combinedNumber_ = 0;
    int longestLine_ = 0;
    int largestNumber_ = 0;
    bool hasOldLines_ = false;
    bool hasNewLines_ = false;
    struct Caches; ///< by row: what has been worked out
    std::unique_ptr<Caches> caches_;
};

} // namespace plovik

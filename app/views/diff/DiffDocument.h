#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/views/diff/ShownLine.h"
#include "app/views/diff/WordMarks.h"

#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace plovik {

/// A parsed diff as rows to look at: what costs is worked out for the rows that are asked for. Main thread.
class DiffDocument {
public:
    using Kind = gitkit::DiffLine::Kind;

    struct Row {
        Kind kind = Kind::context;
        int id = 0; ///< of the diff's line
        QString sign;
        std::optional<int> oldNumber, newNumber;
        int hunk = 0;     ///< index into hunks()
        int partner = -1; ///< the row that this one took the place of, or that took its place

        bool isChange() const { return kind == Kind::addition || kind == Kind::deletion; }
        bool isCode() const { return kind != Kind::hunk && kind != Kind::meta; }
    };
    struct Hunk {
        int first = 0; ///< its header's row
        int end = 0;   ///< one past its last row
    };

    explicit DiffDocument(gitkit::ParsedDiff diff = {});
    ~DiffDocument();
    DiffDocument(DiffDocument&&) noexcept;
    DiffDocument& operator=(DiffDocument&&) noexcept;

    const gitkit::ParsedDiff& diff() const { return diff_; }
    int rowCount() const { return static_cast<int>(rows_.size()); }
    const Row& row(int index) const { return rows_[static_cast<std::size_t>(index)]; }
    const std::vector<Hunk>& hunks() const { return hunks_; }
    /// Whether this is a merge's diff against several parents, whose lines carry several signs.
    bool isCombined() const { return isCombined_; }
    int longestLine() const { return longestLine_; } ///< in columns
    int largestNumber() const { return largestNumber_; }

    /// The row's text for drawing; valid until the next call.
    const ShownLine& shown(int row) const;
    /// What is marked in a changed row, in units of its source.
    const std::vector<TextRange>& marks(int row) const;
    /// The row's text as it is copied: without sign and numbers.
    QString text(int row) const;

    /// The ids of the changes among the rows of a hunk.
    std::set<int> changesOf(const Hunk& hunk) const;

private:
    void addRow(const gitkit::DiffLine& line);
    void takeCombinedSigns(Row& row, const gitkit::DiffLine& line);
    void pairChanges();
    std::string_view bytes(int row) const;

    gitkit::ParsedDiff diff_;
    std::vector<Row> rows_;
    std::vector<Hunk> hunks_;
    bool isCombined_ = false;
    std::size_t extraSigns_ = 0; ///< of a combined diff, at the start of its lines' texts
    int combinedNumber_ = 0;
    int longestLine_ = 0;
    int largestNumber_ = 0;
    struct Caches; ///< by row: what has been worked out
    std::unique_ptr<Caches> caches_;
};

} // namespace plovik

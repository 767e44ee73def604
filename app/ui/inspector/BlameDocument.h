// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameLine.h"
#include "app/ui/diff/FileLines.h"
#include "app/ui/diff/ShownLine.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A blamed file as rows: the text in one piece, and each commit once. It can be made on any thread and is immutable
/// afterwards. Rows count from 0.
class BlameDocument {
public:
    struct Commit {
        std::string hash;
        QString author;
        QString subject;
        gitkit::Date date;
        bool isUncommitted = false;
        double warmth = 1; ///< 1 for the newest commit of the file, 0 for the oldest
    };

    /// Rows of one commit, next to each other.
    struct Run {
        int first = 0;
        int end = 0; ///< behind the last one
        int commit = 0;
    };

    /// `ownTabWidth` is what the working tree says of the file, `tabWidth` what else holds; both in columns.
    explicit BlameDocument(std::span<const gitkit::BlameLine> lines, std::optional<int> ownTabWidth = {},
                           int tabWidth = ShownLine::standardTabWidth);

    int rowCount() const { return static_cast<int>(rows_.size()); }
    /// Returns the bytes of a line without its line feed.
    std::string_view text(int row) const { return file_->line(row + 1); }
    const Commit& commit(int row) const { return commits_[line(row).commit]; }
    const Run& run(int row) const { return runs_[line(row).run]; }
    const std::vector<Run>& runs() const { return runs_; }
    /// Returns where the file was before the commit of the row, or null when that commit made the file.
    const gitkit::BlameOrigin::Place* previous(int row) const;
    const std::optional<int>& ownTabWidth() const { return ownTabWidth_; }
    /// Returns an upper bound for the columns of the widest line. Takes time for a tab width that is not the document's.
    int columns(int tabWidth) const;
    /// Returns all lines, each with a line feed.
    const std::shared_ptr<const FileLines>& file() const { return file_; }

    /// Finds `rows` of `other`, another blame of the same file, in this one. Returns the same line where both blames
    /// have it, otherwise the line at that place between the nearest lines that both have. Returns -1 for -1.
    std::vector<int> rowsLike(const BlameDocument& other, std::span<const int> rows) const;

private:
    class Matcher;
    struct Row {
        std::uint32_t commit = 0;
        std::uint32_t run = 0;
        std::uint32_t origin = 0;
        int originalNumber = 0;
    };

    static std::size_t index(int row) { return static_cast<std::size_t>(row); }
    const Row& line(int row) const { return rows_[index(row)]; }
    void warmUp();

    std::shared_ptr<const FileLines> file_;
    std::vector<Row> rows_;
    std::vector<Run> runs_;
    std::vector<Commit> commits_;
    std::vector<std::shared_ptr<const gitkit::BlameOrigin>> origins_;
    std::optional<int> ownTabWidth_;
    int tabWidth_; ///< of `columns_`
    int columns_ = 0;
};

} // namespace plovik

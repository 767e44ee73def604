// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/parsers/RefLabels.h"
#include "app/store/HistoryRow.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// Rows of the history that follow each other, packed into about 150 bytes each, without their labels. Immutable, and
/// shared by all lists that hold it. Any thread.
class HistoryBlock {
public:
    /// `lanesBelow` are the lanes below the last row, as GraphLayout::lanes() gives them.
    explicit HistoryBlock(std::span<const HistoryRow> rows, std::vector<std::string> lanesBelow = {},
                          int laneCount = 1);

    std::size_t size() const { return starts_.size(); }
    /// Returns the row without labels. `index` is below size().
    HistoryRow row(std::size_t index) const;
    std::string hash(std::size_t index) const;
    /// Returns the index of a commit by its full hash.
    std::optional<std::size_t> find(const std::string& hash) const;

    const std::vector<std::string>& lanesBelow() const { return lanesBelow_; }
    /// The number of lanes in the widest row of the history up to here.
    int laneCount() const { return laneCount_; }
    /// Returns what identifies the first `count` rows, graph included.
    std::string_view bytes(std::size_t first, std::size_t count) const;

private:
    std::string bytes_;
    std::vector<std::uint32_t> starts_; ///< of each row in `bytes_`
    std::vector<std::uint32_t> keys_;   ///< a part of each hash, for finding it fast
    std::vector<std::string> lanesBelow_;
    int laneCount_;
};

/// The rows of a history list, a value: copies share their blocks. Reading a row unpacks it, in less than a
/// microsecond. Main thread; blocks may be made on any.
class HistoryRows {
public:
    using Block = std::shared_ptr<const HistoryBlock>;

    HistoryRows() = default;
    /// Packs rows together with their labels. Not explicit, because it is the same list.
    HistoryRows(const std::vector<HistoryRow>& rows);

    std::size_t size() const { return ends_.empty() ? 0 : ends_.back(); }
    bool empty() const { return ends_.empty(); }
    /// Returns a row with its labels. `index` is below size().
    HistoryRow operator[](std::size_t index) const;
    /// The same; throws std::out_of_range.
    HistoryRow at(std::size_t index) const;
    HistoryRow front() const { return at(0); }
    HistoryRow back() const { return at(size() - 1); }
    std::string hashAt(std::size_t index) const;
    /// Returns the row of a commit by its full hash. Looks at four bytes a row.
    std::optional<std::size_t> rowOf(const std::string& hash) const;
    bool contains(const std::string& hash) const { return rowOf(hash).has_value(); }
    /// Returns a commit by its full hash.
    std::optional<gitkit::Commit> commit(const std::string& hash) const;

    void append(Block block);
    /// Puts a row before all others. Where the commit stands among them, now or later, it is left out.
    void putFirst(const HistoryRow& row);
    /// Appends the rows of `other` from the row `first` on, which must begin one of its blocks.
    void appendFrom(const HistoryRows& other, std::size_t first);
    /// Shows these commits, the newest first, in the rows that they take up together; the graph stays. The rows must not
    /// be shown in another order already. Commits that are not among them are passed over.
    void arrange(const std::vector<std::string>& commits);
    void setLabels(std::shared_ptr<const gitkit::RefLabels> labels) { labels_ = std::move(labels); }

    const std::vector<Block>& blocks() const { return blocks_; }
    /// The number of rows up to the end of a block.
    std::size_t endOf(std::size_t block) const { return ends_[block]; }

    /// Returns whether the list begins with all rows of `other`, whatever their labels.
    bool beginsWith(const HistoryRows& other) const;
    bool hasLabelsOf(const HistoryRows& other) const;
    bool operator==(const HistoryRows& other) const
    {
        return size() == other.size() && beginsWith(other) && hasLabelsOf(other);
    }

    class Iterator {
    public:
        using iterator_category = std::input_iterator_tag;
        using iterator_concept = std::input_iterator_tag;
        using value_type = HistoryRow;
        using difference_type = std::ptrdiff_t;

        Iterator() = default;
        Iterator(const HistoryRows& rows, std::size_t index) : rows_(&rows), index_(index) {}
        HistoryRow operator*() const { return (*rows_)[index_]; }
        Iterator& operator++()
        {
            ++index_;
            return *this;
        }
        void operator++(int) { ++index_; }
        bool operator==(const Iterator& other) const { return index_ == other.index_; }

    private:
        const HistoryRows* rows_ = nullptr;
        std::size_t index_ = 0;
    };
    Iterator begin() const { return {*this, 0}; }
    Iterator end() const { return {*this, size()}; }

private:
    struct Place {
        std::size_t block;
        std::size_t index;
    };
    /// Which row's commit another row shows, and the other way round.
    struct Arrangement {
        std::map<std::size_t, std::size_t> commitOf;
        std::map<std::size_t, std::size_t> rowOf;
        bool operator==(const Arrangement&) const = default;
    };

    Place place(std::size_t index) const;
    HistoryRow stored(std::size_t index) const;
    std::size_t commitAt(std::size_t row) const;
    std::optional<std::size_t> storedRowOf(const std::string& hash) const;
    bool isArrangedAs(const HistoryRows& other) const;

    std::vector<Block> blocks_;
    std::vector<std::size_t> ends_; ///< the number of rows up to the end of each block
    std::string leftOut_;           ///< hash of the row that was put first
    std::shared_ptr<const gitkit::RefLabels> labels_;
    std::shared_ptr<const Arrangement> arrangement_; ///< null while the rows are in their own order
};

} // namespace plovik

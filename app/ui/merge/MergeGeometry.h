// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeResult.h"

#include <QRect>
#include <QSize>

#include <vector>

namespace plovik {

/// Where the segments of a merge stand when its sides are shown beside each other. Lengths are device-independent pixels.
/// Tops are those of what is scrolled, everything else is in the viewport. Main thread.
class MergeGeometry {
public:
    struct Column {
        gitkit::MergeSide side = gitkit::MergeSide::left;
        int left = 0, width = 0;
    };

    /// Takes the sizes of the code font.
    void measure();
    /// Places all segments; none without a result.
    void layOut(const MergeResult* result, bool isBaseShown);
    void setViewport(QSize size) { size_ = size; }
    void scrollTo(int value) { scroll_ = value; }

    std::vector<Column> columns() const;
    Column columnOf(gitkit::MergeSide side) const;
    int top(std::size_t segment) const { return tops_[segment]; }
    int bottom(std::size_t segment) const { return tops_[segment + 1]; }
    int total() const { return tops_.back(); }
    std::size_t count() const { return tops_.size() - 1; }
    /// Returns the segment at a height of what is scrolled. There must be one.
    std::size_t segmentAt(int y) const;
    /// Returns the rows of a segment's lines.
    std::size_t rows(std::size_t segment) const { return rows_[segment]; }
    /// Returns the number of a conflict, from 1; 0 for no conflict.
    int conflictNumber(std::size_t segment) const { return numbers_[segment]; }
    int stripHeight(std::size_t segment) const;

    /// Returns the height in the viewport of what is scrolled, and the other way round.
    int toViewport(int y) const { return y - scroll_ + headHeight_; }
    int fromViewport(int y) const { return y + scroll_ - headHeight_; }
    /// Returns where the small button of a clean change stands: at the end of its first line.
    QRect refusalRect(std::size_t segment, gitkit::MergeSide side) const;

    int headHeight() const { return headHeight_; }
    /// Returns the height below the names.
    int roomHeight() const { return size_.height() - headHeight_; }
    int lineHeight() const { return lineHeight_; }
    double cell() const { return cell_; }
    int numberWidth() const { return numberWidth_; }
    QSize viewport() const { return size_; }

    static constexpr int gap = 10;

private:
    QSize size_;
    int scroll_ = 0;
    bool isBaseShown_ = false;
    std::vector<int> tops_{0}; ///< of the segments, and the end of the last one
    std::vector<std::size_t> rows_;
    std::vector<int> numbers_;
    int headHeight_ = 26;
    int stripHeight_ = 32;
    int lineHeight_ = 20;
    double cell_ = 8;
    int numberWidth_ = 30;
};

} // namespace plovik

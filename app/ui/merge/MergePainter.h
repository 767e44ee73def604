// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeGeometry.h"
#include "app/ui/merge/MergeNames.h"
#include "app/ui/merge/MergeResult.h"

#include <QColor>

#include <array>
#include <memory>
#include <optional>

class QPainter;

namespace plovik {

class FileSyntax;

/// The colours of the sides' code, by the number of the side.
using MergeSyntax = std::array<std::shared_ptr<const FileSyntax>, 3>;

/// Whether a segment is a change that nobody contradicts, which can be left out.
bool isRefusable(const gitkit::MergeSegment& segment);
/// Returns the side whose lines have the button that leaves a clean change out.
gitkit::MergeSide refusalSide(const gitkit::MergeSegment& segment);

/// Draws the sides of a merge. Made for one frame. Main thread.
class MergePainter {
public:
    struct Look {
        std::optional<std::size_t> current;
        int scrolledSideways = 0;
        int tabWidth = 8;
    };
    /// All outlive the painter.
    MergePainter(QPainter& painter, const MergeGeometry& geometry, const MergeResult& result, const MergeSyntax& syntax,
                 const Look& look)
        : painter_(painter), geometry_(geometry), result_(result), syntax_(syntax), look_(look)
    {}

    void paintSegments() const;
    void paintNames(const MergeNames& names) const;

private:
    using Column = MergeGeometry::Column;

    void paintSegment(std::size_t segment, const Column& column) const;
    void paintLine(std::size_t segment, const Column& column, std::size_t row, int y) const;
    void paintRefusal(std::size_t segment) const;
    bool isLeftOut(std::size_t segment, gitkit::MergeSide side) const;
    QColor backgroundOf(std::size_t segment, gitkit::MergeSide side) const;

    QPainter& painter_;
    const MergeGeometry& geometry_;
    const MergeResult& result_;
    const MergeSyntax& syntax_;
    Look look_;
};

} // namespace plovik

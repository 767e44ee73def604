// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeResult.h"

#include <QColor>

namespace plovik::mergeColors {

/// Return the strong colour of a side, and the tint behind its lines. Main thread.
QColor strong(gitkit::MergeSide side);
QColor tint(gitkit::MergeSide side);
QColor strongConflict();
QColor tintConflict();

/// Returns the strong colour of a piece of the result by what it is made of; an invalid one for lines that both sides
/// have.
QColor ofPiece(const MergeResult& result, std::size_t index);
/// Returns a tint of a strong colour.
QColor tinted(const QColor& color);

} // namespace plovik::mergeColors

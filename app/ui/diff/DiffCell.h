// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <QRect>

namespace plovik {

/// The place of a row: the whole width, or the half of one side. Value.
struct DiffCell {
    int line = 0; ///< of the layout
    int row = -1; ///< of the document; -1 if the side has none there
    DiffSide side = DiffSide::both;
    QRect area;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffLayout.h"

#include <QRect>

namespace plovik {

/// A row of a diff where it stands: in the whole width, or in the half of one side.
struct DiffCell {
    int line = 0; ///< of the layout
    int row = -1; ///< of the document; -1 where the side has nothing
    DiffSide side = DiffSide::both;
    QRect area;
};

} // namespace plovik

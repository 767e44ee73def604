// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace plovik {

/// What the sides of a merge are called, as text to look at. Value.
struct MergeNames {
    QString left, right, base;

    bool operator==(const MergeNames&) const = default;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

namespace plovik {

/// A place in a merge that all its views have: so far into a segment, from 0 to 1. Value.
struct MergePlace {
    std::size_t segment = 0;
    double share = 0;
};

} // namespace plovik

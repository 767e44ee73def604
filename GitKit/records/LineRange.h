// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace gitkit {

/// Lines of a file, counted from 1.
struct LineRange {
    int first = 1;
    int last = 1;

    bool operator==(const LineRange&) const = default;
};

} // namespace gitkit

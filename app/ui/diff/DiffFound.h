// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QtGlobal>

#include <algorithm>
#include <span>
#include <vector>

namespace plovik {

/// What a search has found in one diff, as runs of its rows' sources in order. Value.
struct DiffFound {
    struct Run {
        int row = 0;
        qsizetype begin = 0;
        qsizetype end = 0;

        bool operator==(const Run&) const = default;
    };

    std::vector<Run> runs;
    int current = -1; ///< index of the current match; -1 when it is in another diff

    std::span<const Run> inRow(int row) const
    {
        const auto found = std::ranges::equal_range(runs, row, {}, &Run::row);
        return {found.begin(), found.end()};
    }
    bool isCurrent(const Run& run) const { return current >= 0 && run == runs[static_cast<std::size_t>(current)]; }
};

} // namespace plovik

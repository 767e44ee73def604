// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/GraphRow.h"

namespace plovik {

/// One line of the history list: a commit and what the graph draws beside it.
struct HistoryRow {
    gitkit::Commit commit;
    gitkit::GraphRow graph;

    const std::string& id() const { return commit.hash; }

    bool operator==(const HistoryRow&) const = default;
};

} // namespace plovik

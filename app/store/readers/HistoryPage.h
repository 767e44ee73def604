// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "app/store/HistoryRow.h"

#include <optional>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

/// Which page of history to read.
struct HistoryRequest {
    gitkit::HistoryScope scope;
    int limit = 0; ///< commits shown at most
    std::optional<gitkit::HistoryFilter> filter;
};

/// A page of history with its graph.
struct HistoryPage {
    std::vector<HistoryRow> rows;
    int laneCount = 1;
    bool hasMore = false; ///< older commits exist beyond the page
};

/// Reads and lays out one page. Blocks; throws as GitRepository::log does. Laying out here keeps the main thread free
/// of work that grows with the page.
HistoryPage readHistoryPage(const gitkit::GitRepository& repo, const HistoryRequest& request);

} // namespace plovik

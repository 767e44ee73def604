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
    int limit = 0; ///< the most commits on the page
    std::optional<gitkit::HistoryFilter> filter;
};

/// A page of history with its graph.
struct HistoryPage {
    std::vector<HistoryRow> rows;
    int laneCount = 1;
    bool hasMore = false; ///< older commits exist beyond the page
};

/// Reads one page and lays out its graph, which takes longer the longer the page is. Blocks, on any thread; throws as
/// GitRepository::log does.
HistoryPage readHistoryPage(const gitkit::GitRepository& repo, const HistoryRequest& request);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// Which history to list: that of one ref, or of all branches, remote branches, tags and HEAD.
struct HistoryScope {
    std::optional<std::string> ref; ///< full name; absent for all

    static HistoryScope all() { return {}; }
    static HistoryScope of(std::string fullName) { return {std::move(fullName)}; }

    bool operator==(const HistoryScope&) const = default;
};

} // namespace gitkit

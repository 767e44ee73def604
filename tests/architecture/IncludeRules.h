// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace architecture {

/// Files by their path from the top of the tree, with their text.
using SourceTree = std::map<std::string, std::string>;

struct Include {
    std::string name;
    bool quoted = false; ///< "ours", as opposed to <theirs>

    bool operator==(const Include&) const = default;
};

/// Every include directive of a file, in order; those inside comments do not count.
std::vector<Include> includesOf(std::string_view text);

/// Returns one sentence for each violation: an include that its file's room does not allow, a way through headers of
/// other rooms to what the room must not reach, a circle among the parts of the store, a header that can be read twice.
///
/// `qtCoreHeaders` are the names by which headers of Qt Core can be included, all that the store may have of Qt.
std::vector<std::string> violations(const SourceTree& tree, const std::set<std::string>& qtCoreHeaders);

} // namespace architecture

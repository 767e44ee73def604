// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Reads what `git for-each-ref` prints. Pure; skips what it cannot read. Any thread.
struct RefParser {
    static constexpr const char* format =
        "--format=%(refname)%1f%(objectname)%1f%(upstream:short)%1f%(upstream:track)%1f%(HEAD)";

    /// `output` holds one line of `format` for each ref. Git's order is kept.
    static std::vector<GitRef> parse(std::string_view output);

    /// The same without counting commits, for which git would walk the history of every branch with an upstream.
    static constexpr const char* listingFormat =
        "--format=%(refname)%1f%(objectname)%1f%(upstream:short)%1f%(upstream)%1f%(HEAD)";

    /// `output` holds one line of `listingFormat` for each ref. Git's order is kept.
    static std::vector<GitRef> parseListing(std::string_view output);

    /// The record of a ref of which only the full name is known; nullopt for one that is no branch or tag.
    static std::optional<GitRef> unreadable(const std::string& fullName);
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"
#include "GitKit/records/RefLabel.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// The digits of a hash that are shown: the first seven, or all of a shorter one.
inline std::string_view shortHash(std::string_view hash) { return hash.substr(0, 7); }

/// Whether a hash is all zeros, which git prints when there is no object.
inline bool isNoHash(std::string_view hash) { return hash.find_first_not_of('0') == std::string_view::npos; }

/// One row of history.
struct Commit {
    std::string hash;
    std::vector<std::string> parents; ///< in git's order; empty for a root commit
    std::string authorName;
    std::string authorEmail;
    Date date; ///< the author's date
    std::string subject;
    std::vector<RefLabel> refs;

    const std::string& id() const { return hash; }
    std::string_view shortHash() const { return gitkit::shortHash(hash); }

    bool operator==(const Commit&) const = default;
};

} // namespace gitkit

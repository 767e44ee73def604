// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/LineRange.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// Kinds of servers, which differ in their addresses.
enum class Forge { gitHub, gitLab, gitea, bitbucket, azure };

/// Servers that the user has named, in lower case, and what kind they are.
using WebHosts = std::vector<std::pair<std::string, Forge>>;

/// What a link is to lead to: a commit; a file of a commit, at some lines; or the page for a new request to merge a branch.
struct WebLinkRequest {
    std::string commit = {}; ///< full hash, or HEAD; empty for a new request
    std::string path = {};   ///< as bytes; empty for the commit itself
    std::optional<LineRange> lines = {};
    std::string branch = {};               ///< a local one, without refs/heads
    std::vector<std::string> remotes = {}; ///< that are looked at, the first one first
    WebHosts hosts = {};

    bool operator==(const WebLinkRequest&) const = default;
};

/// An address, or why there is none.
struct WebLink {
    enum class Problem {
        none,
        noRemote,
        unknownServer, ///< no remote is on a server of a known kind
        notPushed,     ///< no remote branch has it, as far as known here
        isBase,        ///< the branch is the one that requests go to
    };

    std::string address = {};
    Problem problem = Problem::none;

    bool operator==(const WebLink&) const = default;
};

/// Where the numbers lead that messages write as #12 and as !12: the number follows at the end. Empty where they lead nowhere.
struct ReferenceAddresses {
    std::string issue = {};
    std::string request = {};

    bool operator==(const ReferenceAddresses&) const = default;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/WebLink.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

// Where a repository is on the web: pure functions over the address of a remote. Addresses that are returned are ASCII and
// begin with http:// or https://.

/// The page of a repository.
struct WebPlace {
    Forge forge = Forge::gitHub;
    std::string page; ///< without a slash at its end

    bool operator==(const WebPlace&) const = default;
};

/// Returns the page of a remote's address as git uses it; nullopt where it is no server's, or of no known kind.
std::optional<WebPlace> webPlaceOf(std::string_view remote, const WebHosts& hosts);

std::string commitAddress(const WebPlace& place, const std::string& hash);
/// Without lines, the address of the file itself.
std::string fileAddress(const WebPlace& place, const std::string& hash, const std::string& path,
                        const std::optional<LineRange>& lines);
/// An empty base stands for the one that the server takes by itself.
std::string newRequestAddress(const WebPlace& place, const std::string& branch, const std::string& base);
/// Returns the page of what messages write as #12, and as !12.
std::string issueAddress(const WebPlace& place, const std::string& number);
std::string requestAddress(const WebPlace& place, const std::string& number);

/// Returns the address among a server's lines that leads to a new request, else the first one; empty when there is none.
std::string addressIn(const std::vector<std::string>& lines);

} // namespace gitkit

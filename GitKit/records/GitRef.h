// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// A branch or tag. Names are bytes as git printed them.
struct GitRef {
    enum class Kind { local, remote, tag };

    std::string fullName; ///< refs/heads/main
    std::string name;     ///< main, origin/main, v1.0
    Kind kind = Kind::local;
    std::string
        hash; ///< the object that the ref points to (for an annotated tag, the tag object); empty if it is damaged
    bool isHead = false;
    std::optional<std::string> upstream; ///< short name; kept when the upstream itself is gone
    int ahead = 0;
    int behind = 0;
    std::string upstreamRef = {}; ///< full name of the upstream, where the read asked for it; empty otherwise

    const std::string& id() const { return fullName; }

    bool operator==(const GitRef&) const = default;
};

} // namespace gitkit

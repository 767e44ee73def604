// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

namespace gitkit {

/// The name and the address that commits are recorded with.
struct Identity {
    std::string name;
    std::string email;

    bool operator==(const Identity&) const = default;
};

/// Whether an identity is for this repository or for all of the user's.
enum class IdentityPlace { repository, everywhere };

} // namespace gitkit

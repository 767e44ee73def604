// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <compare>
#include <string>

namespace gitkit {

/// A setting of a repository's own configuration by which git would run a program.
struct ConfiguredProgram {
    std::string submodule = {}; ///< the path of the submodule whose setting it is; empty for the repository itself
    std::string key;            ///< as git lists it: section and last part in lower case
    std::string value;

    auto operator<=>(const ConfiguredProgram&) const = default;
};

} // namespace gitkit

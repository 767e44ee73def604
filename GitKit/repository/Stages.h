// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// What the index has of one side of a conflicted path.
struct Stage {
    std::string mode, hash;

    bool isSubmodule() const { return mode == "160000"; }
    bool operator==(const Stage&) const = default;
};

/// The sides by git's numbers: 1 the base, 2 left, 3 right. The first is not used.
using Stages = std::array<std::optional<Stage>, 4>;

/// Reads entries "MODE HASH STAGE\tPATH", each ended by a zero byte, as `git ls-files --unmerged -z` prints them.
std::map<std::string, Stages> parseStages(std::string_view listed);

/// Returns zeros, as many as the repository's hashes have digits.
std::string absentHash(const Stages& stages);

/// Returns the entries that leave a path without any, as `update-index -z --index-info` reads them.
std::string absentEntry(const Stages& stages, const std::string& path);

} // namespace gitkit

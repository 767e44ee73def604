// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <array>
#include <compare>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace plovik {

/// A version as releases are numbered, ordered as semantic versioning orders them: 1.0.0-alpha.2 < 1.0.0-alpha.10 <
/// 1.0.0-beta < 1.0.0. Build metadata is not kept.
struct SemanticVersion {
    /// Numbers stand below words.
    using Identifier = std::variant<std::uint64_t, std::string>;

    std::array<std::uint64_t, 3> numbers{};
    std::vector<Identifier> preRelease; ///< empty for a release

    bool isPreRelease() const { return !preRelease.empty(); }

    bool operator==(const SemanticVersion&) const = default;
    std::strong_ordering operator<=>(const SemanticVersion& other) const;

    /// Takes also what release lists are written with: "1.2" for 1.2.0, "v" before it, "~" before the pre-release.
    static std::optional<SemanticVersion> parse(QStringView text);
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVersionNumber>

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
    /// A number is less than any word.
    using Identifier = std::variant<std::uint64_t, std::string>;

    QVersionNumber numbers;             ///< normalized: 1.2 is 1.2.0
    std::vector<Identifier> preRelease; ///< empty for a release

    bool isPreRelease() const { return !preRelease.empty(); }

    bool operator==(const SemanticVersion&) const = default;
    std::strong_ordering operator<=>(const SemanticVersion& other) const;

    /// Also reads what release lists contain: "1.2" for 1.2.0, "v" before the version, "~" before the pre-release.
    /// Returns nullopt for a text that is no version, and for numbers that are too large to compare.
    static std::optional<SemanticVersion> parse(const QString& text);
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>

namespace gitkit {

/// One line of a parsed diff.
struct DiffLine {
    enum class Kind { hunk, context, addition, deletion, meta };

    int id = 0; ///< its position in the diff
    Kind kind = Kind::context;
    std::string text; ///< for showing: without the sign, invalid UTF-8 replaced
    std::optional<int> oldNumber;
    std::optional<int> newNumber;
    std::optional<std::string> raw; ///< the bytes, where `text` differs from them

    /// The bytes that go back to git.
    const std::string& bytes() const { return raw ? *raw : text; }
    bool isChange() const { return kind == Kind::addition || kind == Kind::deletion; }

    bool operator==(const DiffLine&) const = default;
};

} // namespace gitkit

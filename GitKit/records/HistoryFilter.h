// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// A search over history. Its text may name further fields: see SearchTerms.
struct HistoryFilter {
    enum class Field {
        message,
        author,
        path,
        content, ///< a text that is added or removed
        lines,   ///< a regular expression that matches added or removed lines
        date,
        hash
    };

    static constexpr std::array allFields{Field::message, Field::author, Field::path, Field::content,
                                          Field::lines,   Field::date,   Field::hash};

    static constexpr std::string_view rawValue(Field field)
    {
        constexpr std::array<std::string_view, 7> names{"message", "author", "path", "content",
                                                        "lines",   "date",   "hash"};
        return names[static_cast<std::size_t>(field)];
    }

    static constexpr std::optional<Field> fieldNamed(std::string_view rawName)
    {
        for (const Field field : allFields) {
            if (rawValue(field) == rawName)
                return field;
        }
        return std::nullopt;
    }

    Field field = Field::message;
    std::string text;

    bool operator==(const HistoryFilter&) const = default;
};

} // namespace gitkit

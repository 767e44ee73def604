// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// A search over history.
struct HistoryFilter {
    enum class Field { message, author, path };

    static constexpr std::array allFields{Field::message, Field::author, Field::path};

    static constexpr std::string_view rawValue(Field field)
    {
        constexpr std::array<std::string_view, 3> names{"message", "author", "path"};
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

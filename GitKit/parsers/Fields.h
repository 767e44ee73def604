// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Date.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace gitkit {

/// The separator that git is asked to print between the fields of a ref, whose name holds no control characters. All
/// other fields end in a NUL.
inline constexpr char fieldSeparator = '\x1f';

/// Gives the non-empty pieces of a text between separators, one after another.
class Pieces {
public:
    Pieces(std::string_view text, char separator) : rest_(text), separator_(separator) {}

    std::optional<std::string_view> next()
    {
        while (!rest_.empty()) {
            const std::size_t end = rest_.find(separator_);
            const std::string_view piece = rest_.substr(0, end);
            rest_.remove_prefix(end == std::string_view::npos ? rest_.size() : end + 1);
            if (!piece.empty())
                return piece;
        }
        return std::nullopt;
    }

private:
    std::string_view rest_;
    char separator_;
};

/// Gives the fields of a text, including empty ones, one after another. Each field ends in a NUL, which no text in a
/// commit contains; the last may lack it.
class NulFields {
public:
    explicit NulFields(std::string_view text) : rest_(text) {}

    bool atEnd() const { return rest_.empty(); }
    std::string_view rest() const { return rest_; }
    /// Returns the next field without taking it.
    std::string_view peek() const { return rest_.substr(0, rest_.find('\0')); }

    std::optional<std::string_view> next()
    {
        if (rest_.empty())
            return std::nullopt;
        const std::string_view field = peek();
        rest_.remove_prefix(std::min(field.size() + 1, rest_.size()));
        return field;
    }

    /// Takes `Count` fields; nullopt, with nothing left, when there are fewer.
    template <std::size_t Count>
    std::optional<std::array<std::string_view, Count>> take()
    {
        std::array<std::string_view, Count> fields;
        for (std::string_view& field : fields) {
            const auto taken = next();
            if (!taken)
                return std::nullopt;
            field = *taken;
        }
        return fields;
    }

private:
    std::string_view rest_;
};

/// Returns the first `Count` fields of a text, including empty ones; nullopt when there are fewer.
template <std::size_t Count>
std::optional<std::array<std::string_view, Count>> splitFields(std::string_view text, char separator)
{
    std::array<std::string_view, Count> fields;
    for (std::size_t index = 0; index + 1 < Count; ++index) {
        const std::size_t end = text.find(separator);
        if (end == std::string_view::npos)
            return std::nullopt;
        fields[index] = text.substr(0, end);
        text.remove_prefix(end + 1);
    }
    fields.back() = text;
    return fields;
}

/// Reads a decimal number. Returns 0 for anything else.
inline int readNumber(std::string_view text)
{
    int number = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end ? number : 0;
}

/// Reads seconds since 1970, as git prints them. Returns the epoch for anything else.
inline Date readDate(std::string_view text)
{
    constexpr double farthest = 1e15; // thirty million years; later dates cannot be shown
    double seconds = 0;
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, seconds);
    if (error != std::errc() || stop != end || !(std::abs(seconds) <= farthest))
        return Date{};
    return Date{std::chrono::seconds{static_cast<std::int64_t>(std::floor(seconds))}};
}

} // namespace gitkit

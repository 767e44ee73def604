// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace gitkit {

namespace detail {

inline bool isOctal(char character) { return character >= '0' && character <= '7'; }

/// Returns the byte that an escape means. `rest` begins after the backslash and is moved to the end of the escape.
inline char readEscape(std::string_view& rest)
{
    if (rest.size() >= 3 && rest[0] <= '3' && isOctal(rest[0]) && isOctal(rest[1]) && isOctal(rest[2])) {
        const int value = (rest[0] - '0') * 64 + (rest[1] - '0') * 8 + (rest[2] - '0');
        rest.remove_prefix(3);
        return static_cast<char>(static_cast<unsigned char>(value));
    }
    constexpr std::string_view letters = "abtnvfr";
    constexpr std::string_view meanings = "\a\b\t\n\v\f\r";
    const char letter = rest.front();
    rest.remove_prefix(1);
    const std::size_t index = letters.find(letter);
    return index == std::string_view::npos ? letter : meanings[index];
}

} // namespace detail

/// Returns the bytes of a name that git printed in a list without NULs. There, names with odd characters are quoted and
/// escaped as in C.
inline std::string unquotedName(std::string_view name)
{
    if (name.size() < 2 || !name.starts_with('"') || !name.ends_with('"'))
        return std::string(name);
    std::string bytes;
    std::string_view rest = name.substr(1, name.size() - 2);
    while (!rest.empty()) {
        const char character = rest.front();
        rest.remove_prefix(1);
        bytes += character == '\\' && !rest.empty() ? detail::readEscape(rest) : character;
    }
    return bytes;
}

} // namespace gitkit

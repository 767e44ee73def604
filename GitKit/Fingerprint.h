// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace gitkit {

/// Returns 16 hexadecimal digits that tell texts apart, the same in every run and on every machine. They name files and
/// find damage; they do not withstand somebody who looks for a second text with the same digits. Any thread.
inline std::string fingerprint(std::string_view text)
{
    std::uint64_t hash = 14695981039346656037U; // FNV-1a
    for (const char byte : text)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 1099511628211U;
    std::string digits(16, '0');
    for (std::size_t place = digits.size(); place-- > 0; hash >>= 4)
        digits[place] = "0123456789abcdef"[hash & 15];
    return digits;
}

} // namespace gitkit

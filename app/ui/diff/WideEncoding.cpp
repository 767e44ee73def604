// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/WideEncoding.h"

#include <algorithm>
#include <array>

namespace plovik {

namespace {

using namespace std::string_view_literals;

/// How many bytes are searched for zeros.
constexpr std::size_t mostLookedAt = 4096;
constexpr std::size_t fewestLookedAt = 8;

std::optional<WideEncoding> byMark(std::string_view beginning)
{
    // The mark of UTF-32 begins with that of UTF-16.
    if (beginning.starts_with("\xFF\xFE\0\0"sv))
        return WideEncoding{32, false, true};
    if (beginning.starts_with("\0\0\xFE\xFF"sv))
        return WideEncoding{32, true, true};
    if (beginning.starts_with("\xFF\xFE"sv))
        return WideEncoding{16, false, true};
    if (beginning.starts_with("\xFE\xFF"sv))
        return WideEncoding{16, true, true};
    return std::nullopt;
}

/// Recognises text in an alphabet of few characters: its zeros stand at the same place of almost every unit, and it has
/// no control characters but those that end lines.
std::optional<WideEncoding> byZeros(std::string_view beginning)
{
    beginning = beginning.substr(0, std::min(beginning.size(), mostLookedAt) / 4 * 4);
    if (beginning.size() < fewestLookedAt)
        return std::nullopt;
    std::array<std::size_t, 4> zeros{};
    for (std::size_t at = 0; at < beginning.size(); ++at) {
        const auto byte = static_cast<unsigned char>(beginning[at]);
        if (byte == 0)
            ++zeros[at % 4];
        else if (byte < 0x20 && byte != '\t' && byte != '\n' && byte != '\r' && byte != '\f' && byte > 0x06)
            return std::nullopt;
    }
    const std::size_t units = beginning.size() / 4;
    const auto mostly = [&](std::size_t place) { return zeros[place] * 10 >= units * 8; };
    const auto hardly = [&](std::size_t place) { return zeros[place] * 50 <= units; };
    if (mostly(1) && mostly(2) && mostly(3) && hardly(0))
        return WideEncoding{32, false, false};
    if (mostly(0) && mostly(1) && mostly(2) && hardly(3))
        return WideEncoding{32, true, false};
    if (mostly(1) && mostly(3) && hardly(0) && hardly(2))
        return WideEncoding{16, false, false};
    if (mostly(0) && mostly(2) && hardly(1) && hardly(3))
        return WideEncoding{16, true, false};
    return std::nullopt;
}

} // namespace

std::optional<WideEncoding> wideEncoding(std::string_view beginning)
{
    const auto marked = byMark(beginning);
    return marked ? marked : byZeros(beginning);
}

std::string attributeName(const WideEncoding& encoding)
{
    std::string name = "UTF-" + std::to_string(encoding.bits);
    if (encoding.hasMark && encoding.bits == 16 && !encoding.isBigEndian)
        return name + "LE-BOM"; // plain "UTF-16" would make git write the other byte order
    if (encoding.hasMark)
        return name;
    return name + (encoding.isBigEndian ? "BE" : "LE");
}

} // namespace plovik

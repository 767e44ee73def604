// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/Text.h"

#include <utility>

#include <algorithm>

#include <cstdint>
#include <cstring>

namespace gitkit {

namespace {

struct Sequence {
    std::size_t length;
    bool valid;
};

unsigned byteAt(std::string_view bytes, std::size_t index) { return static_cast<unsigned char>(bytes[index]); }

/// Returns how many continuation bytes follow `lead` and the range of the first of them, which excludes overlong forms,
/// surrogates and code points above U+10FFFF.
struct LeadByte {
    std::size_t continuations = 0;
    unsigned low = 0x80;
    unsigned high = 0xBF;
};

LeadByte readLead(unsigned lead)
{
    if (lead >= 0xC2 && lead <= 0xDF)
        return {1};
    if (lead >= 0xE0 && lead <= 0xEF)
        return {2, lead == 0xE0 ? 0xA0u : 0x80u, lead == 0xED ? 0x9Fu : 0xBFu};
    if (lead >= 0xF0 && lead <= 0xF4)
        return {3, lead == 0xF0 ? 0x90u : 0x80u, lead == 0xF4 ? 0x8Fu : 0xBFu};
    return {};
}

/// Reads the sequence at `start`, which is not an ASCII byte. An invalid sequence ends where it stops being valid, so
/// that a truncated character becomes one U+FFFD and not several.
Sequence sequenceAt(std::string_view bytes, std::size_t start)
{
    const LeadByte lead = readLead(byteAt(bytes, start));
    if (lead.continuations == 0)
        return {1, false};
    std::size_t length = 1;
    unsigned low = lead.low;
    unsigned high = lead.high;
    while (length <= lead.continuations && start + length < bytes.size()) {
        const unsigned byte = byteAt(bytes, start + length);
        if (byte < low || byte > high)
            break;
        low = 0x80;
        high = 0xBF;
        ++length;
    }
    return {length, length == lead.continuations + 1};
}

/// Returns the index of the first byte at or after `start` that is not ASCII. Looks at eight bytes at a time, because
/// this runs over everything that git prints and nearly all of it is ASCII.
std::size_t skipAscii(std::string_view bytes, std::size_t start)
{
    constexpr std::uint64_t highBits = 0x8080808080808080u;
    std::uint64_t word = 0;
    while (start + sizeof word <= bytes.size()) {
        std::memcpy(&word, bytes.data() + start, sizeof word);
        if (word & highBits)
            break;
        start += sizeof word;
    }
    while (start < bytes.size() && byteAt(bytes, start) < 0x80)
        ++start;
    return start;
}

std::size_t firstInvalid(std::string_view bytes)
{
    std::size_t index = skipAscii(bytes, 0);
    while (index < bytes.size()) {
        const Sequence sequence = sequenceAt(bytes, index);
        if (!sequence.valid)
            return index;
        index = skipAscii(bytes, index + sequence.length);
    }
    return bytes.size();
}

} // namespace

bool isUtf8(std::string_view bytes) { return firstInvalid(bytes) == bytes.size(); }

std::string repairedUtf8(std::string bytes)
{
    std::size_t index = firstInvalid(bytes);
    if (index == bytes.size())
        return bytes;
    const std::string_view source = bytes;
    std::string repaired(source.substr(0, index));
    while (index < source.size()) {
        const std::size_t ascii = skipAscii(source, index);
        repaired += source.substr(index, ascii - index);
        index = ascii;
        if (index == source.size())
            break;
        const Sequence sequence = sequenceAt(source, index);
        repaired += sequence.valid ? source.substr(index, sequence.length) : std::string_view("\xEF\xBF\xBD");
        index += sequence.length;
    }
    return repaired;
}

std::string shownLine(std::string_view bytes)
{
    constexpr std::size_t longest = 2000;
    if (bytes.size() <= longest)
        return isUtf8(bytes) ? std::string(bytes) : repairedUtf8(std::string(bytes));
    std::size_t end = longest;
    while (end > 0 && (static_cast<unsigned char>(bytes[end]) & 0xC0U) == 0x80U)
        --end;
    return repairedUtf8(std::string(bytes.substr(0, end == 0 ? longest : end))) + "…";
}

std::string inQuotes(std::string bytes) { return "“" + repairedUtf8(std::move(bytes)) + "”"; }

std::string_view trimmed(std::string_view text, std::string_view blanks)
{
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view withoutLineEnd(std::string_view text)
{
    return text.ends_with('\n') ? text.substr(0, text.size() - 1) : text;
}

std::vector<std::string> splitNul(std::string_view text)
{
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, text.find('\0'));
        pieces.emplace_back(piece);
        text.remove_prefix(std::min(piece.size() + 1, text.size()));
    }
    return pieces;
}

} // namespace gitkit

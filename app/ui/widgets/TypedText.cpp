// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/TypedText.h"

#include "app/store/ShownText.h"

#include <algorithm>

namespace plovik {

namespace {

bool isAscii(char byte) { return static_cast<unsigned char>(byte) < 0x80; }

char16_t lowered(char16_t unit) { return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 0x20) : unit; }

/// Both are ASCII.
bool isSameLetter(char byte, QChar typed)
{
    return lowered(static_cast<unsigned char>(byte)) == lowered(typed.unicode());
}

} // namespace

bool beginsWithTyped(std::string_view bytes, const QString& typed)
{
    for (qsizetype at = 0; at < typed.size(); ++at) {
        if (at == std::ssize(bytes))
            return false;
        const char byte = bytes[static_cast<std::size_t>(at)];
        // No character has more than four bytes.
        if (!isAscii(byte) || typed[at].unicode() >= 0x80)
            return exactText(bytes.substr(0, static_cast<std::size_t>(4 * typed.size())))
                .startsWith(typed, Qt::CaseInsensitive);
        if (!isSameLetter(byte, typed[at]))
            return false;
    }
    return true;
}

bool containsTyped(std::string_view bytes, const QString& typed)
{
    const bool isPlain = std::ranges::all_of(bytes, isAscii) &&
                         std::ranges::all_of(typed, [](QChar unit) { return unit.unicode() < 0x80; });
    if (!isPlain)
        return exactText(bytes).contains(typed, Qt::CaseInsensitive);
    return std::search(bytes.begin(), bytes.end(), typed.begin(), typed.end(), isSameLetter) != bytes.end() ||
           typed.isEmpty();
}

} // namespace plovik

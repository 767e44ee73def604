// SPDX-License-Identifier: GPL-3.0-or-later
#include "cli/ShownName.h"

#include "GitKit/Text.h"

namespace plovik {

namespace {

std::string escaped(unsigned char character)
{
    constexpr std::string_view digits = "0123456789abcdef";
    if (character == '\n')
        return "\\n";
    if (character == '\t')
        return "\\t";
    return {'\\', 'x', digits[character >> 4U], digits[character & 15U]};
}

} // namespace

std::string shownName(std::string_view bytes)
{
    const std::string text = gitkit::repairedUtf8(std::string(bytes));
    std::string shown;
    shown.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto character = static_cast<unsigned char>(text[i]);
        const auto next = i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : 0U;
        // The second range of control characters is C2 80 to C2 9F in UTF-8.
        if (character == 0xC2 && next < 0xA0)
            shown += escaped(static_cast<unsigned char>(text[++i]));
        else if (character < 0x20 || character == 0x7F)
            shown += escaped(character);
        else
            shown += text[i];
    }
    return shown;
}

} // namespace plovik

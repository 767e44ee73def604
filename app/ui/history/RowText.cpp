// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/RowText.h"

#include "app/store/ShownText.h"

#include <algorithm>

namespace plovik {

QString shownLine(std::string_view bytes)
{
    constexpr qsizetype mostCharacters = 400;
    // No character has more than four bytes, so a character that substr() cuts lies beyond those that are kept.
    QString line = exactText(bytes.substr(0, 4 * (mostCharacters + 1))).left(mostCharacters);
    std::ranges::replace_if(line, [](QChar character) { return character.category() == QChar::Other_Control; }, u' ');
    return withStandIns(line);
}

} // namespace plovik

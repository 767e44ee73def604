// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/RowText.h"

#include "app/store/ShownText.h"

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

QString shownLine(std::string_view bytes)
{
    constexpr qsizetype mostCharacters = 400;
    // Four bytes hold any character, so what this cuts in two lies beyond what is kept.
    QString line = shownText(bytes.substr(0, 4 * (mostCharacters + 1))).left(mostCharacters);
    std::ranges::replace_if(line, [](QChar character) { return character.category() == QChar::Other_Control; }, u' ');
    return line;
}

} // namespace plovik

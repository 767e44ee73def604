// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/services/ai/AlertText.h"

namespace plovik {

namespace {

constexpr qsizetype longest = 2000;
constexpr QChar ellipsis(u'…');

/// Returns whether the character is invisible or turns the text around it.
bool misleads(QChar character)
{
    const char16_t unit = character.unicode();
    return character.category() == QChar::Other_Control || (unit >= 0x202A && unit <= 0x202E) ||
           (unit >= 0x2066 && unit <= 0x2069);
}

} // namespace

QString alertText(QString foreign, const QString& secret)
{
    foreign = foreign.simplified();
    foreign.removeIf(misleads);
    // Characters that were taken out could have hidden the secret, so it is replaced after them.
    if (!secret.isEmpty())
        foreign.replace(secret, ellipsis);
    if (foreign.size() > longest) {
        foreign.truncate(foreign.at(longest - 1).isHighSurrogate() ? longest - 1 : longest);
        foreign += ellipsis;
    }
    return foreign;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/LineWrap.h"

#include <QChar>

namespace plovik {

namespace {

/// The longest sign that stands for a character which cannot be seen.
constexpr int longestSign = 9;

/// Returns how many columns a character takes, as fonts for code have it.
int columnsOfCharacter(char32_t character)
{
    if (character < 0x300)
        return 1;
    const QChar::Category category = QChar::category(character);
    if (category == QChar::Mark_NonSpacing || category == QChar::Mark_Enclosing || character == 0x200D)
        return 0;
    const bool isWide = (character >= 0x1100 && character <= 0x115F) || (character >= 0x2E80 && character <= 0xA4CF) ||
                        (character >= 0xAC00 && character <= 0xD7A3) || (character >= 0xF900 && character <= 0xFAFF) ||
                        (character >= 0xFE30 && character <= 0xFE6F) || (character >= 0xFF00 && character <= 0xFF60) ||
                        (character >= 0xFFE0 && character <= 0xFFE6) ||
                        (character >= 0x1F300 && character <= 0x1FAFF) ||
                        (character >= 0x20000 && character <= 0x3FFFD);
    return isWide ? 2 : 1;
}

} // namespace

std::vector<qsizetype> wrapPoints(QStringView shown, int columns)
{
    std::vector<qsizetype> points;
    qsizetype begin = 0;
    qsizetype behindBlank = 0; // where the line is best broken
    int used = 0;
    int usedToBlank = 0;
    for (qsizetype at = 0; at < shown.size();) {
        const bool isPair = shown[at].isHighSurrogate() && at + 1 < shown.size() && shown[at + 1].isLowSurrogate();
        const char32_t character = isPair ? QChar::surrogateToUcs4(shown[at], shown[at + 1]) : shown[at].unicode();
        const int own = columnsOfCharacter(character);
        // A blank at the end may hang over, since nothing of it is seen.
        const bool hangs = character == U' ' && used == columns;
        if (used + own > columns && !hangs && at > begin) {
            const bool isNear = behindBlank > begin && 2 * usedToBlank > columns;
            begin = isNear ? behindBlank : at;
            points.push_back(begin);
            used = isNear ? used - usedToBlank : 0;
        }
        used += own;
        at += isPair ? 2 : 1;
        if (character == U' ') {
            behindBlank = at;
            usedToBlank = used;
        }
    }
    return points;
}

bool mayNeedWrapping(std::string_view bytes, int tabWidth, int columns)
{
    int most = 0;
    for (const char byte : bytes) {
        const auto unit = static_cast<unsigned char>(byte);
        if (unit == '\t')
            most += tabWidth;
        else if (unit < 0x20 || unit == 0x7F || unit >= 0xC0)
            most += longestSign;
        else
            ++most;
        if (most > columns)
            return true;
    }
    return false;
}

} // namespace plovik

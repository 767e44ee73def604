// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

struct Beginning {
    QString text;
    bool isWhole = false; ///< nothing was left out
};

/// Returns the first `count` characters of a text in UTF-8 as people count them: a letter with its accents, a flag, a
/// family of emoji and CR LF are one each. Takes time for what is returned, however long the text is. Any thread.
Beginning beginningOf(std::string_view utf8, qsizetype count);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

/// Returns bytes from git as text to look at, repaired where they are not UTF-8. It never goes back to git.
inline QString shownText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// Returns a name as it stands in a sentence: “name”.
inline QString inQuotes(const QString& name) { return u'“' + name + u'”'; }
inline QString inQuotes(std::string_view bytes) { return inQuotes(shownText(bytes)); }

} // namespace plovik

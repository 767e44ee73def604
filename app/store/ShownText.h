// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

/// Returns bytes from git as text, repaired where they are not UTF-8: for the clipboard, for fields that are edited, and
/// for comparing with what was typed.
inline QString exactText(std::string_view bytes)
{
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

/// Returns bytes from git as text to look at, which never goes back to git. No more than `longestShownText` units are
/// kept, because a text without end is laid out without end; characters that hide or reorder others are marked; and
/// text that runs from right to left does not turn what stands around it.
QString shownText(std::string_view bytes);
inline constexpr qsizetype longestShownText = 4096;

/// Returns whether a character draws nothing, or changes how its neighbours are drawn.
bool isInvisible(char16_t unit);
/// Returns what is shown in place of a character that cannot be drawn as it is: "^[" for a control character, "‹U+202E›"
/// for an invisible one. Returns an empty string for any other.
QString standInFor(char16_t unit);
/// Returns `text` with stand-ins, except for line breaks and tabs.
QString withStandIns(const QString& text);

/// Returns a name as it stands in a sentence: “name”.
inline QString inQuotes(const QString& name) { return u'“' + name + u'”'; }
inline QString inQuotes(std::string_view bytes) { return inQuotes(shownText(bytes)); }

/// Returns “a.txt”, or “a.txt” and the number of the others. `paths` is not empty.
QString namesOfFiles(const std::vector<std::string>& paths);
QString namesOfFiles(const std::string& first, std::size_t count);
/// Returns the first few names, one a line, and how many there are besides.
QString namesInLines(const std::vector<std::string>& paths);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Whether `bytes` are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// Returns `bytes` with every invalid UTF-8 sequence replaced by U+FFFD.
std::string repairedUtf8(std::string bytes);

/// Returns one line of text for showing: repaired, and cut where it is so long that laying it out would take seconds.
std::string shownLine(std::string_view bytes);

/// Returns `bytes` as they stand in a sentence for people: repaired, between quotation marks.
std::string inQuotes(std::string bytes);

/// Returns `text` without the characters of `blanks` at both ends.
std::string_view trimmed(std::string_view text, std::string_view blanks = " \t\r\n\v\f");

/// Returns `text` without one line feed at its end.
std::string_view withoutLineEnd(std::string_view text);

/// Returns the pieces of a list in which every piece ends with a zero byte. The last zero byte may be missing.
std::vector<std::string> splitNul(std::string_view text);

} // namespace gitkit

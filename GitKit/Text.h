// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// Whether `bytes` are well-formed UTF-8.
bool isUtf8(std::string_view bytes);

/// `bytes` with every invalid UTF-8 sequence replaced by U+FFFD; a copy when there is none.
std::string repairedUtf8(std::string bytes);

/// `text` without the blanks and line ends around it.
std::string_view trimmed(std::string_view text, std::string_view blanks = " \t\r\n\v\f");

/// `text` without the line feed at its end.
std::string_view withoutLineEnd(std::string_view text);

/// The pieces of a list in which a zero byte ends each; the last may lack its own.
std::vector<std::string> splitNul(std::string_view text);

} // namespace gitkit

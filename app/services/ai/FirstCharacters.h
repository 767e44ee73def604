// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <string_view>

namespace plovik {

/// The beginning of `text` that holds its first `count` characters as people count them: a letter with its accents, a
/// flag, a family of emoji and CR LF are one each. `text` is UTF-8; a broken byte counts as a character of its own.
/// Takes time for what is returned, however long the text is. Any thread. Throws std::runtime_error where ICU's data
/// is not installed.
std::string_view firstCharacters(std::string_view text, std::size_t count);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace plovik {

/// Returns a name of any bytes as text for a terminal: bytes that are not UTF-8 are replaced, and control characters,
/// which the terminal would obey, are written as escapes.
std::string shownName(std::string_view bytes);

} // namespace plovik

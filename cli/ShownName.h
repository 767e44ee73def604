// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace plovik {

/// A name of any bytes as text for a terminal: what is no UTF-8 is replaced, and control characters, which the terminal
/// would obey, are written as escapes.
std::string shownName(std::string_view bytes);

} // namespace plovik

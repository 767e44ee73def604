// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

/// Returns the beginning of a text for one line of a list: no more than a screen can hold, with spaces in place of
/// control characters.
QString shownLine(std::string_view bytes);

} // namespace plovik

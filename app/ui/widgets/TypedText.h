// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <string_view>

namespace plovik {

/// Compare bytes from git with what a user types, regardless of case. They are asked of every row of a list for every
/// key, so they make no text of what is plain ASCII. Any thread.

bool beginsWithTyped(std::string_view bytes, const QString& typed);
bool containsTyped(std::string_view bytes, const QString& typed);

} // namespace plovik

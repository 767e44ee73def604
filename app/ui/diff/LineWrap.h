// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QStringView>

#include <string_view>
#include <vector>

namespace plovik {

/// Returns where the continuation lines of a shown line begin, in its units, when no line may have more than `columns`
/// columns. Lines are broken behind a blank if one is near the end, else anywhere between two characters. Pure.
std::vector<qsizetype> wrapPoints(QStringView shown, int columns);

/// Returns whether wrapPoints() may find any for a line of these bytes. Reads no more of it than is needed. Pure.
bool mayNeedWrapping(std::string_view bytes, int tabWidth, int columns);

} // namespace plovik

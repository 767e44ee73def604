// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Turns what programs print for terminals into text to show. Pure functions, linear in the length of the text.
namespace plovik {

/// Returns the text that a terminal would show at the end, without colours, overwritten progress and white space at
/// both ends.
QString withoutTerminalCodes(const QString& text);

/// Returns the same for output of git that is meant for programs: white space at the ends stays, and NUL becomes a line
/// end.
QString printedText(QString text);

/// Returns a text that a view can lay out at once. Of a longer text it keeps the beginning and the end with a sentence
/// between them that says how many lines are missing; very long lines are cut.
QString boundedText(const QString& text);

} // namespace plovik

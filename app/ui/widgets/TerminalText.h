// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// What programs print for terminals, as text to look at. Pure functions, linear in the text's length.
namespace plovik {

/// What a terminal would have left of a text in which programs wrote colours and progress, without white space at its
/// ends.
QString withoutTerminalCodes(const QString& text);

/// The same of what git printed for programs: its ends stay, and what ends with NUL ends a line.
QString printedText(QString text);

/// A text of no more lines, and lines no longer, than a view lays out at once: of more the beginning and the end, and
/// between them a sentence that says how many lines are missing.
QString boundedText(const QString& text);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <QList>
#include <QTextLayout>

#include <span>

namespace plovik {

struct ShownLine;

/// Adds the colours of a line's runs for the `length` units of its shown text from `first` on, in units from there. The
/// colours are of the theme in force. Main thread.
void appendSyntaxFormats(QList<QTextLayout::FormatRange>& formats, std::span<const SyntaxRun> runs,
                         const ShownLine& line, qsizetype first, qsizetype length);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <QList>
#include <QTextLayout>

#include <span>

namespace plovik {

struct ShownLine;

/// Adds the colours of a line's runs for `length` units of its shown text from `first` on. The ranges are counted from
/// `first`, and the colours are those of the current theme. Main thread.
void appendSyntaxFormats(QList<QTextLayout::FormatRange>& formats, std::span<const SyntaxRun> runs,
                         const ShownLine& line, qsizetype first, qsizetype length);

} // namespace plovik

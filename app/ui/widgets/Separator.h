// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QWidget;

namespace plovik {

/// Returns a horizontal line, one pixel high, in the colour of separators; owned by `parent`. Main thread.
QWidget* makeSeparator(QWidget* parent);

} // namespace plovik

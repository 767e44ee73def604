// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Begins to read the system's configuration of fonts on a thread of its own. It takes some milliseconds, for which the
/// first text of the first window would wait. To be called once, before other threads start and before the toolkit does.
void beginReadingFonts();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Installs the texts of the user's language into the running application: for English the plural forms alone, since
/// the sources are English. To be called once, on the main thread, before the first text is shown.
void installTranslations();

} // namespace plovik

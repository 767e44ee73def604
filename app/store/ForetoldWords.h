// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/ActionPreviews.h"

#include <QString>

namespace plovik {

/// Returns what an action would do, in a few words: "Merges cleanly · 14 files". Empty where that is not known. Safe on
/// every thread.
QString foretoldWords(const Foretold& foretold);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"

namespace plovik {

/// Returns the providers of commit messages and the store of their keys, for the settings. When the application quits,
/// it waits a short time for keys that are being stored. Main thread.
AIChoices aiChoices();

} // namespace plovik

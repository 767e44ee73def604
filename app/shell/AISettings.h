// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/settings/AIChoices.h"

namespace plovik {

/// The providers of commit messages and the store of their keys, for the settings. A key that is being stored when the
/// application quits is waited for, shortly. Main thread.
AIChoices aiChoices();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Whether there is a session bus to ask. Without one, asking for it may start one, or wait.
bool hasSessionBus();

} // namespace plovik

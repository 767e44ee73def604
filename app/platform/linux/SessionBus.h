// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Returns whether there is a session bus. Without this check, a connection may start a bus, or wait for one.
bool hasSessionBus();

} // namespace plovik

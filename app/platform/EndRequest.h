// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

namespace plovik {

/// Calls `asked` on the main thread once the system or the user asks this process to end: with SIGTERM, SIGINT or SIGHUP.
/// The second such signal ends it at once. A signal that this process was started to ignore stays ignored. To be called
/// once, on the main thread and with an application; `asked` is kept until the process ends.
void onEndRequest(std::function<void()> asked);

} // namespace plovik

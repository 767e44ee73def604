// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Lets all threads allocate from the same memory, so that a thread can use what another one gave back. To be called
/// once, before other threads start.
void shareMemoryBetweenThreads();

} // namespace plovik

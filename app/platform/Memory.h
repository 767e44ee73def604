// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace plovik {

/// Keeps memory that worker threads give back where the next one finds it, instead of a store of its own for every
/// thread. To be called once, before other threads start.
void shareMemoryBetweenThreads();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Memory.h"

#include <malloc.h>

namespace plovik {

void shareMemoryBetweenThreads()
{
    // Pages of history are read on whichever worker is free. Left to itself, the C library keeps an arena for each of
    // them, and every arena the size of the largest page that it ever held.
    mallopt(M_ARENA_MAX, 1);
    mallopt(M_MMAP_THRESHOLD, 256 * 1024);
    mallopt(M_TRIM_THRESHOLD, 1024 * 1024);
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/MessageWriter.h"

namespace plovik {

/// Returns a writer of commit messages that reads the settings at each request. Main thread.
MessageWriter commitMessageWriter();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/MessageWriter.h"

namespace plovik {

/// Writes commit messages as the settings say, each time they are asked.
MessageWriter commitMessageWriter();

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"
#include "app/services/commandline/CommandLineTool.h"
#include "app/ui/settings/CommandLineTab.h"

namespace plovik {

/// Returns what the settings show of the command line tool and what they can do with it. `worker` must outlive the
/// result. Main thread.
CommandLineCommands commandLineCommands(const CommandLineTool& tool = CommandLineTool(),
                                        Worker& worker = Worker::pool());

} // namespace plovik

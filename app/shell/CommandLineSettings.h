// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"
#include "app/services/commandline/CommandLineTool.h"
#include "app/ui/settings/CommandLineTab.h"

namespace plovik {

/// What the settings say of the command line tool, and do with it. `worker` outlives the result. Main thread.
CommandLineCommands commandLineCommands(const CommandLineTool& tool = CommandLineTool(),
                                        Worker& worker = Worker::pool());

} // namespace plovik

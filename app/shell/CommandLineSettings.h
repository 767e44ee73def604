// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/await/Worker.h"
#include "app/services/commandline/CommandLineTool.h"
#include "app/ui/settings/CommandLineTab.h"

namespace plovik {

/// Returns the functions by which the settings show, install and reveal the command line tool. `worker` must outlive
/// the result. Main thread.
CommandLineCommands commandLineCommands(const CommandLineTool& tool = CommandLineTool(),
                                        Worker& worker = Worker::pool());

} // namespace plovik

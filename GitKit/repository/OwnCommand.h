// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OwnCommand.h"

#include <string>
#include <string_view>

namespace gitkit {

class GitRepository;

/// Returns a line in which the words in braces are the shell's own parameters, in whatever quotes they stand: what they stand
/// for is never read as a part of the line. Pure.
std::string shellLine(std::string_view line);

/// Returns whether a line has a placeholder for something that there is none of, a file for instance.
bool lacksWhatItNames(const OwnCommand& command);

/// Runs the line with the user's shell at the top of the working tree, with what git's programs get. Blocks; throws as the
/// methods of GitRepository do. Any thread.
void runOwnCommand(const GitRepository& repo, const OwnCommand& command);

/// The name under which the runs of own commands are in the log.
inline constexpr std::string_view ownCommandName = "own-command";

} // namespace gitkit

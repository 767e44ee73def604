// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ConfiguredProgram.h"
#include "GitKit/runner/RunContext.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

class GitRepository;

// The programs that a repository's own configuration makes git run. An archive that holds a repository brings its
// configuration along, and with it the programs of a stranger.

/// One kind of setting that names a program.
struct ProgramKey {
    /// When git runs the program without being asked to.
    enum class Runs {
        withFiles,     ///< when it reads or writes files of the working tree
        whenFetching,  ///< when it fetches a missing object of a partial clone, which any read may do
        underThisName, ///< as `whenFetching`, but only when the key or the value leads to this machine
    };

    std::string_view pattern; ///< the key, with "*" for the name in its middle
    Runs runs = Runs::withFiles;
    std::string_view reason;
};

/// The table of the settings that are looked at.
std::span<const ProgramKey> programKeys();

/// Returns whether the program takes part in fetching, so that a fetch that the user asks for runs it, too.
bool runsWhenFetching(const ConfiguredProgram& program);

/// Returns the programs that the configuration of one repository names, and that the user's and the machine's
/// configuration do not name in the same words. `listed` is what `git config --list --show-scope -z` printed. A
/// repository that is no partial clone fetches nothing unasked, so its programs for fetching are left out.
std::vector<ConfiguredProgram> programsIn(std::string_view listed);

/// Returns what keeps programs from running. Only for reading: what is written without its filter is another content.
Restriction restrictionAgainst(std::span<const ConfiguredProgram> programs);

/// Returns what keeps git from fetching missing objects, also the versions that do not know GIT_NO_LAZY_FETCH.
Restriction withoutFetching();

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/actions/Actors.h"

#include <filesystem>
#include <string>

namespace plovik::actions {

// A file as a commit has it. `revision` is a full hash, `path` the file's name there, as bytes. Failures are reported.

/// Writes it into the working tree, and leaves the index alone.
void takeFile(Actors actors, const std::string& revision, const std::string& path);
/// Opens a copy that cannot be written, in the user's editor.
void openVersion(Actors actors, const std::string& revision, const std::string& path);
/// Writes it to a file of the user's choice, in one step.
void saveVersion(Actors actors, const std::string& revision, const std::string& path,
                 const std::filesystem::path& target);

} // namespace plovik::actions

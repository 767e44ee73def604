// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "GitKit/records/OutsideTool.h"
#include "app/store/actions/Actors.h"

#include <string>
#include <vector>

namespace plovik::actions {

/// Selects files in the desktop's file browser. Reports a failure to the user.
void reveal(Actors actors, const std::vector<gitkit::FileChange>& files);
/// Opens files in the editor that the user chose. Reports a failure to the user.
void openInEditor(Actors actors, const std::vector<gitkit::FileChange>& files);
/// Opens a file in the editor at a line, counted from 1, and a column, or 0 where none is known.
void openAtLine(Actors actors, const std::filesystem::path& file, int line, int column);
/// Shows a file in the user's own tool for diffs or merges. Reports a failure to the user.
void openInOutsideTool(Actors actors, gitkit::OutsideTool tool, const std::string& path);
/// Opens a terminal in the repository's folder. Reports a failure to the user.
void openTerminal(Actors actors);

} // namespace plovik::actions

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileChange.h"
#include "app/store/actions/Actors.h"

#include <vector>

namespace plovik::actions {

/// Selects files in the desktop's file browser. Reports a failure to the user.
void reveal(Actors actors, const std::vector<gitkit::FileChange>& files);
/// Opens files in the editor that the user chose. Reports a failure to the user.
void openInEditor(Actors actors, const std::vector<gitkit::FileChange>& files);
/// Opens a terminal in the repository's folder. Reports a failure to the user.
void openTerminal(Actors actors);

} // namespace plovik::actions

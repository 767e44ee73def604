// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>

class QWidget;

namespace plovik {

class RepositoryStore;

/// Opens a list over a window from which the upstream of a local branch is chosen by typing. `branch` is without refs/heads.
/// Main thread.
void chooseUpstream(RepositoryStore& store, const std::string& branch, QWidget& window);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiscardExtent.h"
#include "GitKit/records/FileChange.h"
#include "app/store/Confirmation.h"

#include <optional>
#include <vector>

namespace plovik {

/// Returns the question before `files` are discarded, without its actions. If some of their changes are
/// staged and some are not, the question offers to discard the unstaged ones only. The question tells how much would go
/// when `counts` are given.
Confirmation discardQuestion(const std::vector<gitkit::FileChange>& files,
                             const std::optional<gitkit::DiscardExtent>& counts);

} // namespace plovik

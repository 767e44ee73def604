// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiscardExtent.h"
#include "GitKit/records/FileChange.h"
#include "app/store/Confirmation.h"

#include <optional>
#include <vector>

namespace plovik {

/// Returns the question before `files` are discarded, without its actions. It has an alternative, which is to discard
/// what is not staged, where there is something staged to keep. Without `counts` it does not say how much would go.
Confirmation discardQuestion(const std::vector<gitkit::FileChange>& files,
                             const std::optional<gitkit::DiscardExtent>& counts);

} // namespace plovik

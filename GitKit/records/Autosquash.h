// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RewritePlan.h"

#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

// Commits whose messages say into which other one they belong.

/// Puts the commits whose messages begin with "fixup! ", "squash! " or "amend! " into those that they name. `messages`
/// are those of the plan's commits, in the order of RewritePlan::commits.
RewritePlan autosquashed(const RewritePlan& plan, const std::vector<std::string>& messages);

/// Returns two messages as one; of a second one that says where it belongs, the first line goes.
std::string joinedMessages(std::string_view first, std::string_view second);

} // namespace gitkit

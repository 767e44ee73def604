// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"

#include <vector>

namespace gitkit {

/// Returns the blocks of lines that a diff removes in one place and adds unchanged in another, in the order of the added
/// lines. A block has at least 3 lines that are not blank and 20 letters and digits. In a diff that ignores white space
/// it is ignored here, too. A diff of a merge against several parents has none. The cost is about linear in the diff's
/// lines: a line that is removed in many places begins no block. Pure.
std::vector<MovedBlock> movedBlocks(const ParsedDiff& diff);

} // namespace gitkit

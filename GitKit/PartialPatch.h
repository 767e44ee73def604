// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/PartialChange.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace gitkit {

/// Whether selections of `diff` can be applied, other than all of it.
PartialRefusal partialRefusal(const ParsedDiff& diff);

/// A patch, as bytes, that makes (or, in reverse, takes back) just the changes whose ids are in `selected`; what is not
/// selected stays as the target side has it. Ids that are no changes are ignored. Nothing when no change is selected or
/// the diff allows none (partialRefusal), unless all of a symlink or submodule is selected.
///
/// Lines are never glued: where the file's last line has no final newline and the patch puts another line behind it,
/// the patch gives it one.
std::optional<std::string> partialPatch(const ParsedDiff& diff, const std::set<int>& selected,
                                        PatchDirection direction);

/// The selected changes of `path`'s diff as something to apply; nothing where partialPatch() gives nothing.
std::optional<PartialChange> partialChange(const std::string& path, const ParsedDiff& diff,
                                           const std::set<int>& selected, PatchDirection direction);

/// The blob that a patch of `diff` in `direction` may be applied to, as its header names it: possibly abbreviated, all
/// zeros for a file that is not there. Nothing when the header names none.
std::optional<std::string> blobBefore(const ParsedDiff& diff, PatchDirection direction);

} // namespace gitkit

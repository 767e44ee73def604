// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "GitKit/records/PartialChange.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace gitkit {

/// Returns why parts of `diff` cannot be applied; `none` when they can.
PartialRefusal partialRefusal(const ParsedDiff& diff);

/// Returns a patch, as bytes, that makes (or, in reverse, undoes) only the changes whose ids are in `selected`. All
/// other lines stay as they are on the target side. Ids of lines that are no changes are ignored. Returns nullopt when
/// no change is selected and when partialRefusal() forbids it, except for all of a symlink or submodule.
///
/// A renamed file's patch changes its lines and keeps its new name.
///
/// The patch never joins two lines: if the file's last line has no newline and another line is added after it, the
/// patch gives it one.
std::optional<std::string> partialPatch(const ParsedDiff& diff, const std::set<int>& selected,
                                        PatchDirection direction);

/// Returns partialPatch() with what is needed to apply it to `path`; nullopt when that returns nullopt.
std::optional<PartialChange> partialChange(const std::string& path, const ParsedDiff& diff,
                                           const std::set<int>& selected, PatchDirection direction);

/// Returns the blob that a patch of `diff` in `direction` may be applied to, as the header names it: it may be
/// abbreviated, and is all zeros when there is no file. Returns nullopt when the header names no blob.
std::optional<std::string> blobBefore(const ParsedDiff& diff, PatchDirection direction);

} // namespace gitkit

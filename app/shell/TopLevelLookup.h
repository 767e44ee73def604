// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>

namespace plovik {

/// Begins to look for the working tree of a folder on another thread. Called before the toolkit starts, so that both
/// happen at the same time.
void beginTopLevelLookup(const std::filesystem::path& folder);

/// Returns the top level of the working tree that holds `folder`. The first call for the folder of
/// beginTopLevelLookup() takes the answer that was found then; other calls ask git. Blocks and throws as
/// GitRepository::topLevel does.
std::filesystem::path topLevelOf(const std::filesystem::path& folder);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

// Git reports progress in lines that overwrite each other: "Receiving objects:  42% (42/100)". These are pure functions
// over its error stream.

/// Returns the last progress line in a chunk, trimmed; nullopt when there is none.
std::optional<std::string> lastProgress(std::string_view chunk);

/// Returns the text without progress lines, for a person to read.
std::string withoutProgress(std::string_view text);

} // namespace gitkit

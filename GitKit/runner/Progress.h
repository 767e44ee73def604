// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

/// Git tells how far it has come in lines that each overwrite the one before: "Receiving objects:  42% (42/100)".
/// Pure functions over what it has printed on its error stream.

/// The last of them in a chunk, trimmed; nothing when there is none.
std::optional<std::string> lastProgress(std::string_view chunk);

/// The text without them: what is left is what a person has to read.
std::string withoutProgress(std::string_view text);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace gitkit {

// The messages that git prepares for a commit, with comments of its own in them. Pure.

/// Messages past this many bytes are not read.
inline constexpr std::size_t longestPreparedMessage = std::size_t{256} << 10;

/// Returns the part before the line below which git ignores everything.
std::string beforeScissors(std::string_view prepared);

/// Returns the message as a person wrote it: without the list of conflicts that git adds, and with every other line,
/// also those that begin with "#". Its last line is ended, and no empty lines follow. Returns nullopt for a message
/// with other comments of git's: one that it put together from several or from a tag, or wrote for an editor.
std::optional<std::string> writtenMessage(std::string_view prepared);

/// Returns the character with which git began its comments in a message that writtenMessage() cannot read; nullopt
/// where there are none.
std::optional<char> commentCharacter(std::string_view prepared);

/// Returns a character that git can use for its comments because no line of the message begins with it.
char unusedCommentCharacter(std::string_view message);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace plovik {

/// Returns the name of the grammar for a file, by the file's name or else by the interpreter in its first line; empty
/// when there is none. Grammars have the names of the library's definitions without their ending, or of our own
/// (OwnGrammars.h). Pure; reads no file.
std::string syntaxLanguage(std::string_view path, std::string_view firstLine);

} // namespace plovik

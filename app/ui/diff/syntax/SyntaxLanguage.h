// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <string_view>

namespace plovik {

/// The name of the grammar for a file, by its name or else by the interpreter that its first line names; empty when
/// none is right. Grammars are named for the library's definitions without their ending, or are our own
/// (SyntaxGrammars.h). Pure; reads no file.
std::string syntaxLanguage(std::string_view path, std::string_view firstLine);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string_view>

namespace plovik {

/// One thing to find in a line. Earlier rules of a grammar go first. Regular expressions are written as in the library.
struct GrammarRule {
    enum class Kind {
        pattern,
        words,   ///< separated by "|"
        block,   ///< from `text` to `end`, over several lines; behind the character `escape`, an end does not count
        heredoc, ///< a block where "@{1}" in `end` stands for what the first group of `text` matched
    };
    Kind kind = Kind::pattern;
    std::string_view element; ///< the name of the element in the library's definitions
    std::string_view text;
    std::string_view end = {};
    std::string_view escape = {};
};

/// Rules that are added to one of the library's definitions, or that define a language which the library lacks.
struct OwnGrammar {
    std::string_view name;
    std::string_view base; ///< the library's definition, used after these rules; may be empty
    std::span<const GrammarRule> rules;
    bool stringsSpanLines = false;
};

/// Returns the rules for a language; nullptr if the library's definition is used unchanged.
const OwnGrammar* ownGrammar(std::string_view name);

} // namespace plovik

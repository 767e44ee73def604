// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <span>
#include <string_view>

namespace plovik {

/// One thing to find in a line, before what comes behind it in its grammar. Regular expressions as the library's own.
struct GrammarRule {
    enum class Kind {
        pattern,
        words,   ///< separated by "|"
        block,   ///< from `text` to `end`, over lines; with `escape`, the character that makes an end none
        heredoc, ///< the same, where "@{1}" in `end` is what the first group of `text` matched
    };
    Kind kind = Kind::pattern;
    std::string_view element; ///< as definitions name them
    std::string_view text;
    std::string_view end = {};
    std::string_view escape = {};
};

/// What is added to one of the library's definitions, or stands for a language that it has none for.
struct OwnGrammar {
    std::string_view name;
    std::string_view base; ///< the definition that ours are put in front of; may be empty
    std::span<const GrammarRule> rules;
    bool stringsSpanLines = false;
};

/// nullptr where the library's definition serves as it is.
const OwnGrammar* ownGrammar(std::string_view name);

} // namespace plovik

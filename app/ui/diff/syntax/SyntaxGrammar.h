// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <srchilite/highlightstate.h>

#include <optional>
#include <string>

namespace plovik {

/// The rules for reading one language: a definition of the library, our own rules before it, or only our own.
struct SyntaxGrammar {
    srchilite::HighlightStatePtr start;
    std::size_t ownRules = 0; ///< how many of the first rules of `start` are our own
    /// Whether an open quote continues in the next line. Where strings end with their line, a single apostrophe must
    /// not turn the rest of the file into a string.
    bool stringsSpanLines = false;

    /// Returns the grammar of a name from syntaxLanguage(), made from the library's definitions in `folder`. Throws the
    /// library's exceptions when the definition is missing or broken. Each grammar is read once and kept.
    ///
    /// Only one thread may call this or copy a state at a time, because the library reads definitions and numbers
    /// states with global variables.
    static const SyntaxGrammar& named(const std::string& name, const std::string& folder);
};

/// Returns how an element of a definition is shown; nullopt for one that stays plain.
std::optional<SyntaxStyle> syntaxStyle(std::string_view element);

} // namespace plovik

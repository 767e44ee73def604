// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <srchilite/highlightstate.h>

#include <optional>
#include <string>

namespace plovik {

/// How one language is read: a definition of the library, ours put in front of it, or ours alone.
struct SyntaxGrammar {
    srchilite::HighlightStatePtr start;
    std::size_t ownRules = 0; ///< of the first rules of `start`: those that are not the library's
    /// Whether a quote that is left open goes on in the next line. Where strings end with their line, a lone apostrophe
    /// must not turn the rest of the file into one.
    bool stringsSpanLines = false;

    /// The grammar of this name (see syntaxLanguage()), from the library's definitions in `folder`. Throws what the
    /// library throws when there is no such definition, or a broken one.
    ///
    /// The library reads definitions with scanners that are global, and numbers its states with a global: one thread at
    /// a time, for the states' copies too. Grammars are kept, so each is read once.
    static const SyntaxGrammar& named(const std::string& name, const std::string& folder);
};

/// How an element of a definition is shown; nothing for what stays plain.
std::optional<SyntaxStyle> syntaxStyle(std::string_view element);

} // namespace plovik

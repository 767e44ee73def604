// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"
#include "app/ui/diff/syntax/SyntaxGrammar.h"

#include <srchilite/highlighttoken.h>

#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace plovik {

/// Reads a file line by line by a grammar. A block that is open at the end of a line continues in the next one.
///
/// The library's own walk searches for every rule again after every word. This one remembers where in the line each
/// rule matches next, which takes a sixth of the time. Only one thread may walk at a time (see SyntaxGrammar).
class SyntaxWalk {
public:
    /// `isOver` is called now and then; once it returns true, lines stay plain.
    SyntaxWalk(const SyntaxGrammar& grammar, std::function<bool()> isOver);

    /// Returns the coloured pieces of the next line, in bytes. `line` must not end with a line feed or carriage return.
    /// Throws when a regular expression takes too long for the library.
    const std::vector<SyntaxRun>& read(const std::string& line);

private:
    using State = srchilite::HighlightStatePtr;
    /// Where a rule matches next in a line.
    struct Match {
        int line = -1; ///< the line that was searched
        bool isFound = false;
        std::size_t begin = 0;
        std::size_t size = 0;
        srchilite::HighlightToken token;
    };
    struct Open {
        State state;
        bool endsWithLine = false;
    };

    const State& current() const { return open_.empty() ? grammar_.start : open_.back().state; }
    const Match* best(const std::string& line, std::size_t at);
    const Match& next(const srchilite::HighlightRulePtr& rule, Match& known, const std::string& line, std::size_t at);
    bool follow(const Match& match, const std::string& line);
    void endLine(const std::string& line);
    void add(const std::string& element, std::size_t begin, std::size_t size);

    const SyntaxGrammar& grammar_;
    std::function<bool()> isOver_;
    std::vector<Open> open_;
    std::unordered_map<unsigned, std::vector<Match>> matches_; ///< by state and rule
    std::vector<SyntaxRun> runs_;
    int line_ = 0;
};

} // namespace plovik

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

/// Reads a file line by line by a grammar; what is open at a line's end goes on in the next.
///
/// The library's own walk looks for every rule again behind every word. This one remembers where in the line each rule
/// matches next, which takes a sixth of the time. One thread at a time for all walks (see SyntaxGrammar).
class SyntaxWalk {
public:
    /// `isOver` is asked now and then; once it holds, lines stay plain.
    SyntaxWalk(const SyntaxGrammar& grammar, std::function<bool()> isOver);

    /// The coloured pieces of the next line, in its bytes. `line` ends with no line feed and no carriage return. Throws
    /// when a regular expression takes too long for the library.
    const std::vector<SyntaxRun>& read(const std::string& line);

private:
    using State = srchilite::HighlightStatePtr;
    /// Where a rule matches next.
    struct Match {
        int line = -1; ///< that this was found for
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

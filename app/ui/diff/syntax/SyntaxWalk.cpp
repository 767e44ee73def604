// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/SyntaxWalk.h"

#include <srchilite/highlightrule.h>
#include <srchilite/matchingparameters.h>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr std::size_t stepsPerQuestion = 64;
/// A limit for rules that enter and leave states without reading anything, which could go on forever.
constexpr std::size_t stepsPerByte = 4;

bool isBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

} // namespace

SyntaxWalk::SyntaxWalk(const SyntaxGrammar& grammar, std::function<bool()> isOver)
    : grammar_(grammar), isOver_(std::move(isOver))
{}

const std::vector<SyntaxRun>& SyntaxWalk::read(const std::string& line)
{
    runs_.clear();
    ++line_;
    std::size_t at = 0;
    for (std::size_t step = 1; step < line.size() * stepsPerByte + stepsPerQuestion; ++step) {
        if (step % stepsPerQuestion == 0 && isOver_())
            break;
        const Match* const match = best(line, at);
        if (!match) {
            add(current()->getDefaultElement(), at, line.size() - at);
            break;
        }
        add(current()->getDefaultElement(), at, match->begin - at);
        std::size_t begin = match->begin;
        for (const auto& [element, text] : match->token.matched) {
            add(element, begin, text.size());
            begin += text.size();
        }
        const std::size_t end = match->begin + match->size;
        const bool isStuck = end == at;
        if (!follow(*match, line) && isStuck)
            break;
        at = end;
    }
    endLine(line);
    return runs_;
}

/// Returns the match that the library would choose: that of the first rule with only blanks before it, else the nearest,
/// else the longest. Our own rules go before the library's, even if those have a longer match.
const SyntaxWalk::Match* SyntaxWalk::best(const std::string& line, std::size_t at)
{
    const srchilite::RuleList& rules = current()->getRuleList();
    std::vector<Match>& known = matches_[current()->getId()];
    known.resize(rules.size());
    const auto firstWord = std::find_if_not(line.begin() + static_cast<std::ptrdiff_t>(at), line.end(), isBlank);
    const auto blanksEnd = static_cast<std::size_t>(firstWord - line.begin());
    const std::size_t ours = current() == grammar_.start ? grammar_.ownRules : 0;
    const Match* chosen = nullptr;
    bool isOurs = false;
    for (std::size_t i = 0; i < rules.size(); ++i) {
        const Match& match = next(rules[i], known[i], line, at);
        if (!match.isFound)
            continue;
        if (!chosen || match.begin < chosen->begin ||
            (!isOurs && match.begin == chosen->begin && match.size > chosen->size))
        {
            chosen = &match;
            isOurs = i < ours;
        }
        if (chosen->begin <= blanksEnd)
            break;
    }
    return chosen;
}

const SyntaxWalk::Match& SyntaxWalk::next(const srchilite::HighlightRulePtr& rule, Match& known,
                                          const std::string& line, std::size_t at)
{
    if (known.line == line_ && (!known.isFound || known.begin >= at))
        return known;
    known.line = line_;
    known.token = srchilite::HighlightToken(rule.get());
    srchilite::MatchingParameters where;
    where.beginningOfLine = at == 0;
    known.isFound = rule->tryToMatch(line.begin() + static_cast<std::ptrdiff_t>(at), line.end(), known.token, where);
    known.token.rule = rule.get();
    known.begin = at + known.token.prefix.size();
    known.size = known.token.matchedSize;
    return known;
}

/// Goes to the state that a match leads to. Returns false when there is none.
bool SyntaxWalk::follow(const Match& match, const std::string& line)
{
    const srchilite::HighlightRule& rule = *match.token.rule;
    const std::string_view text = std::string_view(line).substr(match.begin, match.size);
    const bool endsWithLine = !grammar_.stringsSpanLines && (text == "\"" || text == "'");
    if (State inside = rule.getNextState()) {
        if (inside->getNeedsReferenceReplacement()) {
            if (inside->getOriginalState())
                inside = inside->getOriginalState();
            const State copy(new srchilite::HighlightState(*inside));
            copy->setOriginalState(inside);
            copy->replaceReferences(match.token.matchedSubExps);
            inside = copy;
        }
        open_.push_back({inside, endsWithLine});
        return true;
    }
    if (rule.getExitLevel() != 0) {
        const auto level = static_cast<std::size_t>(std::max(0, rule.getExitLevel()));
        const std::size_t left = rule.getExitLevel() < 0 || level > open_.size() ? 0 : open_.size() - level;
        const bool isOut = open_.empty();
        open_.resize(left);
        return !isOut;
    }
    if (rule.isNested() && !open_.empty()) {
        open_.push_back({current(), endsWithLine});
        return true;
    }
    return false;
}

void SyntaxWalk::endLine(const std::string& line)
{
    if (line.ends_with('\\'))
        return;
    while (!open_.empty() && open_.back().endsWithLine)
        open_.pop_back();
}

void SyntaxWalk::add(const std::string& element, std::size_t begin, std::size_t size)
{
    if (size == 0)
        return;
    const std::optional<SyntaxStyle> style = syntaxStyle(element);
    if (!style)
        return;
    if (!runs_.empty() && runs_.back().style == *style &&
        static_cast<std::size_t>(runs_.back().first) + runs_.back().length == begin)
    {
        runs_.back().length = static_cast<std::uint16_t>(runs_.back().length + size);
        return;
    }
    runs_.push_back({static_cast<std::uint16_t>(begin), static_cast<std::uint16_t>(size), *style});
}

} // namespace plovik

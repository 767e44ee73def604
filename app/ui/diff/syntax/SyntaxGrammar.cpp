// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/syntax/SyntaxGrammar.h"

#include "app/ui/diff/syntax/OwnGrammars.h"

#include <srchilite/highlightrule.h>
#include <srchilite/langdefmanager.h>
#include <srchilite/regexrulefactory.h>

#include <algorithm>
#include <map>
#include <memory>
#include <utility>

namespace plovik {

namespace {

using srchilite::HighlightRulePtr;
using srchilite::HighlightState;
using srchilite::HighlightStatePtr;

srchilite::RegexRuleFactory& factory()
{
    static srchilite::RegexRuleFactory rules;
    return rules;
}

/// Makes the rule of a heredoc. It ends with a word that its start names, so the rule is made anew for each one.
HighlightRulePtr heredoc(const GrammarRule& rule)
{
    const std::string element(rule.element);
    HighlightRulePtr close(factory().createSimpleRule(element, std::string(rule.end)));
    close->setExitLevel(1);
    close->setNeedsReferenceReplacement();
    const HighlightStatePtr inside(new HighlightState(element));
    inside->addRule(close);
    inside->setNeedsReferenceReplacement();
    HighlightRulePtr open(factory().createSimpleRule(element, std::string(rule.text)));
    open->setNextState(inside);
    open->setHasSubexpressions();
    return open;
}

HighlightRulePtr block(const GrammarRule& rule)
{
    const std::string element(rule.element);
    const HighlightRulePtr open(factory().createMultiLineRule(element, std::string(rule.text), std::string(rule.end),
                                                              std::string(rule.escape), false));
    open->getNextState()->setDefaultElement(element);
    return open;
}

HighlightRulePtr made(const GrammarRule& rule)
{
    const std::string element(rule.element);
    const std::string text(rule.text);
    switch (rule.kind) {
    case GrammarRule::Kind::words:
        return HighlightRulePtr(factory().createSimpleRule(element, "\\<(?:" + text + ")\\>"));
    case GrammarRule::Kind::block:
        return block(rule);
    case GrammarRule::Kind::heredoc:
        return heredoc(rule);
    case GrammarRule::Kind::pattern:
        break;
    }
    return HighlightRulePtr(factory().createSimpleRule(element, text));
}

SyntaxGrammar read(const std::string& name, const std::string& folder)
{
    const OwnGrammar* const own = ownGrammar(name);
    const std::string base = own ? std::string(own->base) : name;
    SyntaxGrammar grammar;
    grammar.start = HighlightStatePtr(new HighlightState);
    grammar.stringsSpanLines = own && own->stringsSpanLines;
    grammar.ownRules = own ? own->rules.size() : 0;
    for (const GrammarRule& rule : own ? own->rules : std::span<const GrammarRule>())
        grammar.start->addRule(made(rule));
    if (!base.empty()) {
        srchilite::LangDefManager definitions(&factory());
        const HighlightStatePtr theirs = definitions.getHighlightState(folder, base + ".lang");
        grammar.start->setDefaultElement(theirs->getDefaultElement());
        for (const HighlightRulePtr& rule : theirs->getRuleList())
            grammar.start->addRule(rule);
    }
    return grammar;
}

struct Shown {
    std::string_view element;
    SyntaxStyle style;
};

/// Sorted by name. Symbols and brackets stay plain, because colours do not help where everything has one.
constexpr Shown shownElements[] = {
    {"argument", SyntaxStyle::name},
    {"atom", SyntaxStyle::name},
    {"attribute", SyntaxStyle::name},
    {"bibtex", SyntaxStyle::keyword},
    {"bold", SyntaxStyle::type},
    {"classname", SyntaxStyle::type},
    {"code", SyntaxStyle::string},
    {"comment", SyntaxStyle::comment},
    {"costant", SyntaxStyle::number},
    {"date", SyntaxStyle::number},
    {"difflines", SyntaxStyle::preprocessor},
    {"file", SyntaxStyle::name},
    {"fixed", SyntaxStyle::string},
    {"function", SyntaxStyle::function},
    {"ip", SyntaxStyle::number},
    {"italics", SyntaxStyle::type},
    {"key", SyntaxStyle::name},
    {"keyword", SyntaxStyle::keyword},
    {"label", SyntaxStyle::keyword},
    {"math", SyntaxStyle::string},
    {"meta", SyntaxStyle::preprocessor},
    {"name", SyntaxStyle::name},
    {"newfile", SyntaxStyle::string},
    {"number", SyntaxStyle::number},
    {"oldfile", SyntaxStyle::comment},
    {"optionalargument", SyntaxStyle::name},
    {"path", SyntaxStyle::string},
    {"predef_func", SyntaxStyle::function},
    {"predef_var", SyntaxStyle::name},
    {"preproc", SyntaxStyle::preprocessor},
    {"property", SyntaxStyle::name},
    {"regexp", SyntaxStyle::string},
    {"section", SyntaxStyle::keyword},
    {"selector", SyntaxStyle::type},
    {"specialchar", SyntaxStyle::string},
    {"string", SyntaxStyle::string},
    {"time", SyntaxStyle::number},
    {"title", SyntaxStyle::keyword},
    {"todo", SyntaxStyle::comment},
    {"type", SyntaxStyle::type},
    {"url", SyntaxStyle::comment},
    {"usertype", SyntaxStyle::type},
    {"value", SyntaxStyle::string},
    {"variable", SyntaxStyle::name},
    {"warning", SyntaxStyle::keyword},
};
static_assert(std::ranges::is_sorted(shownElements, {}, &Shown::element));

} // namespace

const SyntaxGrammar& SyntaxGrammar::named(const std::string& name, const std::string& folder)
{
    static std::map<std::pair<std::string, std::string>, SyntaxGrammar> known;
    const auto key = std::pair(folder, name);
    auto found = known.find(key);
    if (found == known.end())
        found = known.emplace(key, read(name, folder)).first;
    return found->second;
}

std::optional<SyntaxStyle> syntaxStyle(std::string_view element)
{
    const auto* const found = std::ranges::lower_bound(shownElements, element, {}, &Shown::element);
    if (found == std::end(shownElements) || found->element != element)
        return {};
    return found->style;
}

} // namespace plovik

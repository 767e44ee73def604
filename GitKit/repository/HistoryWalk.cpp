// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/HistoryWalk.h"

#include "GitKit/SearchTerms.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <string_view>

namespace gitkit {

namespace {

bool resolvesHead(const GitRunner& runner)
{
    return runner.output({"rev-parse", "--verify", "--quiet", "HEAD"}).status == 0;
}

/// Returns a basic regular expression that matches a text in both cases of its letters.
std::string inBothCases(std::string_view text)
{
    std::string pattern;
    for (const char c : text) {
        const bool isUpper = c >= 'A' && c <= 'Z';
        const bool isLower = c >= 'a' && c <= 'z';
        if (isUpper || isLower)
            pattern += {'[', c, static_cast<char>(isUpper ? c - 'A' + 'a' : c - 'a' + 'A'), ']'};
        else if (std::string_view(".*[]^$\\").find(c) != std::string_view::npos)
            pattern += {'\\', c};
        else
            pattern += c;
    }
    return pattern;
}

/// Returns the options for what a commit says of itself. The case of its letters does not matter, but git's option for
/// that would make it ignore the case of what changed, too.
std::vector<std::string> wordArguments(const SearchTerms& terms)
{
    if (terms.messages.empty() && terms.authors.empty())
        return {};
    const bool isPattern = terms.looksAtChanges();
    std::vector<std::string> arguments{"--basic-regexp"};
    if (!isPattern)
        arguments = {"--fixed-strings", "-i"};
    const auto add = [&](const char* option, const std::vector<std::string>& texts) {
        for (const std::string& text : texts)
            arguments.push_back(option + (isPattern ? inBothCases(text) : text));
    };
    add("--grep=", terms.messages);
    add("--author=", terms.authors);
    if (terms.messages.size() > 1)
        arguments.emplace_back("--all-match");
    return arguments;
}

} // namespace

std::vector<std::string> walkStarts(const HistoryScope& scope, HeadStart head)
{
    if (scope.ref)
        return {revisionArgument("log", *scope.ref)};
    std::vector<std::string> all{"--branches", "--remotes", "--tags"};
    if (head == HeadStart::always)
        all.emplace_back("HEAD");
    // --all adds HEAD where it has a commit, and here no ref besides.
    if (head == HeadStart::ifBorn)
        all.insert(all.end(), {"--single-worktree", "--exclude=refs/*", "--all"});
    return all;
}

std::vector<std::string> walkArguments(const std::vector<std::string>& starts,
                                       const std::optional<HistoryFilter>& filter)
{
    const SearchTerms terms = filter ? searchTerms(*filter) : SearchTerms();
    std::vector<std::string> arguments = wordArguments(terms);
    if (terms.looksAtChanges()) {
        // What a merge itself changes is found against its first parent.
        arguments.insert(arguments.end(), {"-s", "--no-textconv", "--no-ext-diff", "--diff-merges=first-parent"});
        arguments.push_back(terms.lines.empty() ? "-S" + terms.content : "-G" + terms.lines);
    }
    arguments.insert(arguments.end(), starts.begin(), starts.end());
    arguments.emplace_back("--");
    for (const std::string& path : terms.paths)
        arguments.push_back(":(icase)*" + path + "*");
    return arguments;
}

std::string walkHistory(const GitRunner& runner, const HistoryScope& scope,
                        const std::function<std::vector<std::string>(const std::vector<std::string>& starts)>& command)
{
    if (scope.ref)
        return runner.bytes(command(walkStarts(scope)));
    try {
        return runner.bytes(command(walkStarts(scope)));
    } catch (const GitError&) {
        // HEAD names nothing on a branch without commits.
        if (resolvesHead(runner))
            throw;
    }
    return runner.bytes(command(walkStarts(scope, HeadStart::never)));
}

} // namespace gitkit

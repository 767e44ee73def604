// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/parsers/StashParser.h"
#include "GitKit/parsers/StatusParser.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"

#include <algorithm>
#include <utility>

namespace gitkit {

namespace {

/// One path that git printed on a line of its own.
std::string withoutLineEnd(std::string text)
{
    if (text.ends_with('\n'))
        text.pop_back();
    return text;
}

/// What status calls the branch when HEAD cannot be followed to a commit although there should be one.
constexpr std::string_view unreadableHead = "(unknown)";

/// A ref as an argument. Every ref has a full name that is no option; one that looks like an option is none.
std::string refArgument(const char* command, const std::string& name)
{
    if (name.starts_with('-'))
        throw GitError(command, 128, "“" + repairedUtf8(name) + "” is not the full name of a branch or tag.");
    return name;
}

std::vector<std::string> filterArguments(const HistoryFilter& filter)
{
    switch (filter.field) {
    case HistoryFilter::Field::message:
        return {"--fixed-strings", "-i", "--grep=" + filter.text};
    case HistoryFilter::Field::author:
        return {"--fixed-strings", "-i", "--author=" + filter.text};
    case HistoryFilter::Field::path:
        break;
    }
    return {};
}

std::vector<std::string> logArguments(const std::vector<std::string>& scope, int limit,
                                      const std::optional<HistoryFilter>& filter)
{
    const bool filtered = filter && !filter->text.empty();
    std::vector<std::string> arguments{"log", "--date-order"};
    const auto append = [&arguments](const auto& more) { arguments.insert(arguments.end(), more.begin(), more.end()); };
    append(LogParser::decorationArguments);
    append(std::vector<std::string>{"-n", std::to_string(limit), LogParser::listFormat});
    if (filtered)
        append(filterArguments(*filter));
    append(scope);
    arguments.emplace_back("--");
    if (filtered && filter->field == HistoryFilter::Field::path)
        arguments.push_back(":(icase)*" + filter->text + "*");
    return arguments;
}

/// The submodule that check-ignore refuses to look into, when that is what its message says.
std::optional<std::string> refusedSubmodule(const std::string& message)
{
    constexpr std::string_view phrase = "' is in submodule '";
    const std::size_t found = message.find(phrase);
    if (found == std::string::npos || !message.ends_with('\''))
        return std::nullopt;
    const std::size_t start = found + phrase.size();
    return message.substr(start, message.size() - 1 - start);
}

} // namespace

GitRepository::GitRepository(std::filesystem::path root, RunContext context)
    : root_(std::move(root)), runner_(root_, std::move(context))
{}

std::filesystem::path GitRepository::topLevel(const std::filesystem::path& folder)
{
    GitExecutable::requireSupported();
    std::string found = withoutLineEnd(GitRunner(folder).bytes({"rev-parse", "--show-toplevel"}));
    if (found.empty())
        throw GitError("rev-parse", 0, "Not a git working tree: " + repairedUtf8(folder.string()));
    return std::filesystem::path(std::move(found)).lexically_normal();
}

std::string GitRepository::git(const std::vector<std::string>& arguments) const { return runner_.run(arguments); }

RepoStatus GitRepository::status() const
{
    const GitOutput output = runner_.accepted({StatusParser::arguments.begin(), StatusParser::arguments.end()});
    RepoStatus status = StatusParser::parse(output.stdoutBytes);
    if (!status.oid && status.branch == unreadableHead)
        requireReadableHead();
    status.warnings = trimmed(output.errorText());
    return status;
}

std::vector<GitRef> GitRepository::refs() const
{
    return RefParser::parse(
        runner_.bytes({"for-each-ref", RefParser::format, "refs/heads", "refs/remotes", "refs/tags"}));
}

std::vector<std::string> GitRepository::remotes() const { return RemoteParser::parse(runner_.bytes({"remote"})); }

std::vector<Stash> GitRepository::stashes() const
{
    return StashParser::parse(runner_.bytes({"stash", "list", StashParser::format}));
}

std::string GitRepository::walkHistory(const HistoryScope& scope,
                                       const std::function<Arguments(const Arguments& scope)>& command) const
{
    if (scope.ref)
        return runner_.bytes(command({refArgument("log", *scope.ref)}));
    Arguments all{"--branches", "--remotes", "--tags", "HEAD"};
    try {
        return runner_.bytes(command(all));
    } catch (const GitError&) {
        // On a branch that has no commit yet HEAD names nothing; the other branches still have their history.
        if (resolvesHead())
            throw;
    }
    all.pop_back();
    return runner_.bytes(command(all));
}

std::vector<Commit> GitRepository::log(const HistoryScope& scope, int limit,
                                       const std::optional<HistoryFilter>& filter) const
{
    return LogParser::parse(
        walkHistory(scope, [&](const Arguments& refs) { return logArguments(refs, limit, filter); }));
}

std::optional<int> GitRepository::position(const HistoryScope& scope, const std::string& hash) const
{
    const std::string lines = walkHistory(scope, [](const Arguments& refs) {
        Arguments arguments{"rev-list", "--date-order"};
        arguments.insert(arguments.end(), refs.begin(), refs.end());
        arguments.emplace_back("--");
        return arguments;
    });
    int before = 0;
    for (std::string_view rest = lines; !rest.empty(); ++before) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        if (rest.substr(0, end) == hash)
            return before;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return std::nullopt;
}

GitDirectories GitRepository::gitDirectories() const
{
    const auto ask = [this](const char* which) {
        return std::filesystem::path(withoutLineEnd(runner_.bytes({"rev-parse", "--path-format=absolute", which})));
    };
    return {ask("--git-dir"), ask("--git-common-dir")};
}

std::vector<std::string> GitRepository::ignoredFolders() const
{
    std::vector<std::string> folders;
    for (std::string& path :
         splitNul(runner_.bytes({"ls-files", "--others", "--ignored", "--exclude-standard", "--directory", "-z"})))
    {
        if (path.ends_with('/')) {
            path.pop_back();
            folders.push_back(std::move(path));
        }
    }
    // Git also lists folders that merely hold nothing but ignored files; a file that is none may appear in those.
    return ignoredAmong(folders);
}

std::vector<std::string> GitRepository::ignoredAmong(const std::vector<std::string>& folders) const
{
    std::vector<std::string> asked = folders;
    std::erase_if(asked, [](const std::string& folder) { return folder.empty(); });
    while (!asked.empty()) {
        std::string input;
        for (const std::string& folder : asked)
            input.append(folder).push_back('\0');
        try {
            return splitNul(runner_.bytes({"check-ignore", "-z", "--stdin"},
                                          {.input = std::move(input), .accepting = {0, 1}, .environment = {}}));
        } catch (const GitError& error) {
            // A submodule ignores by its own rules, and git gives up at the first folder inside one.
            const auto submodule = refusedSubmodule(error.message());
            if (!submodule)
                throw;
            const auto erased =
                std::erase_if(asked, [&](const std::string& folder) { return folder.starts_with(*submodule + "/"); });
            if (erased == 0)
                throw;
        }
    }
    return {};
}

std::string GitRepository::commitMessage(const std::string& hash) const
{
    // An annotated tag's object stands for its commit.
    return std::string(
        trimmed(runner_.run({"show", "-s", "--format=%B", refArgument("show", hash) + "^{commit}", "--"})));
}

bool GitRepository::resolvesHead() const
{
    return runner_.output({"rev-parse", "--verify", "--quiet", "HEAD"}).status == 0;
}

void GitRepository::requireReadableHead() const
{
    const std::string name(trimmed(runner_.output({"symbolic-ref", "--quiet", "HEAD"}).text()));
    if (name != "refs/heads/" + std::string(unreadableHead))
        throw GitError("status", 128, "The current branch “" + name + "” cannot be read: its ref is damaged.");
}

} // namespace gitkit

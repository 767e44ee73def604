#include "GitKit/GitRepository.h"

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

std::vector<std::string> splitNul(std::string_view text)
{
    std::vector<std::string> pieces;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, text.find('\0'));
        pieces.emplace_back(piece);
        text.remove_prefix(std::min(piece.size() + 1, text.size()));
    }
    return pieces;
}

void append(std::vector<std::string>& arguments, std::initializer_list<const char*> more)
{
    arguments.insert(arguments.end(), more.begin(), more.end());
}

} // namespace

GitRepository::GitRepository(std::filesystem::path root) : root_(std::move(root)), runner_(root_) {}

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
    return StatusParser::parse(runner_.bytes({StatusParser::arguments.begin(), StatusParser::arguments.end()}));
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

std::vector<Commit> GitRepository::log(const HistoryScope& scope, int limit,
                                       const std::optional<HistoryFilter>& filter) const
{
    std::vector<std::string> arguments{"log", "--date-order",        "--decorate=full",
                                       "-n",  std::to_string(limit), LogParser::listFormat};
    const bool filtered = filter && !filter->text.empty();
    if (filtered && filter->field == HistoryFilter::Field::message)
        append(arguments, {"--fixed-strings", "-i", ("--grep=" + filter->text).c_str()});
    if (filtered && filter->field == HistoryFilter::Field::author)
        append(arguments, {"--fixed-strings", "-i", ("--author=" + filter->text).c_str()});
    if (scope.ref)
        arguments.push_back(*scope.ref);
    else
        append(arguments, {"--branches", "--remotes", "--tags", "HEAD"});
    append(arguments, {"--"});
    if (filtered && filter->field == HistoryFilter::Field::path)
        arguments.push_back(":(icase)*" + filter->text + "*");
    return LogParser::parse(runner_.bytes(arguments));
}

GitRepository::GitDirectories GitRepository::gitDirectories() const
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
    if (folders.empty())
        return {};
    std::string input;
    for (const std::string& folder : folders)
        input.append(folder).push_back('\0');
    return splitNul(runner_.bytes({"check-ignore", "-z", "--stdin"},
                                  {.input = std::move(input), .accepting = {0, 1}, .environment = {}}));
}

std::string GitRepository::commitMessage(const std::string& hash) const
{
    return withoutLineEnd(runner_.run({"show", "-s", "--format=%B", hash + "^{commit}", "--"}));
}

} // namespace gitkit

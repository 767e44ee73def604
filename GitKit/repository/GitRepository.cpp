// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/parsers/StashParser.h"
#include "GitKit/parsers/StatusParser.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/HistoryWalk.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/GitMessages.h"

#include <utility>

namespace gitkit {

namespace {

/// Keeps git from looking for a repository above `root` once this one is gone: it would find the one around it, and
/// change that. A list of ceilings cannot name a folder with a colon.
RunContext pinnedTo(const std::filesystem::path& root, RunContext context)
{
    const std::string above = root.parent_path().string();
    if (isBare(root)) // no working tree to be required
        context.environment.emplace_back("GIT_DIR", root.string());
    else if (above.find(':') == std::string::npos)
        context.environment.emplace_back("GIT_CEILING_DIRECTORIES", above);
    else
        context.requiredTopLevel = root;
    return context;
}

/// The branch name that status prints when HEAD names a ref that cannot be read.
constexpr std::string_view unreadableHead = "(unknown)";

/// Reads "ref: refs/heads/main", as git wrote it.
std::string headInFile(const GitRunner& runner)
{
    const std::filesystem::path directory =
        withoutLineEnd(runner.bytes({"rev-parse", "--path-format=absolute", "--git-dir"}));
    const std::string head = regularFileBytes(directory / "HEAD", 4096).value_or(std::string());
    constexpr std::string_view start = "ref: ";
    return std::string(trimmed(head.starts_with(start) ? std::string_view(head).substr(start.size()) : head));
}

/// Throws unless a branch really has this name.
void requireReadableHead(const GitRunner& runner)
{
    std::string name(trimmed(runner.output({"symbolic-ref", "--quiet", "HEAD"}).text()));
    // Git names no ref that it cannot read.
    if (name.empty())
        name = headInFile(runner);
    if (name != "refs/heads/" + std::string(unreadableHead))
        throw GitError("status", 128, "The current branch " + inQuotes(name) + " cannot be read: its ref is damaged.",
                       ErrorKind::missingObject);
}

/// What can be said of a repository without a working tree.
RepoStatus bareStatus(const GitRunner& runner)
{
    RepoStatus status;
    status.isBare = true;
    constexpr std::string_view branches = "refs/heads/";
    const std::string head(withoutLineEnd(runner.output({"symbolic-ref", "--quiet", "HEAD"}).stdoutBytes));
    if (head.starts_with(branches))
        status.branch = head.substr(branches.size());
    const GitOutput commit = runner.output({"rev-parse", "--verify", "--quiet", "HEAD^{commit}"});
    if (commit.status == 0)
        status.oid = withoutLineEnd(commit.stdoutBytes);
    else if (head.empty())
        throw failureOf("rev-parse", runner.output({"rev-parse", "--verify", "HEAD^{commit}"}));
    return status;
}

/// Returns the bare repository that holds `folder`; empty where there is none, as in a folder of a working tree's data.
std::filesystem::path bareRoot(const std::filesystem::path& folder)
{
    const GitOutput found = GitRunner(folder).output({"rev-parse", "--is-bare-repository", "--absolute-git-dir"});
    constexpr std::string_view yes = "true\n";
    if (found.status != 0 || !found.stdoutBytes.starts_with(yes))
        return {};
    const std::string_view printed = std::string_view(found.stdoutBytes).substr(yes.size());
    const std::filesystem::path root = std::filesystem::path(withoutLineEnd(printed)).lexically_normal();
    return isBare(root) ? root : std::filesystem::path();
}

/// Returns what git calls the top level of the working tree around `folder`, or the folder of a bare repository.
std::filesystem::path foundRoot(const std::filesystem::path& folder)
{
    try {
        return std::filesystem::path(withoutLineEnd(GitRunner(folder).bytes({"rev-parse", "--show-toplevel"})))
            .lexically_normal();
    } catch (const GitError& error) {
        std::filesystem::path bare =
            error.kind() == ErrorKind::bareRepository ? bareRoot(folder) : std::filesystem::path();
        if (bare.empty())
            throw;
        return bare;
    }
}

std::vector<std::string> logArguments(const std::vector<std::string>& scope, int limit,
                                      const std::optional<HistoryFilter>& filter)
{
    std::vector<std::string> arguments{"log", "--date-order"};
    const auto append = [&arguments](const auto& more) { arguments.insert(arguments.end(), more.begin(), more.end()); };
    append(LogParser::decorationArguments);
    append(std::vector<std::string>{"-z", "-n", std::to_string(limit), LogParser::listFormat});
    append(walkArguments(scope, filter));
    return arguments;
}

} // namespace

GitRepository::GitRepository(std::filesystem::path root, RunContext context)
    : root_(std::move(root)), runner_(root_, pinnedTo(root_, std::move(context)))
{}

GitRepository GitRepository::unheard() const
{
    RunContext context = runner_.context();
    context.listener.reset();
    context.stop = {};
    return in(std::move(context));
}

std::filesystem::path GitRepository::topLevel(const std::filesystem::path& folder)
{
    GitExecutable::requireSupported();
    std::filesystem::path root = foundRoot(folder);
    if (root.empty())
        throw GitError("rev-parse", 0, "Not a git working tree: " + repairedUtf8(folder.string()),
                       ErrorKind::notARepository);
    if (isBare(root))
        return root;
    // With core.worktree, the files may be where git does not find the repository again.
    std::error_code ignored;
    const std::filesystem::path inside = std::filesystem::weakly_canonical(folder, ignored).lexically_relative(root);
    if (!std::filesystem::exists(root / ".git", ignored) || inside.empty() || *inside.begin() == "..")
        throw GitError("rev-parse", 128,
                       "The files of this repository are in " + inQuotes(root.string()) +
                           ", as its core.worktree says, where git does not find it. It cannot be opened.");
    return root;
}

std::string GitRepository::git(const std::vector<std::string>& arguments) const { return runner_.run(arguments); }

RepoStatus GitRepository::status() const
{
    if (isBare(root_))
        return bareStatus(runner_);
    const GitOutput output = runner_.accepted({StatusParser::arguments.begin(), StatusParser::arguments.end()});
    RepoStatus status = StatusParser::parse(output.stdoutBytes);
    if (!status.oid && status.branch == unreadableHead)
        requireReadableHead(runner_);
    status.warnings = trimmed(output.errorText());
    return status;
}

std::vector<GitRef> GitRepository::refs() const
{
    const GitOutput output =
        runner_.accepted({"for-each-ref", RefParser::format, "refs/heads", "refs/remotes", "refs/tags"});
    std::vector<GitRef> refs = RefParser::parse(output.stdoutBytes);
    for (const std::string& name : brokenRefs(output)) {
        if (std::optional<GitRef> ref = RefParser::unreadable(name))
            refs.push_back(std::move(*ref));
    }
    sortForDisplay(refs);
    return refs;
}

std::vector<std::string> GitRepository::remotes() const { return RemoteParser::parse(runner_.bytes({"remote"})); }

std::vector<Stash> GitRepository::stashes() const
{
    if (isBare(root_)) // git lists none there
        return {};
    return StashParser::parse(runner_.bytes({"stash", "list", "-z", StashParser::format}));
}

std::vector<Commit> GitRepository::log(const HistoryScope& scope, int limit,
                                       const std::optional<HistoryFilter>& filter) const
{
    return LogParser::parse(
        walkHistory(runner_, scope, [&](const auto& starts) { return logArguments(starts, limit, filter); }));
}

std::string GitRepository::commitMessage(const std::string& hash) const
{
    // `hash` may be that of an annotated tag.
    return std::string(trimmed(runner_.run({"show", "-s", "--format=%B", commitArgument("show", hash), "--"})));
}

} // namespace gitkit

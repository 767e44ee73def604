// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Hooks.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>
#include <unistd.h>
#include <utility>

namespace gitkit {

namespace {

/// Returns whether the configuration names a command for a hook, which git runs beside the file of that name.
bool isConfiguredHook(const GitRepository& repo, const std::string& name)
{
    if (!can(Ability::readsHooksFromConfiguration))
        return false;
    const std::vector<std::string> events =
        splitNul(repo.runner().output({"config", "-z", "--get-regexp", R"(^hook\..*\.event$)"}).stdoutBytes);
    return std::ranges::any_of(events, [&name](const std::string& event) { return event.ends_with('\n' + name); });
}

/// Runs a hook where there is one.
GitOutput runHook(const GitRepository& repo, const std::string& name, const std::vector<std::string>& arguments,
                  const std::optional<std::string>& input = {})
{
    if (can(Ability::readsHooksFromConfiguration)) {
        std::vector<std::string> command{"hook", "run", "--ignore-missing"};
        if (input)
            command.emplace_back("--to-stdin=/dev/stdin");
        command.insert(command.end(), {name, "--"});
        command.insert(command.end(), arguments.begin(), arguments.end());
        return repo.runner().output(command, {.input = input, .environment = {{"GIT_EDITOR", ":"}}});
    }
    // Every git can run a file this way and give it an input.
    const std::string script = "!f() { hook=$(git rev-parse --git-path hooks/" + name +
                               ") && test -x \"$hook\" || exit 0; exec \"$hook\" \"$@\"; }; f";
    std::vector<std::string> command{"plovik-hook"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    return repo.runner().output(
        command, {.input = input, .environment = {{"GIT_EDITOR", ":"}}, .settings = {"alias.plovik-hook=" + script}});
}

/// Throws where a hook does not agree.
void ask(const GitRepository& repo, const std::string& name, const std::vector<std::string>& arguments)
{
    if (!hasHook(repo, name))
        return;
    const GitOutput answer = runHook(repo, name, arguments);
    if (answer.status == 0)
        return;
    const std::string said(trimmed(answer.errorText() + answer.text()));
    throw GitError(name == "pre-rebase" ? "rebase" : "commit", answer.status,
                   said.empty() ? "The " + name + " hook has refused this." : said, ErrorKind::rejectedByHook,
                   said.empty() ? Speaker::plovik : Speaker::hook);
}

} // namespace

bool hasHook(const GitRepository& repo, const std::string& name)
{
    const std::string path(withoutLineEnd(repo.runner().bytes({"rev-parse", "--git-path", "hooks/" + name})));
    return ::access((repo.root() / path).c_str(), X_OK) == 0 || isConfiguredHook(repo, name);
}

void askPreRebase(const GitRepository& repo, const std::string& upstream, const std::string& branch)
{
    std::vector<std::string> arguments{upstream};
    if (!branch.empty())
        arguments.push_back(branch);
    ask(repo, "pre-rebase", arguments);
}

void askBeforeStaged(const GitRepository& repo, const std::string& base)
{
    askPreRebase(repo, base.empty() ? "--root" : base);
    ask(repo, "pre-commit", {});
}

std::string askCommitMessage(const GitRepository& repo, const std::string& message)
{
    if (!hasHook(repo, "commit-msg"))
        return message;
    const std::filesystem::path file = gitDirectories(repo).own / "COMMIT_EDITMSG"; // where git has it, too
    std::ofstream written(file, std::ios::binary);
    written << message;
    written.close();
    if (!written)
        throw GitError("commit", 1, "The message cannot be written for the commit-msg hook. Nothing was done.");
    ask(repo, "commit-msg", {file.string()});
    std::ifstream left(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(left), {}};
}

void tellRewritten(const GitRepository& repo, const std::vector<std::pair<std::string, std::string>>& commits)
{
    if (commits.empty())
        return;
    std::string lines;
    for (const auto& [before, after] : commits)
        lines += before + ' ' + after + '\n';
    repo.runner().output({"notes", "copy", "--for-rewrite=rebase", "--stdin"}, {.input = lines});
    if (hasHook(repo, "post-rewrite"))
        runHook(repo, "post-rewrite", {"rebase"}, lines);
}

} // namespace gitkit

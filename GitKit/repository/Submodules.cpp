// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Submodules.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <map>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

struct ModuleSettings {
    std::string name;
    std::string url;
};

bool hasRepository(const fs::path& folder)
{
    std::error_code failure;
    return fs::exists(fs::symlink_status(folder / ".git", failure));
}

/// Returns a runner in a submodule; nullopt where there is no repository in its folder. Git would find the outer one there.
std::optional<GitRunner> runnerIn(const GitRepository& repo, const std::string& path)
{
    const fs::path folder = repo.root() / path;
    if (!hasRepository(folder))
        return std::nullopt;
    RunContext context = repo.runner().context();
    context.requiredTopLevel.clear();
    return GitRunner(folder, std::move(context));
}

/// Returns what .gitmodules says, by path. A file that cannot be read says nothing.
std::map<std::string, ModuleSettings> moduleSettings(const GitRepository& repo)
{
    struct Read {
        std::string path;
        std::string url;
    };
    constexpr std::string_view start = "submodule.";
    std::map<std::string, Read> read;
    const GitOutput settings =
        repo.runner().output({"config", "-z", "-f", ".gitmodules", "--get-regexp", "^submodule\\..*\\.(path|url)$"});
    for (const std::string& entry : splitNul(settings.stdoutBytes)) {
        const std::size_t end = entry.find('\n');
        const std::size_t dot = entry.substr(0, end).rfind('.');
        if (end == std::string::npos || dot <= start.size())
            continue;
        Read& one = read[entry.substr(start.size(), dot - start.size())];
        (entry.substr(dot + 1, end - dot - 1) == "path" ? one.path : one.url) = entry.substr(end + 1);
    }
    std::map<std::string, ModuleSettings> byPath;
    for (auto& [name, one] : read)
        byPath[one.path] = {name, std::move(one.url)};
    return byPath;
}

std::string hashOf(const GitRunner& git, const std::string& revision)
{
    return std::string(
        withoutLineEnd(git.output({"rev-parse", "--verify", "--quiet", revision + "^{commit}"}).stdoutBytes));
}

/// Throws where the configuration names a command of its own for an update. Git refuses only those of .gitmodules.
void requireNoCommands(const GitRepository& repo)
{
    const GitOutput ways = repo.runner().output({"config", "-z", "--get-regexp", "^submodule\\..*\\.update$"});
    for (const std::string& entry : splitNul(ways.stdoutBytes)) {
        if (entry.find("\n!") != std::string::npos)
            throw GitError(
                "submodule", 1,
                "The configuration has a submodule updated by a command of its own, which is not run here: " +
                    inQuotes(entry.substr(entry.find('\n') + 2)) + '.');
    }
}

void runUpdate(const GitRepository& repo, std::vector<std::string> command, const std::vector<std::string>& paths)
{
    for (const std::string& path : paths)
        command.push_back(literalPathspec(path));
    if (!paths.empty())
        repo.runner().accepted(command);
}

} // namespace

bool mayHaveSubmodules(const fs::path& root)
{
    std::error_code failure;
    return fs::exists(fs::symlink_status(root / ".gitmodules", failure)) ||
           fs::is_directory(root / ".git" / "modules", failure);
}

std::vector<Submodule> submodules(const GitRepository& repo)
{
    std::vector<Submodule> found;
    if (!mayHaveSubmodules(repo.root()))
        return found;
    const std::map<std::string, ModuleSettings> settings = moduleSettings(repo);
    // "160000 hash stage<tab>path"
    for (const std::string& entry : splitNul(repo.runner().bytes({"ls-files", "-s", "-z"}))) {
        const std::size_t tab = entry.find('\t');
        const auto fields = splitFields<3>(std::string_view(entry).substr(0, tab), ' ');
        if (!fields || (*fields)[0] != "160000")
            continue;
        Submodule one{.path = entry.substr(tab + 1), .recorded = std::string((*fields)[1])};
        if (!found.empty() && found.back().path == one.path) // another stage of a conflict
            continue;
        one.isInitialised = hasRepository(repo.root() / one.path);
        if (const auto known = settings.find(one.path); known != settings.end()) {
            one.name = known->second.name;
            one.url = known->second.url;
        }
        found.push_back(std::move(one));
    }
    return found;
}

std::vector<StrayCommits> strayCommits(const GitRepository& repo, const std::vector<Submodule>& submodules)
{
    std::vector<StrayCommits> stray;
    for (const Submodule& each : submodules) {
        const auto git = runnerIn(repo, each.path);
        const std::string head = git ? hashOf(*git, "HEAD") : std::string();
        if (head.empty() || head == each.recorded)
            continue;
        // What is recorded is on no branch either while a submodule is new, and stays reachable from here.
        std::vector<std::string> command{"rev-list", "--count", head, "--not", "--branches", "--remotes", "--tags"};
        if (!hashOf(*git, each.recorded).empty())
            command.push_back(each.recorded);
        command.emplace_back("--");
        const int count = readNumber(withoutLineEnd(git->bytes(command)));
        if (count > 0)
            stray.push_back({each.path, head, count});
    }
    return stray;
}

void keepStrayCommits(const GitRepository& repo, const std::vector<StrayCommits>& commits)
{
    for (const StrayCommits& each : commits) {
        if (const auto git = runnerIn(repo, each.path))
            git->accepted({"update-ref", "refs/heads/" + each.branch(), each.head, std::string()}); // it must be new
    }
}

void updateSubmodules(const GitRepository& repo, const std::vector<std::string>& paths)
{
    if (paths.empty())
        return;
    requireNoCommands(repo);
    // Those inside one that is here may have commits that nothing else leads to: their own windows look for these.
    std::vector<std::string> here;
    std::vector<std::string> missing;
    for (const std::string& path : paths)
        (hasRepository(repo.root() / path) ? here : missing).push_back(path);
    runUpdate(repo, {"submodule", "update", "--init", "--progress", "--"}, here);
    runUpdate(repo, {"submodule", "update", "--init", "--recursive", "--progress", "--"}, missing);
}

SubmoduleLog submoduleLog(const GitRepository& repo, const std::string& path, const std::string& from,
                          const std::string& to)
{
    using Missing = SubmoduleLog::Missing;
    const auto git = runnerIn(repo, path);
    if (!git)
        return {.missing = Missing::repository};
    for (const std::string& hash : {from, to}) {
        if (!hash.empty() && hashOf(*git, hash).empty())
            return {.missing = Missing::commits};
    }
    SubmoduleLog log;
    if (from.empty() || to.empty())
        return log;
    const std::string range = from + "..." + to;
    const std::string counted = git->bytes({"rev-list", "--left-right", "--count", range, "--"});
    if (const auto counts = splitFields<2>(withoutLineEnd(counted), '\t')) {
        log.behind = readNumber((*counts)[0]);
        log.ahead = readNumber((*counts)[1]);
    }
    const std::string printed = git->bytes({"log", "-z", "--left-right", "--no-show-signature", "--no-color",
                                            "--max-count=100", "--format=%m%H%x1f%s", range, "--"});
    for (const std::string& row : splitNul(printed)) {
        const std::size_t end = row.find(fieldSeparator);
        if (end != std::string::npos)
            log.rows.push_back({row.substr(1, end - 1), row.substr(end + 1), row.front() == '<'});
    }
    return log;
}

} // namespace gitkit

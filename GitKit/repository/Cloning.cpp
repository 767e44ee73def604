// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Cloning.h"

#include "GitKit/Text.h"
#include "GitKit/repository/ClaimedFolder.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "GitKit/runner/GitRunner.h"
#include "GitKit/runner/Progress.h"

#include <system_error>
#include <vector>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

void requireAbsolute(const char* command, const fs::path& folder)
{
    if (!folder.is_absolute())
        throw GitError(command, 1, "The folder " + inQuotes(folder.string()) + " is no whole path.");
}

void requireRoom(const fs::path& folder)
{
    std::error_code why;
    const fs::file_status status = fs::status(folder, why);
    if (!fs::exists(status))
        return;
    if (!fs::is_directory(status) || !fs::is_empty(folder, why) || why)
        throw GitError("clone", 1, inQuotes(folder.string()) + " is not an empty folder.", ErrorKind::alreadyExists);
}

/// Git removes what it has begun when it gives up, so a repository that is there after a failure was left on purpose.
bool isRepository(const fs::path& folder)
{
    std::error_code ignored;
    return fs::exists(folder / ".git" / "HEAD", ignored);
}

std::vector<std::string> argumentsOf(const CloneRequest& request)
{
    std::vector<std::string> arguments{"clone", "--progress"};
    if (request.withSubmodules)
        arguments.emplace_back("--recurse-submodules");
    if (request.depth == CloneDepth::newestOnly)
        arguments.insert(arguments.end(), {"--depth=1", "--no-single-branch"});
    if (request.depth == CloneDepth::filesWhenNeeded)
        arguments.emplace_back("--filter=blob:none");
    if (!request.branch.empty())
        arguments.push_back("--branch=" + request.branch);
    arguments.insert(arguments.end(), {"--", request.address, request.folder.string()});
    return arguments;
}

bool takeEnd(std::string_view& text, std::string_view end)
{
    if (!text.ends_with(end))
        return false;
    text.remove_suffix(end.size());
    return true;
}

void takeSlashes(std::string_view& text)
{
    while (takeEnd(text, "/")) {
    }
}

/// Control characters and runs of blanks become one blank, as they do when git names the folder.
std::string inOneLine(std::string_view name)
{
    std::string line;
    for (const char character : name) {
        const bool isBlank = static_cast<unsigned char>(character) <= 0x20 || character == 0x7F;
        if (!isBlank)
            line += character;
        else if (!line.empty() && line.back() != ' ')
            line += ' ';
    }
    return std::string(trimmed(line));
}

} // namespace

Cloned cloneRepository(const CloneRequest& request, const RunContext& context)
{
    requireAbsolute("clone", request.folder);
    requireRoom(request.folder);
    ClaimedFolder folder("clone", request.folder);
    GitOutput output = GitRunner(request.folder.parent_path(), context).output(argumentsOf(request));
    output.stderrBytes = withoutProgress(output.stderrBytes);
    const bool isThere = !output.signalled && isRepository(request.folder);
    if (output.signalled || (output.status != 0 && !isThere))
        throw failureOf("clone", output);
    folder.keep();
    return output.status == 0 ? Cloned() : Cloned{failureOf("clone", output).message()};
}

void createRepository(const fs::path& folder, const std::string& branch, const RunContext& context)
{
    requireAbsolute("init", folder);
    std::error_code ignored;
    if (fs::exists(fs::symlink_status(folder / ".git", ignored)))
        throw GitError("init", 1, inQuotes(folder.string()) + " is a repository already.", ErrorKind::alreadyExists);
    ClaimedFolder claimed("init", folder);
    GitRunner(folder, context).accepted({"init", "--initial-branch=" + branch, "--", folder.string()});
    claimed.keep();
}

std::string firstBranchName(const RunContext& context)
{
    // No repository's configuration is read in the root folder.
    const GitOutput output = GitRunner("/", context).output({"config", "--get", "init.defaultBranch"});
    const std::string_view name = withoutLineEnd(output.stdoutBytes);
    return output.status == 0 && !name.empty() ? std::string(name) : "main";
}

std::string folderNameOf(std::string_view address)
{
    std::string_view rest = trimmed(address);
    if (const std::size_t scheme = rest.find("://"); scheme != std::string_view::npos)
        rest.remove_prefix(scheme + 3);
    takeSlashes(rest);
    takeEnd(rest, "/.git");
    takeSlashes(rest);
    rest.remove_prefix(rest.find_last_of("/:") + 1); // nothing found is the last of all positions
    if (!takeEnd(rest, ".git"))
        takeEnd(rest, ".bundle");
    std::string name = inOneLine(rest);
    return name == "." || name == ".." || name == "~" ? std::string() : name;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
//   MERGE_RR              lists the files whose resolution git waits for. A conflicted file that is not listed there while
//                         rerere is on, and that has no markers, was resolved by git.

#include "GitKit/repository/Conflicts.h"

#include "GitKit/ConflictMarkers.h"
#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/ConflictFinder.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/Stages.h"
#include "GitKit/repository/ThrowawayObjects.h"

#include <algorithm>
#include <map>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// Calls `tell` with each path of text, attribute and value.
template <typename Tell>
void readAttributes(const GitRepository& repo, const std::vector<Conflict>& conflicts, Tell tell)
{
    std::string paths;
    for (const Conflict& conflict : conflicts)
        paths += conflict.path + '\0';
    const std::vector<std::string> fields = splitNul(repo.runner().bytes(
        {"check-attr", "-z", "--stdin", "merge", "conflict-marker-size"}, {.input = std::move(paths)}));
    for (std::size_t at = 0; at + 2 < fields.size(); at += 3)
        tell(fields[at], fields[at + 1], fields[at + 2]);
}

void setAttributes(const GitRepository& repo, std::vector<Conflict>& conflicts)
{
    constexpr int largestMarkers = 1000;
    readAttributes(repo, conflicts, [&](const auto& path, const auto& attribute, const auto& value) {
        const auto found = std::ranges::lower_bound(conflicts, path, {}, &Conflict::path);
        if (found == conflicts.end() || found->path != path)
            return;
        if (attribute == "merge")
            found->isBinary = value == "unset" || value == "binary";
        else if (const int size = readNumber(value); size > 0 && size < largestMarkers)
            found->markerSize = size;
    });
}

/// Whether git takes it for binary: by its beginning.
bool isBinary(const std::optional<std::string>& bytes)
{
    constexpr std::size_t looked = 8000;
    return bytes && bytes->substr(0, looked).find('\0') != std::string::npos;
}

/// Finds files that are no text. Of a list without end, only the beginning is looked at.
void setBinary(const GitRepository& repo, std::vector<Conflict>& conflicts)
{
    constexpr std::size_t most = 2000;
    constexpr std::size_t atOnce = 64;
    constexpr std::size_t largest = std::size_t{1} << 20;
    std::vector<Conflict*> candidates;
    for (Conflict& conflict : conflicts) {
        if (!conflict.isBinary && candidates.size() < most && conflict.kind != ConflictKind::submodule &&
            conflict.kind != ConflictKind::link)
            candidates.push_back(&conflict);
    }
    for (std::size_t start = 0; start < candidates.size(); start += atOnce) {
        const std::size_t end = std::min(start + atOnce, candidates.size());
        std::vector<std::string> hashes;
        std::vector<Conflict*> owners;
        for (std::size_t at = start; at < end; ++at) {
            for (const auto* version : {&candidates[at]->left, &candidates[at]->right}) {
                if (*version && !(*version)->isSubmodule() && !(*version)->isLink()) {
                    hashes.push_back((*version)->hash);
                    owners.push_back(candidates[at]);
                }
            }
        }
        const auto contents = hashes.empty() ? std::vector<std::optional<std::string>>() : blobs(repo, hashes, largest);
        for (std::size_t at = 0; at < contents.size(); ++at)
            owners[at]->isBinary = owners[at]->isBinary || isBinary(contents[at]);
    }
}

bool isRerereOn(const GitRepository& repo, const fs::path& gitDirectory)
{
    const std::string set(
        withoutLineEnd(repo.runner().output({"config", "--type=bool", "--get", "rerere.enabled"}).stdoutBytes));
    if (!set.empty())
        return set == "true";
    std::error_code ignored;
    return fs::is_directory(gitDirectory / "rr-cache", ignored);
}

/// Returns the paths whose resolutions git waits for: "HASH<tab>PATH", each ended by a zero byte.
std::set<std::string> waitedFor(const fs::path& gitDirectory)
{
    constexpr std::uintmax_t largest = std::uintmax_t{64} << 20;
    std::set<std::string> paths;
    for (const std::string& entry :
         splitNul(regularFileBytes(gitDirectory / "MERGE_RR", largest).value_or(std::string())))
    {
        if (const std::size_t tab = entry.find('\t'); tab != std::string::npos)
            paths.insert(entry.substr(tab + 1));
    }
    return paths;
}

void setRemembered(const GitRepository& repo, const fs::path& gitDirectory, std::vector<Conflict>& conflicts)
{
    if (!isRerereOn(repo, gitDirectory))
        return;
    const std::set<std::string> waited = waitedFor(gitDirectory);
    for (Conflict& conflict : conflicts) {
        const fs::path file = repo.root() / conflict.path;
        conflict.isRemembered = conflict.isText() && !waited.contains(conflict.path) && openRegularFile(file) &&
                                !holdsConflictMarkers(file);
    }
}

void setEdited(const GitRepository& repo, const fs::path& gitDirectory, std::vector<Conflict>& conflicts)
{
    std::vector<FileChange> files;
    for (const Conflict& conflict : conflicts) {
        FileChange& file = files.emplace_back();
        file.path = conflict.path;
        file.isConflicted = true;
        file.index = file.worktree = conflict.base ? 'U' : 'A';
    }
    const std::vector<std::string> changed = changedSinceStop(repo, gitDirectory, files, {});
    const std::set<std::string> edited(changed.begin(), changed.end());
    for (Conflict& conflict : conflicts)
        conflict.isEdited = edited.contains(conflict.path);
}

/// Returns a working file as `git add` would store it; nullopt when it is no ordinary file, or larger than the limit.
std::optional<std::string> cleanedFile(const GitRepository& repo, const std::string& path, std::size_t limit)
{
    std::error_code error;
    const fs::path file = repo.root() / path;
    if (!fs::is_regular_file(fs::symlink_status(file, error)) || fs::file_size(file, error) > limit || error)
        return std::nullopt;
    const ThrowawayObjects objects(repo);
    RunOptions options = objects.options();
    options.settings = {"core.safecrlf=false"};
    options.input = regularFileBytes(file, limit + 1);
    if (!options.input || options.input->size() > limit)
        return std::nullopt;
    const std::string hash(
        withoutLineEnd(repo.runner().bytes({"hash-object", "-w", "--stdin", "--path=" + path}, options)));
    return repo.runner().bytes({"cat-file", "blob", hash}, objects.options());
}

} // namespace

ConflictList conflictList(const GitRepository& repo, const ConflictOrigin& origin)
{
    const std::map<std::string, Stages> listed = parseStages(repo.runner().bytes({"ls-files", "--unmerged", "-z"}));
    if (listed.empty())
        return {};
    const MergedCommits merged = mergedCommits(repo, origin);
    ConflictList list{.conflicts = findConflicts(repo, listed, merged), .names = conflictNames(repo, origin)};
    setAttributes(repo, list.conflicts);
    setBinary(repo, list.conflicts);
    for (Conflict& conflict : list.conflicts) {
        if (conflict.isBinary && conflict.isText())
            conflict.kind = ConflictKind::binary;
    }
    setRemembered(repo, origin.gitDirectory, list.conflicts);
    setEdited(repo, origin.gitDirectory, list.conflicts);
    return list;
}

ConflictContents conflictContents(const GitRepository& repo, const Conflict& conflict, std::size_t limit)
{
    ConflictContents contents;
    std::vector<std::string> hashes;
    std::vector<std::optional<std::string>*> places;
    const auto ask = [&](const std::optional<ConflictVersion>& version, std::optional<std::string>& place) {
        if (!version || version->isSubmodule())
            return;
        hashes.push_back(version->hash);
        places.push_back(&place);
    };
    ask(conflict.base, contents.base);
    ask(conflict.left, contents.left);
    ask(conflict.right, contents.right);
    contents.working = cleanedFile(repo, conflict.path, limit);
    const auto found = hashes.empty() ? std::vector<std::optional<std::string>>() : blobs(repo, hashes, limit);
    for (std::size_t at = 0; at < found.size(); ++at)
        *places[at] = found[at];
    return contents;
}

std::optional<SubmoduleSides> submoduleSides(const GitRepository& repo, const Conflict& conflict)
{
    if (!conflict.left || !conflict.right || !conflict.left->isSubmodule() || !conflict.right->isSubmodule())
        return std::nullopt;
    std::error_code error;
    const fs::path folder = repo.root() / conflict.path;
    if (!fs::exists(folder / ".git", error))
        return std::nullopt;
    RunContext context = repo.runner().context();
    context.requiredTopLevel.clear();
    const GitRunner git(folder, context);
    SubmoduleSides sides;
    for (const auto& [version, side, other] : {std::tuple(&*conflict.left, &sides.left, &*conflict.right),
                                               std::tuple(&*conflict.right, &sides.right, &*conflict.left)})
    {
        const GitOutput told =
            git.output({"log", "-1", "--no-show-signature", "--format=%ct%x00%s", version->hash, "--"});
        const std::size_t end = told.stdoutBytes.find('\0');
        if (told.status != 0 || end == std::string::npos)
            return std::nullopt;
        side->hash = version->hash;
        side->date = readDate(std::string_view(told.stdoutBytes).substr(0, end));
        side->subject = withoutLineEnd(std::string_view(told.stdoutBytes).substr(end + 1));
        side->ahead = readNumber(
            withoutLineEnd(git.output({"rev-list", "--count", other->hash + ".." + version->hash, "--"}).stdoutBytes));
    }
    return sides;
}

} // namespace gitkit

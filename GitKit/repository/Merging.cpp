// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Merging.h"

#include "GitKit/Text.h"
#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Overwriting.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "GitKit/undo/RefTransaction.h"

#include <cstdlib>
#include <system_error>

namespace gitkit {

namespace {

namespace fs = std::filesystem;

/// A folder for objects that nobody needs afterwards.
class ThrowawayObjects {
public:
    explicit ThrowawayObjects(const GitRepository& repo)
        : alternates_(alternatesOf(gitDirectories(repo).common / "objects"))
    {
        std::string name = (fs::temp_directory_path() / "plovik-objects-XXXXXX").string();
        if (::mkdtemp(name.data()) == nullptr)
            throw std::system_error(errno, std::generic_category(), "mkdtemp");
        folder_ = name;
    }
    ~ThrowawayObjects()
    {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }
    ThrowawayObjects(const ThrowawayObjects&) = delete;
    ThrowawayObjects& operator=(const ThrowawayObjects&) = delete;

    RunOptions options() const
    {
        RunOptions options;
        options.environment = {{"GIT_OBJECT_DIRECTORY", folder_.string()},
                               {"GIT_ALTERNATE_OBJECT_DIRECTORIES", alternates_}};
        return options;
    }

private:
    fs::path folder_;
    std::string alternates_;
};

std::string mergeSetting(const GitRepository& repo, const std::string& name)
{
    return std::string(withoutLineEnd(repo.runner().output({"config", "--get", name}).stdoutBytes));
}

/// Whether reading contents may go to the network, which a preview never does.
bool isPartialClone(const GitRepository& repo)
{
    return repo.runner().output({"config", "--get-regexp", "^remote\\..*\\.(promisor|partialclonefilter)$"}).status ==
           0;
}

void rehearse(const GitRepository& repo, const std::string& theirs, MergePreview& preview)
{
    if (!can(Ability::mergesInMemory) || isPartialClone(repo))
        return;
    const ThrowawayObjects objects(repo);
    const GitOutput merged = repo.runner().output(
        {"merge-tree", "--write-tree", "-z", "--name-only", "--no-messages", "HEAD", theirs}, objects.options());
    if (merged.status == 0)
        preview.outcome = MergePreview::Outcome::clean;
    if (merged.status != 1)
        return;
    preview.outcome = MergePreview::Outcome::conflicts;
    preview.conflicts = splitNul(merged.stdoutBytes);
    preview.conflicts.erase(preview.conflicts.begin()); // the tree
}

/// A branch and what it follows.
struct Followed {
    std::string ours;   ///< full hash
    std::string theirs; ///< full hash
    std::string upstream;
    std::string place;  ///< working tree that has the branch checked out; empty when none has
    std::string symref; ///< what the branch is another name of; empty when of none
};

Followed followedBy(const GitRepository& repo, const std::string& branch)
{
    const std::vector<std::string> fields = splitNul(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--format=%(objectname)%00%(upstream)%00%(worktreepath)%00%(symref)%00",
                             "refs/heads/" + branch})));
    if (fields.size() != 4)
        throw GitError("merge", 1, "There is no branch " + inQuotes(branch) + ".", ErrorKind::noSuchRef);
    Followed found{.ours = fields[0], .theirs = {}, .upstream = fields[1], .place = fields[2], .symref = fields[3]};
    if (!found.upstream.empty())
        found.theirs = std::string(
            withoutLineEnd(repo.runner().output({"rev-parse", "--verify", "--quiet", found.upstream}).stdoutBytes));
    if (found.theirs.empty())
        throw GitError("merge", 1, inQuotes(branch) + " follows no branch that is here.", ErrorKind::noUpstream);
    return found;
}

} // namespace

MergePreview mergePreview(const GitRepository& repo, const std::string& ref)
{
    const std::string theirs = std::string(
        withoutLineEnd(repo.runner().bytes({"rev-parse", "--verify", exactArgument("merge", ref) + "^{commit}"})));
    const Divergence counts = countDivergence(repo, {headCommit(repo), theirs});
    const std::string forward = mergeSetting(repo, "merge.ff");
    MergePreview preview;
    preview.commits = counts.behind;
    preview.own = counts.ahead;
    preview.alwaysMergeCommit = forward == "false" || forward == "no" || forward == "off";
    preview.alwaysFastForward = forward == "only";
    preview.remembersResolutions = mergeSetting(repo, "rerere.enabled") == "true";
    if (preview.commits > 0 && preview.own > 0)
        rehearse(repo, theirs, preview);
    else
        preview.outcome = MergePreview::Outcome::clean;
    return preview;
}

void mergeBy(const GitRepository& repo, const std::string& ref, MergeKind kind)
{
    if (kind == MergeKind::normal) {
        repo.merge(ref);
        return;
    }
    const std::string revision = exactArgument("merge", ref);
    waitForIndex(repo);
    requireIgnoredStay(
        repo, "merge",
        {"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff", "--diff-filter=A", "HEAD..." + revision, "--"});
    std::vector<std::string> command{"merge"};
    if (kind == MergeKind::mergeCommit)
        command.insert(command.end(), {"--no-ff", "--no-squash"});
    if (kind == MergeKind::fastForwardOnly)
        command.insert(command.end(), {"--ff-only", "--no-squash"});
    if (kind == MergeKind::squash)
        command.insert(command.end(), {"--squash", "--ff"}); // which merge.ff=false would clash with
    command.push_back(revision.starts_with("refs/") ? shortestName(repo.runner(), revision) : revision);
    runTelling(repo.runner(), command);
}

void rebaseOnto(const GitRepository& repo, const std::string& ref)
{
    const std::string revision = exactArgument("rebase", ref);
    waitForIndex(repo);
    runTelling(repo.runner(),
               {"rebase", revision.starts_with("refs/") ? shortestName(repo.runner(), revision) : revision});
}

void fetchUpstreamOf(const GitRepository& repo, const std::string& branch)
{
    const std::string remote(withoutLineEnd(
        repo.runner().bytes({"for-each-ref", "--format=%(upstream:remotename)", "refs/heads/" + branch})));
    if (remote.empty())
        throw GitError("fetch", 1, inQuotes(branch) + " follows no branch of a remote.", ErrorKind::noUpstream);
    runTelling(repo.runner(), {"fetch", "--progress", "--no-write-fetch-head", newNameArgument("fetch", remote)});
}

void fastForward(const GitRepository& repo, const std::string& branch)
{
    const Followed now = followedBy(repo, branch);
    if (!now.place.empty())
        throw GitError("merge", 1, inQuotes(branch) + " is checked out in " + inQuotes(now.place) + ".",
                       ErrorKind::checkedOutElsewhere);
    if (!now.symref.empty())
        throw GitError("merge", 1, inQuotes(branch) + " is another name of " + inQuotes(now.symref) + ".");
    if (now.ours == now.theirs || countDivergence(repo, {now.ours, now.theirs}).behind == 0)
        return;
    if (repo.runner().output({"merge-base", "--is-ancestor", now.ours, now.theirs}).status != 0)
        throw GitError("merge", 1,
                       inQuotes(branch) + " and " + inQuotes(now.upstream.substr(now.upstream.find('/', 5) + 1)) +
                           " have diverged. Check it out to merge.",
                       ErrorKind::notFastForward);
    RefTransaction move(repo, "merge " + now.upstream + ": Fast-forward",
                        {{"refs/heads/" + branch, now.ours, now.theirs}});
    move.commit();
}

} // namespace gitkit

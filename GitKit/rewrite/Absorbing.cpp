// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Absorbing.h"

#include "GitKit/Text.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/rewrite/CommitText.h"
#include "GitKit/rewrite/CommitWriter.h"
#include "GitKit/rewrite/Hooks.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/rewrite/ZeroHunks.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/TreeMove.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <optional>
#include <utility>
#include <vector>

namespace gitkit {

namespace {

/// Paths are meant as they are.
RunOptions literally(RunOptions options = {})
{
    options.environment.emplace_back("GIT_LITERAL_PATHSPECS", "1");
    return options;
}

using HunksOfFiles = std::map<std::string, std::vector<const AbsorbHunk*>>;

[[noreturn]] void refuseChanged(const std::string& path)
{
    throw GitError("absorb", 1, inQuotes(path) + " has changed meanwhile. Nothing was done.",
                   ErrorKind::changedMeanwhile);
}

/// Returns an older text after changes that were made against HEAD.
std::string withHunks(OlderText text, const std::string& path, const std::vector<const AbsorbHunk*>& hunks)
{
    std::vector<std::pair<int, const AbsorbHunk*>> placed;
    for (const AbsorbHunk* const hunk : hunks) {
        const std::optional<int> place = placeIn(text, *hunk);
        if (!place)
            refuseChanged(path);
        placed.emplace_back(*place, hunk);
    }
    std::ranges::sort(placed, std::greater());
    for (const auto& [place, hunk] : placed) {
        const auto at = text.lines.begin() + place;
        text.lines.insert(text.lines.erase(at, at + static_cast<std::ptrdiff_t>(hunk->gone.size())), hunk->come.begin(),
                          hunk->come.end());
    }
    return textOf(text.lines);
}

/// Returns a tree in which files have other contents, given by the hashes of blobs.
std::string treeWith(const GitRepository& repo, const std::string& tree,
                     const std::map<std::string, std::string>& blobs)
{
    const ScratchIndex index(repo.runner());
    const RunOptions options = helperOptions(index.options());
    repo.runner().accepted({"read-tree", tree}, options);
    std::string lines;
    for (const auto& [path, blob] : blobs) {
        const std::string entry = repo.runner().bytes({"ls-files", "-s", "-z", "--", path}, literally(options));
        lines += entry.substr(0, entry.find(' ')) + ' ' + blob + '\t' + path + '\0';
    }
    RunOptions feeding = options;
    feeding.input = lines;
    repo.runner().accepted({"update-index", "-z", "--index-info"}, feeding);
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

std::string storedBlob(const GitRepository& repo, const std::string& bytes)
{
    return std::string(
        withoutLineEnd(repo.runner().bytes({"hash-object", "-w", "--no-filters", "--stdin"}, {.input = bytes})));
}

/// The same by git's own means: HEAD's tree with the changes applied as patches.
std::string patchedHead(const GitRepository& repo, const std::vector<const AbsorbHunk*>& hunks)
{
    const ScratchIndex index(repo.runner());
    const RunOptions options = helperOptions(index.options());
    repo.runner().accepted({"read-tree", "HEAD"}, options);
    HunksOfFiles files;
    for (const AbsorbHunk* const hunk : hunks)
        files[hunk->path].push_back(hunk);
    for (auto& [path, all] : files) {
        // The changes that are not meant are taken back from what is staged.
        std::vector<std::string> lines = linesOfText(repo.runner().bytes({"cat-file", "blob", ":" + path}));
        const std::vector<ZeroHunk> differing = stagedHunks(repo, path);
        for (auto hunk = differing.rbegin(); hunk != differing.rend(); ++hunk) {
            const bool isMeant = std::ranges::any_of(all, [&](const AbsorbHunk* one) {
                return one->line == hunk->oldStart && one->gone == hunk->gone && one->come == hunk->come;
            });
            if (isMeant)
                continue;
            const auto at = lines.begin() + (hunk->newCount > 0 ? hunk->newStart - 1 : hunk->newStart);
            lines.insert(lines.erase(at, at + hunk->newCount), hunk->gone.begin(), hunk->gone.end());
        }
        const std::string bytes = textOf(lines);
        const std::string entry = repo.runner().bytes({"ls-files", "-s", "-z", "--", path}, literally(options));
        RunOptions feeding = options;
        feeding.input = entry.substr(0, entry.find(' ')) + ' ' + storedBlob(repo, bytes) + '\t' + path + '\0';
        repo.runner().accepted({"update-index", "-z", "--index-info"}, feeding);
    }
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

/// Returns the changes that go into a commit.
std::vector<const AbsorbHunk*> chosenOf(const AbsorbProposal& proposal)
{
    std::vector<const AbsorbHunk*> chosen;
    for (const AbsorbHunk& hunk : proposal.hunks) {
        if (!hunk.target.empty())
            chosen.push_back(&hunk);
    }
    if (chosen.empty())
        throw GitError("absorb", 1, "Nothing is to be absorbed.", ErrorKind::nothingToDo);
    return chosen;
}

/// The files of one commit after another, as they become.
class AbsorbedFiles {
public:
    AbsorbedFiles(const GitRepository& repo, const AbsorbProposal& proposal,
                  const std::vector<const AbsorbHunk*>& chosen)
        : repo_(repo), commits_(proposal.commits)
    {
        for (const AbsorbHunk* const hunk : chosen)
            files_[hunk->path].push_back(hunk);
        for (const auto& [path, hunks] : files_)
            blobs_[path] = blobsIn(repo, commits_, path);
    }

    /// Returns the hashes of the files of this commit that become others.
    std::map<std::string, std::string> in(std::size_t commit) const
    {
        const auto begun = commits_.begin() + static_cast<std::ptrdiff_t>(commit) + 1;
        std::map<std::string, std::string> changed;
        for (const auto& [path, hunks] : files_) {
            std::vector<const AbsorbHunk*> here;
            std::ranges::copy_if(hunks, std::back_inserter(here), [&](const AbsorbHunk* hunk) {
                return std::find(commits_.begin(), begun, hunk->target) != begun;
            });
            if (here.empty())
                continue;
            const std::vector<std::string>& blobs = blobs_.at(path);
            if (blobs[commit].empty() || blobs.back().empty())
                refuseChanged(path);
            changed[path] = storedBlob(repo_, withHunks(olderText(repo_, blobs[commit], blobs.back()), path, here));
        }
        return changed;
    }

private:
    const GitRepository& repo_;
    const std::vector<std::string>& commits_;
    HunksOfFiles files_;
    std::map<std::string, std::vector<std::string>> blobs_;
};

} // namespace

RewriteOutcome absorbed(const GitRepository& repo, const AbsorbProposal& proposal, CommitHooks hooks)
{
    requireAsPlanned(repo, untouchedPlan(proposal.branch, proposal.base, proposal.commits));
    const std::vector<const AbsorbHunk*> chosen = chosenOf(proposal);
    if (hooks == CommitHooks::run)
        askBeforeStaged(repo, proposal.base);
    if (stagedList(repo) != proposal.staged)
        throw GitError("absorb", 1, "What is staged has changed meanwhile. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    std::map<std::string, CommitText> texts = readCommits(repo, proposal.commits);
    const AbsorbedFiles files(repo, proposal, chosen);
    CommitWriter writer(repo, {}, Signing::asConfigured);
    RewriteOutcome outcome{.result = RewriteOutcome::Result::clean, .marks = {}};
    for (std::size_t index = 0; index < proposal.commits.size(); ++index) {
        const std::map<std::string, std::string> blobs = files.in(index);
        if (blobs.empty())
            continue;
        CommitText text = texts.at(proposal.commits[index]);
        text.tree = treeWith(repo, text.tree, blobs);
        if (!outcome.tip.empty())
            text.parents = {outcome.tip};
        outcome.tip = writer.write(text);
        outcome.tree = text.tree;
        outcome.rewritten.emplace_back(proposal.commits[index], outcome.tip);
    }
    if (outcome.tree != patchedHead(repo, chosen))
        throw GitError("absorb", 1, "The changes do not fit these commits. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    return outcome;
}

RewriteOutcome withStagedIn(const GitRepository& repo, const RewritePlan& plan, const std::string& commit,
                            const StagedInto& how)
{
    requireAsPlanned(repo, plan);
    RewritePlan whole = how.message ? reworded(plan, commit, *how.message) : plan;
    const auto stagedTree = [&repo] { return indexContents(repo, gitDirectories(repo).own).tree; };
    const std::string tipTree = readCommits(repo, {plan.tip()}).at(plan.tip()).tree;
    if (whole == plan && stagedTree() == tipTree)
        throw GitError("commit", 1, "Nothing is staged.", ErrorKind::nothingToDo);
    if (how.hooks == CommitHooks::run) {
        askBeforeStaged(repo, plan.base);
        if (how.message)
            whole = reworded(plan, commit, askCommitMessage(repo, *how.message));
    }
    const std::string tree = stagedTree(); // a hook may have staged more
    const std::string staged = CommitWriter(repo, {}, Signing::none).writeHelper(tree, {plan.tip()});
    if (tree != tipTree) {
        whole.commits.push_back(staged);
        whole.steps.push_back({.commit = staged});
        whole = squashed(whole, {staged}, commit, RewriteStep::Act::fixUp);
    }
    RewriteOutcome outcome = written(repo, whole);
    std::erase_if(outcome.rewritten, [&staged](const auto& pair) { return pair.first == staged; });
    if (outcome.result != RewriteOutcome::Result::clean || outcome.tree != tree)
        throw GitError("commit", 1, "What is staged does not fit that commit, or conflicts with those above it.",
                       ErrorKind::conflicts);
    return outcome;
}

} // namespace gitkit

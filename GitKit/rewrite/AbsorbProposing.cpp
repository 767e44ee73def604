// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Absorbing.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/ZeroHunks.h"
#include "GitKit/undo/HelperRuns.h"

#include <algorithm>
#include <vector>

namespace gitkit {

namespace {

/// Returns the youngest of the commits that have touched these lines of HEAD, as an index; their number when they are older.
std::size_t youngestOf(const GitRepository& repo, const AbsorbProposal& proposal, const std::string& path, int first,
                       int last)
{
    const std::size_t none = proposal.commits.size();
    const std::string range = proposal.base.empty() ? "HEAD" : proposal.base + "..HEAD";
    const GitOutput blame =
        repo.runner().output({"blame", "--porcelain", "--ignore-revs-file=", "-L",
                              std::to_string(first) + ',' + std::to_string(last), range, "--", path},
                             {.environment = {{"GIT_LITERAL_PATHSPECS", "1"}}});
    if (blame.status != 0)
        return none;
    std::size_t youngest = none;
    Pieces lines(blame.stdoutBytes, '\n');
    while (const auto line = lines.next()) {
        if (line->starts_with('\t'))
            continue;
        const auto found = std::ranges::find(proposal.commits, line->substr(0, line->find(' ')));
        const auto place = static_cast<std::size_t>(found - proposal.commits.begin());
        if (place != none && (youngest == none || place > youngest))
            youngest = place;
    }
    return youngest;
}

std::size_t lastToTouch(const GitRepository& repo, const AbsorbProposal& proposal, const AbsorbHunk& hunk)
{
    const auto count = static_cast<int>(hunk.gone.size());
    if (count > 0)
        return youngestOf(repo, proposal, hunk.path, hunk.line, hunk.line + count - 1);
    const std::size_t around = youngestOf(repo, proposal, hunk.path, std::max(1, hunk.line), hunk.line + 1);
    // At the end of a file there is no line below.
    const bool isAlone = around == proposal.commits.size() && hunk.line > 0;
    return isAlone ? youngestOf(repo, proposal, hunk.path, hunk.line, hunk.line) : around;
}

/// Finds out how far down each of the changes of one file fits.
void findOldest(const GitRepository& repo, const AbsorbProposal& proposal, std::vector<AbsorbHunk>& hunks)
{
    const std::vector<std::string> blobs = blobsIn(repo, proposal.commits, hunks.front().path);
    OlderText text;
    for (AbsorbHunk& hunk : hunks)
        hunk.oldest = blobs.size();
    for (std::size_t commit = blobs.size(); commit-- > 0 && !blobs[commit].empty();) {
        if (commit + 1 == blobs.size() || blobs[commit] != blobs[commit + 1])
            text = olderText(repo, blobs[commit], blobs.back());
        bool fits = false;
        for (AbsorbHunk& hunk : hunks) {
            if (hunk.oldest != commit + 1 || !placeIn(text, hunk))
                continue;
            hunk.oldest = commit;
            fits = true;
        }
        if (!fits)
            return;
    }
}

void addHunks(const GitRepository& repo, const std::string& path, AbsorbProposal& proposal)
{
    std::vector<AbsorbHunk> hunks;
    for (const ZeroHunk& hunk : stagedHunks(repo, path))
        hunks.push_back({.path = path, .line = hunk.oldStart, .gone = hunk.gone, .come = hunk.come, .target = {}});
    if (hunks.empty()) {
        proposal.others.push_back({path, StaysStaged::binary});
        return;
    }
    findOldest(repo, proposal, hunks);
    for (AbsorbHunk& hunk : hunks) {
        const std::size_t last = lastToTouch(repo, proposal, hunk);
        if (last == proposal.commits.size())
            hunk.reason = StaysStaged::older;
        else if (last < hunk.oldest)
            hunk.reason = StaysStaged::misplaced;
        else
            hunk.target = proposal.commits[last];
        proposal.hunks.push_back(std::move(hunk));
    }
}

/// Adds what is staged of a file. `facts` are those of git's list: ":MODE MODE HASH HASH STATUS".
void addFile(const GitRepository& repo, const std::string& facts, const std::string& path, AbsorbProposal& proposal)
{
    const bool isPlain = facts.starts_with(":100644 100644 ") || facts.starts_with(":100755 100755 ");
    if (isPlain && facts.ends_with('M'))
        addHunks(repo, path, proposal);
    else if (facts.ends_with('A'))
        proposal.others.push_back({path, StaysStaged::newFile});
    else if (facts.ends_with('D'))
        proposal.others.push_back({path, StaysStaged::deletedFile});
    else
        proposal.others.push_back({path, StaysStaged::notLines});
}

} // namespace

std::string stagedList(const GitRepository& repo)
{
    return repo.runner().bytes(
        {"diff-index", "--cached", "--ita-invisible-in-index", "-z", "--no-abbrev", "--no-renames", "HEAD", "--"},
        helperOptions());
}

AbsorbProposal absorbProposal(const GitRepository& repo)
{
    const MovableCommits movable = movableCommits(repo);
    AbsorbProposal proposal;
    proposal.branch = movable.branch;
    proposal.base = movable.base;
    for (const MovableCommit& commit : movable.commits) {
        // What others have stays as it is.
        if (commit.isPublished) {
            proposal.base = commit.hash;
            proposal.publishedOn = movable.publishedOn;
            proposal.commits.clear();
            proposal.subjects.clear();
            continue;
        }
        proposal.commits.push_back(commit.hash);
        proposal.subjects.push_back(subjectOf(commit));
    }
    if (proposal.commits.empty())
        return proposal;
    proposal.staged = stagedList(repo);
    const std::vector<std::string> fields = splitNul(proposal.staged);
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2)
        addFile(repo, fields[index], fields[index + 1], proposal);
    return proposal;
}

} // namespace gitkit

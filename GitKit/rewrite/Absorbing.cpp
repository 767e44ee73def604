// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Absorbing.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/rewrite/CommitText.h"
#include "GitKit/rewrite/CommitWriter.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/TreeMove.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace gitkit {

namespace {

using Lines = std::vector<std::string>;

/// Paths are meant as they are.
RunOptions literally(RunOptions options = {})
{
    options.environment.emplace_back("GIT_LITERAL_PATHSPECS", "1");
    return options;
}

/// From where to where lines of one side stand for lines of the other.
struct ZeroHunk {
    int oldStart = 0;
    int oldCount = 0;
    int newStart = 0;
    int newCount = 0;
    Lines gone;
    Lines come;
    bool lacksLineEnd = false;
};

int takeNumber(std::string_view& text)
{
    std::size_t digits = 0;
    while (digits < text.size() && text[digits] >= '0' && text[digits] <= '9')
        ++digits;
    const int number = readNumber(text.substr(0, digits));
    text.remove_prefix(digits);
    return number;
}

void takeRange(std::string_view& text, int& start, int& count)
{
    text.remove_prefix(std::min<std::size_t>(text.size(), 1)); // the sign
    start = takeNumber(text);
    count = 1;
    if (text.starts_with(',')) {
        text.remove_prefix(1);
        count = takeNumber(text);
    }
    text.remove_prefix(std::min<std::size_t>(text.size(), 1));
}

/// Reads the hunks of a diff of one file without context. A hunk's lines are as many as its header says, whatever they look
/// like.
std::vector<ZeroHunk> zeroHunks(std::string_view diff)
{
    std::vector<ZeroHunk> hunks;
    while (!diff.empty()) {
        const std::size_t end = std::min(diff.find('\n'), diff.size() - 1) + 1;
        const std::string_view line = diff.substr(0, end);
        diff.remove_prefix(end);
        if (line.starts_with("@@ -")) {
            std::string_view ranges = line.substr(3);
            hunks.emplace_back();
            takeRange(ranges, hunks.back().oldStart, hunks.back().oldCount);
            takeRange(ranges, hunks.back().newStart, hunks.back().newCount);
        } else if (!hunks.empty() && line.starts_with('\\')) {
            hunks.back().lacksLineEnd = true;
        } else if (!hunks.empty() && line.starts_with('-')) {
            hunks.back().gone.emplace_back(line.substr(1));
        } else if (!hunks.empty() && line.starts_with('+')) {
            hunks.back().come.emplace_back(line.substr(1));
        }
    }
    return hunks;
}

Lines linesOfText(std::string_view text)
{
    Lines lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

std::vector<ZeroHunk> differences(const GitRepository& repo, std::vector<std::string> sides, const std::string& path)
{
    std::vector<std::string> command{"diff",          "-U0",           "--full-index", "--no-renames",
                                     "--no-ext-diff", "--no-textconv", "--no-color"};
    command.insert(command.end(), sides.begin(), sides.end());
    command.insert(command.end(), {"--", path});
    return zeroHunks(repo.runner().bytes(command, literally()));
}

/// Returns the youngest of the commits that have touched these lines of HEAD; empty when they are older.
std::string youngestOf(const GitRepository& repo, const AbsorbProposal& proposal, const std::string& path, int first,
                       int last)
{
    std::string range = proposal.base.empty() ? "HEAD" : proposal.base + "..HEAD";
    const GitOutput blame =
        repo.runner().output({"blame", "--porcelain", "--ignore-revs-file=", "-L",
                              std::to_string(first) + ',' + std::to_string(last), range, "--", path},
                             literally());
    if (blame.status != 0)
        return {};
    std::ptrdiff_t youngest = -1;
    Pieces lines(blame.stdoutBytes, '\n');
    while (const auto line = lines.next()) {
        const auto found = std::ranges::find(proposal.commits, line->substr(0, line->find(' ')));
        if (!line->starts_with('\t') && found != proposal.commits.end())
            youngest = std::max(youngest, found - proposal.commits.begin());
    }
    return youngest < 0 ? std::string() : proposal.commits[static_cast<std::size_t>(youngest)];
}

/// Returns the paths whose lines alone have changed, as far as the modes tell.
std::vector<std::string> changedByLines(const GitRepository& repo, int& others)
{
    std::vector<std::string> paths;
    const std::vector<std::string> fields =
        splitNul(repo.runner().bytes({"diff-index", "--cached", "-z", "--no-renames", "HEAD", "--"}, helperOptions()));
    // A record is ":MODE MODE HASH HASH STATUS" and its path.
    for (std::size_t index = 0; index + 1 < fields.size(); index += 2) {
        const std::string& facts = fields[index];
        const bool isPlain = facts.starts_with(":100644 100644 ") || facts.starts_with(":100755 100755 ");
        if (isPlain && facts.ends_with('M'))
            paths.push_back(fields[index + 1]);
        else
            ++others;
    }
    return paths;
}

void addHunks(const GitRepository& repo, const std::string& path, AbsorbProposal& proposal)
{
    const std::vector<ZeroHunk> found = differences(repo, {"--cached", "HEAD"}, path);
    if (found.empty())
        ++proposal.others;
    for (const ZeroHunk& hunk : found) {
        AbsorbHunk one{.path = path, .line = hunk.oldStart, .gone = hunk.gone, .come = hunk.come, .target = {}};
        if (!hunk.lacksLineEnd && hunk.oldCount > 0)
            one.target = youngestOf(repo, proposal, path, hunk.oldStart, hunk.oldStart + hunk.oldCount - 1);
        else if (!hunk.lacksLineEnd)
            one.target = youngestOf(repo, proposal, path, std::max(1, hunk.oldStart), hunk.oldStart + 1);
        // At the end of a file there is no line below.
        if (one.target.empty() && !hunk.lacksLineEnd && hunk.oldCount == 0 && hunk.oldStart > 0)
            one.target = youngestOf(repo, proposal, path, hunk.oldStart, hunk.oldStart);
        proposal.hunks.push_back(std::move(one));
    }
}

[[noreturn]] void refuseChanged(const std::string& path)
{
    throw GitError("absorb", 1, inQuotes(path) + " has changed meanwhile. Nothing was done.",
                   ErrorKind::changedMeanwhile);
}

/// Returns the line of an older text that a line of HEAD is; nullopt where it is not there yet.
std::optional<int> mappedLine(const std::vector<ZeroHunk>& since, int line)
{
    int shift = 0;
    for (const ZeroHunk& hunk : since) {
        const int first = hunk.newCount > 0 ? hunk.newStart : hunk.newStart + 1;
        if (line < first)
            break;
        if (line < first + hunk.newCount)
            return std::nullopt;
        shift += hunk.oldCount - hunk.newCount;
    }
    return line + shift;
}

/// One file of one commit, into which changes go that were made against HEAD.
class OlderFile {
public:
    OlderFile(const GitRepository& repo, const std::string& commit, const std::string& path) : path_(path)
    {
        lines_ = linesOfText(repo.runner().bytes({"cat-file", "blob", commit + ':' + path}));
        since_ = differences(repo, {commit, "HEAD"}, path);
    }

    /// Returns the bytes after these changes.
    std::string with(const std::vector<const AbsorbHunk*>& hunks) const
    {
        Lines lines = lines_;
        std::vector<std::pair<int, const AbsorbHunk*>> placed;
        for (const AbsorbHunk* const hunk : hunks)
            placed.emplace_back(placeOf(*hunk), hunk);
        std::ranges::sort(placed, std::greater());
        for (const auto& [place, hunk] : placed) {
            const auto at = lines.begin() + place;
            lines.insert(lines.erase(at, at + static_cast<std::ptrdiff_t>(hunk->gone.size())), hunk->come.begin(),
                         hunk->come.end());
        }
        std::string bytes;
        for (const std::string& line : lines)
            bytes += line;
        return bytes;
    }

private:
    /// Returns how many lines stand before the change. Throws where its lines are not there as they are in HEAD.
    int placeOf(const AbsorbHunk& hunk) const
    {
        const auto count = static_cast<int>(hunk.gone.size());
        const auto above = hunk.line == 0 ? std::optional(0) : mappedLine(since_, hunk.line);
        if (!above)
            refuseChanged(path_);
        if (count == 0) {
            const std::optional<int> below = mappedLine(since_, hunk.line + 1);
            const auto all = static_cast<int>(lines_.size());
            if (*above > all || (*above < all && below != *above + 1))
                refuseChanged(path_);
            return *above;
        }
        for (int index = 0; index < count; ++index) {
            const std::optional<int> line = mappedLine(since_, hunk.line + index);
            if (line != *above + index || *line > static_cast<int>(lines_.size()) ||
                lines_[static_cast<std::size_t>(*line - 1)] != hunk.gone[static_cast<std::size_t>(index)])
                refuseChanged(path_);
        }
        return *above - 1;
    }

    const std::string& path_;
    Lines lines_;
    std::vector<ZeroHunk> since_;
};

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
    std::map<std::string, std::vector<const AbsorbHunk*>> files;
    for (const AbsorbHunk* const hunk : hunks)
        files[hunk->path].push_back(hunk);
    for (auto& [path, all] : files) {
        // The changes that are not meant are taken back from what is staged.
        const std::string staged = repo.runner().bytes({"cat-file", "blob", ":" + path});
        Lines lines = linesOfText(staged);
        const std::vector<ZeroHunk> differing = differences(repo, {"--cached", "HEAD"}, path);
        for (auto hunk = differing.rbegin(); hunk != differing.rend(); ++hunk) {
            const bool isMeant = std::ranges::any_of(all, [&](const AbsorbHunk* one) {
                return one->line == hunk->oldStart && one->gone == hunk->gone && one->come == hunk->come;
            });
            if (isMeant)
                continue;
            const auto at = lines.begin() + (hunk->newCount > 0 ? hunk->newStart - 1 : hunk->newStart);
            lines.insert(lines.erase(at, at + hunk->newCount), hunk->gone.begin(), hunk->gone.end());
        }
        std::string bytes;
        for (const std::string& line : lines)
            bytes += line;
        const std::string entry = repo.runner().bytes({"ls-files", "-s", "-z", "--", path}, literally(options));
        RunOptions feeding = options;
        feeding.input = entry.substr(0, entry.find(' ')) + ' ' + storedBlob(repo, bytes) + '\t' + path + '\0';
        repo.runner().accepted({"update-index", "-z", "--index-info"}, feeding);
    }
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

RewritePlan planOf(const AbsorbProposal& proposal)
{
    return untouchedPlan(proposal.branch, proposal.base, proposal.commits);
}

} // namespace

AbsorbProposal absorbProposal(const GitRepository& repo)
{
    const MovableCommits movable = movableCommits(repo);
    AbsorbProposal proposal{.branch = movable.branch, .base = movable.base, .commits = {}, .subjects = {}, .hunks = {}};
    for (const MovableCommit& commit : movable.commits) {
        // What others have stays as it is.
        if (commit.isPublished) {
            proposal.base = commit.hash;
            proposal.commits.clear();
            proposal.subjects.clear();
            continue;
        }
        proposal.commits.push_back(commit.hash);
        proposal.subjects.push_back(commit.message.substr(0, commit.message.find('\n')));
    }
    if (proposal.commits.empty())
        return proposal;
    for (const std::string& path : changedByLines(repo, proposal.others))
        addHunks(repo, path, proposal);
    return proposal;
}

RewriteOutcome absorbed(const GitRepository& repo, const AbsorbProposal& proposal)
{
    const RewritePlan plan = planOf(proposal);
    requireAsPlanned(repo, plan);
    std::vector<const AbsorbHunk*> all;
    for (const AbsorbHunk& hunk : proposal.hunks) {
        if (!hunk.target.empty())
            all.push_back(&hunk);
    }
    if (all.empty())
        throw GitError("absorb", 1, "Nothing is to be absorbed.", ErrorKind::nothingToDo);
    std::map<std::string, CommitText> texts = readCommits(repo, proposal.commits);
    CommitWriter writer(repo, {}, Signing::asConfigured);
    RewriteOutcome outcome{.result = RewriteOutcome::Result::clean, .marks = {}};
    std::set<std::string> begun; // commits that changes go into, so far
    std::string tip;
    for (const std::string& commit : proposal.commits) {
        begun.insert(commit);
        std::map<std::string, std::vector<const AbsorbHunk*>> files;
        for (const AbsorbHunk* const hunk : all) {
            if (begun.contains(hunk->target))
                files[hunk->path].push_back(hunk);
        }
        if (files.empty())
            continue;
        std::map<std::string, std::string> blobs;
        for (const auto& [path, hunks] : files)
            blobs[path] = storedBlob(repo, OlderFile(repo, commit, path).with(hunks));
        CommitText text = texts.at(commit);
        text.tree = treeWith(repo, text.tree, blobs);
        if (!tip.empty())
            text.parents = {tip};
        tip = writer.write(text);
        outcome.tree = text.tree;
        outcome.rewritten.emplace_back(commit, tip);
    }
    outcome.tip = tip;
    if (outcome.tree != patchedHead(repo, all))
        throw GitError("absorb", 1, "The changes do not fit these commits. Nothing was done.",
                       ErrorKind::changedMeanwhile);
    return outcome;
}

RewriteOutcome withStagedIn(const GitRepository& repo, const RewritePlan& plan, const std::string& commit)
{
    requireAsPlanned(repo, plan);
    const std::string tree = indexContents(repo, gitDirectories(repo).own).tree;
    const CommitText tip = readCommits(repo, {plan.tip()}).at(plan.tip());
    if (tree == tip.tree)
        throw GitError("commit", 1, "Nothing is staged.", ErrorKind::nothingToDo);
    const std::string staged = CommitWriter(repo, {}, Signing::none).writeHelper(tree, {plan.tip()});
    RewritePlan whole = plan;
    whole.commits.push_back(staged);
    whole.steps.push_back({.commit = staged});
    RewriteOutcome outcome = written(repo, squashed(whole, {staged}, commit, RewriteStep::Act::fixUp));
    std::erase_if(outcome.rewritten, [&staged](const auto& pair) { return pair.first == staged; });
    if (outcome.result != RewriteOutcome::Result::clean || outcome.tree != tree)
        throw GitError("commit", 1, "What is staged does not fit that commit, or conflicts with those above it.",
                       ErrorKind::conflicts);
    return outcome;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/records/Autosquash.h"

#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Merging.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/ThrowawayObjects.h"
#include "GitKit/repository/TreeChanges.h"
#include "GitKit/rewrite/CommitText.h"
#include "GitKit/runner/GitError.h"

#include <map>
#include <optional>
#include <set>
#include <utility>

namespace gitkit {

namespace {

using Act = RewriteStep::Act;
using Kind = RewriteMark::Kind;

std::string withLineEnd(std::string message)
{
    if (!message.ends_with('\n'))
        message += '\n';
    return message;
}

/// Returns what `git update-index --index-info` reads to give these files what the newer tree has of them. What goes
/// stands first, because a folder may come in its place.
std::string entriesOf(const GitRepository& repo, const TreePair& trees, const std::vector<std::string>& files,
                      const RunOptions& objects)
{
    const std::string before = trees.from.empty() ? emptyTreeHash(repo) : trees.from;
    const std::string listed = repo.runner().bytes(
        {"diff-tree", "-r", "-z", "--raw", "--no-renames", "--no-abbrev", before, trees.to}, objects);
    const std::set<std::string_view> wanted(files.begin(), files.end());
    std::string gone;
    std::string there;
    NulFields fields(listed);
    while (const auto change = fields.take<2>()) {
        const auto& [facts, path] = *change;
        if (!wanted.contains(path))
            continue;
        // Modes and hashes of both sides, each pair with a blank between: ":100644 100755 HASH HASH M".
        constexpr std::size_t modeStart = 8;
        const std::string_view mode = facts.substr(modeStart, 6);
        const std::string_view hash = facts.substr(facts.find(' ', modeStart + 7) + 1);
        std::string& entries = mode == "000000" ? gone : there;
        entries.append(mode == "000000" ? "0" : mode).append(" ").append(hash.substr(0, hash.find(' ')));
        entries.append("\t").append(path).append(1, '\0');
    }
    return gone + there;
}

/// One walk through a plan.
class Walk {
public:
    Walk(const GitRepository& repo, const RewritePlan& plan, const RunOptions& objects, Signing signing)
        : repo_(repo), plan_(plan), objects_(objects), writer_(repo, objects, signing)
    {
        Hashes hashes = plan.commits;
        for (const std::string& beneath : {plan.base, plan.onto}) {
            if (!beneath.empty())
                hashes.push_back(beneath);
        }
        texts_ = readCommits(repo, hashes);
        tip_ = plan.foundation();
        tree_ = tip_.empty() ? std::string() : texts_.at(tip_).tree;
    }

    RewriteOutcome result()
    {
        RewriteOutcome outcome;
        outcome.result = RewriteOutcome::Result::clean;
        for (const RewriteStep& step : plan_.steps) {
            const bool isOver = outcome.result != RewriteOutcome::Result::clean;
            if (step.act == Act::drop)
                outcome.marks.push_back({.kind = Kind::dropped});
            else
                outcome.marks.push_back(isOver ? RewriteMark() : take(step));
            if (outcome.marks.back().kind == Kind::conflicts)
                outcome.result = RewriteOutcome::Result::conflicts;
        }
        markHeads(outcome);
        if (outcome.result == RewriteOutcome::Result::clean) {
            outcome.tip = tip_;
            outcome.tree = tree_;
            outcome.rewritten = rewritten();
        }
        return outcome;
    }

private:
    /// What is written once the next step is known not to go into it.
    struct Head {
        std::string parent; ///< empty for a root
        CommitText text;
        std::size_t mark = 0; ///< of its step
    };

    RewriteMark take(const RewriteStep& step)
    {
        const std::size_t index = taken_++;
        indices_.push_back(step.commit);
        if ((step.act == Act::squash || step.act == Act::fixUp) && head_)
            return takeIn(step);
        const CommitText& text = texts_.at(step.commit);
        const bool isInPlace = tip_ == parentOf(text);
        if (isInPlace && !step.message && step.act != Act::split) {
            beginHead({tip_, text, index});
            standAt(step.commit, text.tree, {step.commit});
            return {.kind = Kind::unchanged};
        }
        if (step.act == Act::split)
            return takeInTwo(step, text);
        const std::optional<std::string> tree = merged(step.commit, text);
        if (!tree)
            return {.kind = Kind::conflicts, .paths = conflicts_};
        const bool isEmptied = *tree == tree_ && text.tree != treeOf(parentOf(text));
        CommitText made = text;
        if (step.message) {
            made = inUtf8(std::move(made));
            made.message = withLineEnd(*step.message);
        }
        made.tree = *tree;
        const std::string parent = tip_;
        beginHead({parent, made, index});
        standAt(writeHead(), *tree, {step.commit});
        return {.kind = isEmptied ? Kind::emptied : Kind::rewritten};
    }

    /// Makes a commit a part of the one before it.
    RewriteMark takeIn(const RewriteStep& step)
    {
        const CommitText& text = texts_.at(step.commit);
        const std::optional<std::string> tree = merged(step.commit, text);
        if (!tree)
            return {.kind = Kind::conflicts, .paths = conflicts_};
        head_->text.tree = *tree;
        if (step.act == Act::squash) {
            head_->text = inUtf8(std::move(head_->text));
            head_->text.message = joinedMessages(head_->text.message, step.message.value_or(inUtf8(text).message));
        }
        changedHeads_.push_back(head_->mark);
        std::vector<std::string> all = std::move(inHead_);
        all.push_back(step.commit);
        standAt(writeHead(), *tree, std::move(all));
        return {.kind = *tree == headParentTree_ ? Kind::emptied : Kind::rewritten};
    }

    RewriteMark takeInTwo(const RewriteStep& step, const CommitText& text)
    {
        const std::string before = treeOf(parentOf(text));
        const std::string part = partTree(repo_, {before, text.tree}, step.part, objects_);
        std::optional<std::string> first = part;
        if (tree_ != before)
            first = mergedTree(before, part);
        const std::optional<std::string> second = first ? merged(step.commit, text) : std::nullopt;
        if (!second)
            return {.kind = Kind::conflicts, .paths = conflicts_};
        CommitText made = inUtf8(text);
        made.message = withLineEnd(step.partMessage);
        made.tree = *first;
        beginHead({tip_, made, taken_ - 1});
        standAt(writeHead(), *first, {});
        CommitText rest = step.message ? inUtf8(text) : text;
        if (step.message)
            rest.message = withLineEnd(*step.message);
        rest.tree = *second;
        beginHead({tip_, rest, taken_ - 1});
        standAt(writeHead(), *second, {step.commit});
        return {.kind = Kind::rewritten};
    }

    static std::string parentOf(const CommitText& text)
    {
        return text.parents.empty() ? std::string() : text.parents.front();
    }
    std::string treeOf(const std::string& commit) const
    {
        return commit.empty() ? emptyTree() : texts_.at(commit).tree;
    }
    const std::string& emptyTree() const
    {
        if (empty_.empty()) {
            RunOptions options = objects_;
            options.input = std::string();
            empty_ = std::string(
                withoutLineEnd(repo_.runner().bytes({"hash-object", "-t", "tree", "-w", "--stdin"}, options)));
        }
        return empty_;
    }

    void beginHead(Head head)
    {
        head_ = std::move(head);
        headParentTree_ = tree_;
    }

    std::string writeHead()
    {
        head_->text.parents.clear();
        if (!head_->parent.empty())
            head_->text.parents.push_back(head_->parent);
        return writer_.write(head_->text);
    }

    void standAt(std::string commit, std::string tree, std::vector<std::string> all)
    {
        tip_ = std::move(commit);
        tree_ = std::move(tree);
        inHead_ = std::move(all);
        for (const std::string& old : inHead_)
            now_[old] = tip_;
    }

    /// Returns the tree that comes of a commit's change on top of what is there; nullopt where they conflict.
    std::optional<std::string> merged(const std::string& commit, const CommitText& text)
    {
        const std::string parent = parentOf(text);
        const std::string before = treeOf(parent);
        const std::string ours = tree_.empty() ? emptyTree() : tree_;
        if (ours == before)
            return text.tree;
        if (text.tree == before)
            return ours;
        if (parent.empty())
            return mergedTree(before, text.tree);
        return mergedCommits(writer_.writeHelper(ours, {parent}), commit);
    }

    /// The same for a change that no commit has.
    std::optional<std::string> mergedTree(const std::string& before, const std::string& after)
    {
        const std::string base = writer_.writeHelper(before, {});
        const std::string ours = tree_.empty() ? emptyTree() : tree_;
        return mergedCommits(writer_.writeHelper(ours, {base}), writer_.writeHelper(after, {base}));
    }

    std::optional<std::string> mergedCommits(const std::string& ours, const std::string& theirs)
    {
        RunOptions options = objects_;
        options.accepting = {0, 1};
        const GitOutput output = repo_.runner().accepted(
            {"merge-tree", "--write-tree", "-z", "--name-only", "--no-messages", ours, theirs}, options);
        conflicts_ = splitNul(output.stdoutBytes);
        if (conflicts_.empty())
            throw GitError("merge-tree", output.status, "Git could not merge.");
        const std::string tree = conflicts_.front();
        conflicts_.erase(conflicts_.begin());
        return output.status == 0 ? std::optional(tree) : std::nullopt;
    }

    /// A commit that has taken another one in is not what it was.
    void markHeads(RewriteOutcome& outcome) const
    {
        for (const std::size_t head : changedHeads_) {
            for (std::size_t index = 0; index < plan_.steps.size(); ++index) {
                if (plan_.steps[index].commit == indices_[head] && outcome.marks[index].kind == Kind::unchanged)
                    outcome.marks[index].kind = Kind::rewritten;
            }
        }
    }

    std::vector<std::pair<std::string, std::string>> rewritten() const
    {
        std::vector<std::pair<std::string, std::string>> pairs;
        for (const RewriteStep& step : plan_.steps) {
            if (const auto found = now_.find(step.commit); found != now_.end() && found->second != step.commit)
                pairs.emplace_back(*found);
        }
        return pairs;
    }

    const GitRepository& repo_;
    const RewritePlan& plan_;
    RunOptions objects_;
    CommitWriter writer_;
    std::map<std::string, CommitText> texts_;
    std::string tip_;
    std::string tree_; ///< empty while there is none
    std::optional<Head> head_;
    std::string headParentTree_;      ///< of the commit beneath the one that takes others in
    std::vector<std::string> inHead_; ///< commits that the tip consists of
    std::size_t taken_ = 0;
    std::vector<std::string> indices_; ///< commits in the order in which they were taken
    std::vector<std::size_t> changedHeads_;
    std::map<std::string, std::string> now_; ///< what became of each commit
    std::vector<std::string> conflicts_;
    mutable std::string empty_;
};

} // namespace

bool canRehearse(const GitRepository& repo) { return mergesInMemory(repo); }

RewriteOutcome rehearsed(const GitRepository& repo, const RewritePlan& plan)
{
    if (!canRehearse(repo))
        return {.marks = std::vector<RewriteMark>(plan.steps.size())};
    const ThrowawayObjects objects(repo);
    return Walk(repo, plan, objects.options(), Signing::none).result();
}

RewriteOutcome written(const GitRepository& repo, const RewritePlan& plan)
{
    return Walk(repo, plan, {}, Signing::asConfigured).result();
}

std::string partTree(const GitRepository& repo, const TreePair& trees, const CommitPart& part,
                     const RunOptions& objects)
{
    const ScratchIndex index(repo.runner());
    const RunOptions options = index.options(objects);
    if (!trees.from.empty())
        repo.runner().accepted({"read-tree", trees.from}, options);
    RunOptions feeding = options;
    feeding.input = part.patch;
    if (!part.patch.empty())
        repo.runner().accepted({"apply", "--cached", "--whitespace=nowarn", "-"}, feeding);
    feeding.input = part.files.empty() ? std::string() : entriesOf(repo, trees, part.files, objects);
    if (!feeding.input->empty())
        repo.runner().accepted({"update-index", "-z", "--index-info"}, feeding);
    return std::string(withoutLineEnd(repo.runner().bytes({"write-tree"}, options)));
}

} // namespace gitkit

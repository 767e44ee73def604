// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/Text.h"
#include "GitKit/parsers/Fields.h"
#include "GitKit/records/Autosquash.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/repository/Upstream.h"
#include "GitKit/rewrite/CommitWriter.h"
#include "GitKit/rewrite/MovableReading.h"
#include "GitKit/rewrite/Rehearsal.h"
#include "GitKit/rewrite/Rewriting.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "GitKit/undo/HelperRuns.h"
#include "GitKit/undo/RefTransaction.h"

#include <algorithm>
#include <exception>
#include <fstream>
#include <map>
#include <set>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Act = RewriteStep::Act;
using Texts = std::map<std::string, CommitText>;

/// Settings that would change what becomes of the list.
const std::vector<std::string> listPins{"commit.cleanup=verbatim",        "rebase.missingCommitsCheck=ignore",
                                        "rebase.autoSquash=false",        "rebase.autoStash=false",
                                        "rebase.updateRefs=false",        "rebase.rebaseMerges=false",
                                        "rebase.backend=merge",           "rebase.stat=false",
                                        "rebase.abbreviateCommands=false"};

std::string asArgument(const std::string& path)
{
    std::string quoted = "'";
    for (const char sign : path)
        quoted += sign == '\'' ? std::string("'\\''") : std::string(1, sign);
    return quoted + '\'';
}

/// Writes the list that git works through.
class List {
public:
    List(const GitRepository& repo, const RewritePlan& plan, Texts texts)
        : repo_(repo), plan_(plan), texts_(std::move(texts)), writer_(repo, {}, Signing::none)
    {
        if (can(Ability::movesBranchesInRebase)) {
            for (const BranchOnCommit& branch : movableCommits(repo, placeOf(plan)).branches) {
                if (branch.heldBy.empty())
                    branches_[branch.commit].push_back(branch.name);
            }
        }
    }

    /// Returns the list from a step on.
    std::string from(std::size_t first)
    {
        for (std::size_t index = first; index < plan_.steps.size(); ++index) {
            const RewriteStep& step = plan_.steps[index];
            const bool goesIn = step.act == Act::squash || step.act == Act::fixUp;
            if (!goesIn)
                endGroup();
            add(step);
            moveBranches(step.commit);
        }
        endGroup();
        return lines_;
    }

private:
    void add(const RewriteStep& step)
    {
        const CommitText& text = texts_.at(step.commit);
        switch (step.act) {
        case Act::drop:
            return line("drop", step.commit, text);
        case Act::split:
            return addSplit(step, text);
        case Act::edit:
            return addStop(step, text);
        case Act::pick:
            line("pick", step.commit, text);
            last_ = step.commit;
            message_ = inUtf8(text).message;
            if (step.message)
                carryMessage(*step.message, text.tree);
            return;
        case Act::squash:
            message_ = joinedMessages(message_, step.message.value_or(inUtf8(text).message));
            line("fixup", step.commit, text);
            last_ = step.commit;
            return carryMessage(message_, text.tree);
        case Act::fixUp:
            last_ = step.commit;
            return line("fixup", step.commit, text);
        }
    }

    /// Only a commit that has its new words already can be stopped at so that what is staged becomes a part of it.
    void addStop(const RewriteStep& step, const CommitText& text)
    {
        CommitText worded = inUtf8(text);
        if (step.message)
            worded.message = *step.message + (step.message->ends_with('\n') ? "" : "\n");
        last_ = step.message ? writer_.write(worded) : step.commit;
        message_ = worded.message;
        line("edit", last_, worded);
    }

    void addSplit(const RewriteStep& step, const CommitText& text)
    {
        const std::string parent = text.parents.empty() ? std::string() : text.parents.front();
        const std::string before = parent.empty() ? std::string() : readCommits(repo_, {parent}).at(parent).tree;
        CommitText first = inUtf8(text);
        first.message = step.partMessage + (step.partMessage.ends_with('\n') ? "" : "\n");
        first.tree = partTree(repo_, {before, text.tree}, step.part);
        CommitText second = inUtf8(text);
        if (step.message)
            second.message = *step.message + (step.message->ends_with('\n') ? "" : "\n");
        const std::string made = writer_.write(first);
        second.parents = {made};
        line("pick", made, first);
        last_ = writer_.write(second);
        line("pick", last_, second);
        message_ = second.message;
    }

    /// Makes git take the words of an empty commit on top of the one before. A stop or an end of the program does not lose
    /// them.
    void carryMessage(std::string message, const std::string& tree)
    {
        if (!message.ends_with('\n'))
            message += '\n';
        message_ = message;
        if (!can(Ability::combinesMessages)) {
            const fs::path file = gitDirectories(repo_).own / "plovik" / ("message-" + last_);
            fs::create_directories(file.parent_path());
            std::ofstream(file, std::ios::binary) << message;
            lines_ +=
                "exec git commit --amend -q --no-verify --cleanup=verbatim -F " + asArgument(file.string()) + '\n';
            return;
        }
        CommitText carrier = inUtf8(texts_.contains(last_) ? texts_.at(last_) : readCommits(repo_, {last_}).at(last_));
        carrier.tree = tree;
        carrier.parents = {last_};
        carrier.message = message;
        line("fixup -C", writer_.write(carrier), carrier);
    }

    /// Git passes over the subject. Where it stops, the line tells which commit that is.
    void line(const std::string& command, const std::string& commit, const CommitText& text)
    {
        const std::string message = inUtf8(text).message;
        lines_ += command + ' ' + commit + " # " + message.substr(0, message.find_first_of("\r\n")) + '\n';
    }

    void moveBranches(const std::string& commit)
    {
        for (const std::string& branch : branches_[commit])
            waiting_ += "update-ref " + branch + '\n';
    }

    /// Branches move when all that goes into their commit is there.
    void endGroup()
    {
        lines_ += waiting_;
        waiting_.clear();
    }

    const GitRepository& repo_;
    const RewritePlan& plan_;
    Texts texts_;
    CommitWriter writer_;
    std::map<std::string, std::vector<std::string>> branches_;
    std::string lines_;
    std::string waiting_;
    std::string last_;
    std::string message_;
};

/// Returns the files that git writes on the way through a plan.
std::set<std::string> touchedFiles(const GitRepository& repo, const RewritePlan& plan)
{
    std::string input;
    for (const std::string& commit : affectedCommits(plan))
        input += commit + '\n';
    if (!plan.onto.empty() && !plan.base.empty())
        input += plan.onto + ' ' + plan.base + '\n';
    const std::vector<std::string> names = splitNul(repo.runner().bytes(
        {"diff-tree", "--stdin", "--root", "-r", "-z", "--no-renames", "--name-only", "--no-commit-id"},
        {.input = input}));
    return {names.begin(), names.end()};
}

/// Returns whether there are local changes. Throws where they are in files that the plan writes.
bool requireChangesApart(const GitRepository& repo, const RewritePlan& plan)
{
    bool hasChanges = false;
    const std::set<std::string> touched = touchedFiles(repo, plan);
    for (const FileChange& file : repo.status().files) {
        if (file.isUntracked())
            continue;
        hasChanges = true;
        for (const std::string& path : file.allPaths()) {
            if (touched.contains(path))
                throw GitError("rebase", 1, inQuotes(path) + " is changed here and in those commits.",
                               ErrorKind::wouldOverwriteLocalChanges);
        }
    }
    return hasChanges;
}

fs::path writtenList(const fs::path& folder, const std::string& list)
{
    fs::create_directories(folder);
    const fs::path file = folder / "rebase-list";
    if (!(std::ofstream(file, std::ios::binary | std::ios::trunc) << list << std::flush))
        throw GitError("rebase", 1, "The list of commits could not be written.");
    return file;
}

/// Git ends well, too, where the changes that it had put aside do not fit any more.
void requireChangesBack(const GitRepository& repo)
{
    if (operationInProgress(repo, gitDirectories(repo).own))
        return;
    if (!repo.runner().bytes({"ls-files", "--unmerged", "-z"}, helperOptions()).empty())
        throw GitError("rebase", 1,
                       "Your changes conflict with the new history. They are also safe in the stash “autostash”.",
                       ErrorKind::other);
}

/// Moves the branches that an older git leaves where they are.
void moveBranchesAfter(const GitRepository& repo, const RewritePlan& plan, const std::vector<BranchOnCommit>& branches)
{
    if (operationInProgress(repo, gitDirectories(repo).own))
        return;
    Hashes kept;
    std::map<std::string, std::size_t> places;
    for (const RewriteStep& step : plan.steps) {
        const bool isOwn = step.act == Act::pick || step.act == Act::edit;
        if (step.act == Act::split)
            kept.emplace_back();
        if (isOwn || step.act == Act::split)
            kept.push_back(step.commit);
        if (!kept.empty())
            places[step.commit] = kept.size() - 1;
    }
    std::vector<std::string> command{"rev-list", "--reverse", "HEAD"};
    if (!plan.foundation().empty())
        command.push_back('^' + plan.foundation());
    const std::string listed = repo.runner().bytes(command);
    Hashes now;
    Pieces lines(listed, '\n');
    while (const auto line = lines.next())
        now.emplace_back(*line);
    if (now.size() != kept.size())
        return;
    std::vector<RefUpdate> updates;
    for (const BranchOnCommit& branch : branches) {
        const auto place = places.find(branch.commit);
        if (branch.heldBy.empty() && place != places.end() && now[place->second] != branch.commit)
            updates.push_back({branch.name, branch.commit, now[place->second]});
    }
    RefTransaction(repo, "rebase: moved along", updates).commit();
}

/// Git rewrites the commits also where a branch on them was moved by somebody else meanwhile.
void requireArrived(const GitRepository& repo, const RewritePlan& plan, const std::vector<BranchOnCommit>& branches)
{
    if (operationInProgress(repo, gitDirectories(repo).own))
        return;
    const Hashes affected = affectedCommits(plan);
    for (const BranchOnCommit& branch : branches) {
        const bool goes = branch.heldBy.empty() && std::ranges::find(affected, branch.commit) != affected.end();
        if (goes && repo.runner().output({"merge-base", "--is-ancestor", branch.name, "HEAD"}).status == 1)
            throw GitError("rebase", 1,
                           "The commits were rewritten, but " + inQuotes(shortBranch(branch.name)) +
                               " has moved meanwhile and stays where it is.",
                           ErrorKind::changedMeanwhile);
    }
}

} // namespace

bool needsGit(const GitRepository& repo, const RewritePlan& plan)
{
    return countsOf(plan).stops > 0 || !canRehearse(repo);
}

void rewriteByGit(const GitRepository& repo, const RewritePlan& plan)
{
    if (plan.isElsewhere)
        throw GitError("rebase", 1,
                       "The commits of " + inQuotes(shortBranch(plan.branch)) +
                           " conflict. Check it out to resolve that.");
    const fs::path gitDirectory = gitDirectories(repo).own;
    waitForIndex(repo);
    requireAsPlanned(repo, plan);
    const Hashes affected = affectedCommits(plan);
    if (affected.empty())
        return;
    const std::size_t first = plan.commits.size() - affected.size();
    const std::string base = first == 0 ? plan.base : plan.commits[first - 1];
    const bool hasChanges = requireChangesApart(repo, plan);
    const std::vector<BranchOnCommit> branches = movableCommits(repo, placeOf(plan)).branches;
    const fs::path file =
        writtenList(gitDirectory / "plovik", List(repo, plan, readCommits(repo, plan.commits)).from(first));
    std::vector<std::string> command{"rebase", "-i", "--empty=keep"};
    if (hasChanges)
        command.emplace_back("--autostash");
    if (!plan.onto.empty())
        command.insert(command.end(), {"--onto", plan.onto});
    command.push_back(base.empty() ? "--root" : base);
    std::exception_ptr failure;
    try {
        runTelling(repo.runner(), command,
                   {.environment = {{"GIT_SEQUENCE_EDITOR", "cp " + asArgument(file.string())}}, .settings = listPins});
    } catch (const GitError&) {
        if (headBranch(repo) != plan.branch || plan.branch.empty() || headCommit(repo) == plan.tip())
            throw;
        // All commits were rewritten, and HEAD is back on the branch. Git leaves its list behind when it could not move
        // another branch.
        failure = std::current_exception();
        if (operationInProgress(repo, gitDirectory))
            repo.runner().accepted({"rebase", "--quit"});
    }
    requireChangesBack(repo);
    if (!can(Ability::movesBranchesInRebase))
        moveBranchesAfter(repo, plan, branches);
    requireArrived(repo, plan, branches);
    if (failure)
        std::rethrow_exception(failure);
}

} // namespace gitkit

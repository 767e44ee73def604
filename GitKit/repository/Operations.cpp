// SPDX-License-Identifier: GPL-3.0-or-later
// What git stopped in the middle of: going on, going back, and taking one side of a conflict.
//
//   AUTO_MERGE           is the tree that git left in the working tree when it stopped. What differs from it is the
//                        user's work. Older versions and applied patches do not have it; then the file's time decides.
//                        diff.autoRefreshIndex is on here, because git would list files that only look changed. Git
//                        writes the index then, so it gets a copy of it.
//   update-index         has --index-info: one command writes exactly the chosen side's blob, mode or submodule commit,
//                        and removes a file that the side does not have.
//   bisect reset HEAD    is used when git no longer knows the branch that the bisect began on.

#include "GitKit/repository/Operations.h"

#include "GitKit/ConflictMarkers.h"
#include "GitKit/FileReplacement.h"
#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/EditStop.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/OperationReader.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/PreparedMessage.h"
#include "GitKit/repository/ScratchIndex.h"
#include "GitKit/repository/Stages.h"
#include "GitKit/repository/TellingCommand.h"
#include "GitKit/runner/GitError.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <map>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

namespace fs = std::filesystem;
using Kind = OperationInProgress::Kind;

const char* commandOf(Kind kind)
{
    switch (kind) {
    case Kind::merge:
        return "merge";
    case Kind::rebase:
        return "rebase";
    case Kind::applyPatches:
        return "am";
    case Kind::cherryPick:
        return "cherry-pick";
    case Kind::revert:
        return "revert";
    case Kind::bisect:
        break;
    }
    return "bisect";
}

const char* optionOf(OperationStep step)
{
    switch (step) {
    case OperationStep::proceed:
        return "--continue";
    case OperationStep::skip:
        return "--skip";
    case OperationStep::abort:
        return "--abort";
    case OperationStep::forget:
        break;
    }
    return "--quit";
}

std::optional<int> numberAfter(std::string_view text, std::string_view name)
{
    const std::size_t found = text.find(name);
    int number = 0;
    if (found == std::string_view::npos)
        return std::nullopt;
    const char* const start = text.data() + found + name.size();
    const auto [stop, error] = std::from_chars(start, text.data() + text.size(), number);
    return error == std::errc() && number >= 0 ? std::optional(number) : std::nullopt;
}

/// Returns when git wrote down where it stopped; nullopt when it wrote nothing.
std::optional<fs::file_time_type> stopTime(const fs::path& gitDirectory)
{
    constexpr std::array marks{"MERGE_MSG",         "MERGE_HEAD",           "CHERRY_PICK_HEAD",  "REVERT_HEAD",
                               "rebase-merge/done", "rebase-merge/message", "rebase-apply/next", "rebase-apply/patch"};
    std::optional<fs::file_time_type> newest;
    for (const char* mark : marks) {
        std::error_code error;
        const fs::file_time_type time = fs::last_write_time(gitDirectory / mark, error);
        if (!error && (!newest || time > *newest))
            newest = time;
    }
    return newest;
}

/// Returns whether a file may have been edited since `time`; true if `time` is unknown.
bool isEditedSince(const fs::path& file, const std::optional<fs::file_time_type>& time, bool hadMarkers)
{
    std::error_code error;
    if (!isThere(file))
        return false;
    if (!time || (hadMarkers && fs::is_regular_file(fs::symlink_status(file, error)) && !holdsConflictMarkers(file)))
        return true;
    const fs::file_time_type written = fs::last_write_time(file, error);
    return error || written > *time;
}

bool isSubmodule(const std::optional<Stage>& stage) { return stage && stage->isSubmodule(); }

/// `git am` writes down where it stopped before it writes the files, so their times may be this much later.
constexpr std::chrono::seconds writingTime{2};

/// Returns whether aborting also discards changes that are not staged, like a hard reset.
bool abortsHard(Kind kind) { return kind == Kind::rebase || kind == Kind::applyPatches; }

void countBisect(const GitRunner& runner, OperationInProgress::Bisect& bisect)
{
    if (!bisect.isGoodKnown || !bisect.isBadKnown || bisect.found)
        return;
    const GitOutput read = runner.output({"rev-list", "--bisect-vars", "refs/bisect/" + bisect.bad, "--not",
                                          "--glob=refs/bisect/" + bisect.good + "-*", "--"});
    if (read.status == 0)
        bisect.stepsLeft = numberAfter(read.stdoutBytes, "bisect_steps=");
}

void countSequence(const GitRunner& runner, OperationInProgress& operation, const fs::path& gitDirectory)
{
    std::optional<int> done;
    if (const std::optional<std::string> start = sequenceStart(gitDirectory)) {
        const GitOutput read = runner.output({"rev-list", "--count", "--first-parent", *start + "..HEAD", "--"});
        if (read.status == 0)
            done = numberAfter("=" + read.stdoutBytes, "=");
    }
    if (!done) {
        operation.progress.reset();
        return;
    }
    operation.progress->step += *done;
    operation.progress->total += *done;
}

/// Settings with which git commits the prepared message as it was written. Without them, it takes all lines out that
/// begin with "#". Takes git's own comments out of the message itself. Empty where only git can tell these apart.
std::vector<std::string> keepingMessage(const GitRepository& repo, const OperationInProgress& operation)
{
    const fs::path file =
        gitDirectories(repo).own / (operation.kind == Kind::rebase ? "rebase-merge/message" : "MERGE_MSG");
    const std::optional<std::string> prepared = regularFileBytes(file, longestPreparedMessage);
    const std::optional<std::string> written = prepared ? writtenMessage(*prepared) : std::nullopt;
    // Git put the message together with the comment character of the step before.
    if (const auto mark = prepared && !written ? commentCharacter(*prepared) : std::nullopt)
        return {std::string("core.commentChar=") + *mark};
    if (!written || (*written != *prepared && !replaceFile(file, *written)))
        return {};
    // Some commands clean the message whatever the settings are, so the comment character is one that it does not use.
    return {std::string("core.commentChar=") + unusedCommentCharacter(*written), "commit.cleanup=verbatim",
            "commit.status=false"};
}

/// Returns whether continuing is a commit of what is staged, as `git commit` makes it. That one tells whether a hook has refused
/// it and can pass the hooks over; `--continue` can do neither.
bool makesOwnCommit(const GitRepository& repo, const OperationInProgress& operation)
{
    switch (operation.kind) {
    case Kind::merge:
        return true;
    case Kind::cherryPick:
    case Kind::revert:
        return repo.status().stagedCount() > 0;
    default:
        return false;
    }
}

void commitAsPrepared(const GitRepository& repo, const std::vector<std::string>& settings, CommitHooks hooks)
{
    std::vector<std::string> command{"commit"};
    if (hooks == CommitHooks::skip)
        command.emplace_back("--no-verify");
    runTelling(repo.runner(), command, {.settings = settings});
}

/// Returns whether the operation has further commits after the one that was made.
bool goesOn(const GitRepository& repo, const OperationInProgress& operation)
{
    const std::optional<OperationInProgress> left = operationInProgress(repo, gitDirectories(repo).own);
    return left && left->kind == operation.kind;
}

} // namespace

std::vector<std::string> changedSinceStop(const GitRepository& repo, const fs::path& gitDirectory,
                                          const std::vector<FileChange>& files, std::chrono::seconds slack)
{
    if (isThere(gitDirectory / "AUTO_MERGE")) {
        const ScratchIndex copy(repo.runner(), gitDirectory / "index");
        RunOptions options = copy.options();
        options.settings.emplace_back("diff.autoRefreshIndex=true");
        const GitOutput read = repo.runner().output({"diff", "--name-only", "-z", "--no-renames", "--no-ext-diff",
                                                     "--ignore-submodules=dirty", "AUTO_MERGE", "--"},
                                                    options);
        if (read.status == 0)
            return splitNul(read.stdoutBytes);
    }
    std::optional<fs::file_time_type> time = stopTime(gitDirectory);
    if (time)
        *time += slack;
    std::vector<std::string> changed;
    for (const FileChange& file : files) {
        const bool hadMarkers = file.isConflicted && file.index == file.worktree && file.index != 'D';
        if (!file.isUntracked() && !file.isSubmodule && isEditedSince(repo.root() / file.path, time, hadMarkers))
            changed.push_back(file.path);
    }
    return changed;
}

std::optional<OperationInProgress> operationInProgress(const GitRepository& repo, const fs::path& gitDirectory,
                                                       const std::optional<OperationInProgress>& before)
{
    std::optional<OperationInProgress> operation = readOperation(gitDirectory);
    if (!operation)
        return operation;
    if (operation->bisect) {
        OperationInProgress::Bisect& bisect = *operation->bisect;
        if (before && before->bisect && before->bisect->logSize == bisect.logSize)
            bisect.stepsLeft = before->bisect->stepsLeft;
        else
            countBisect(repo.runner(), bisect);
    }
    if (operation->progress && (operation->kind == Kind::cherryPick || operation->kind == Kind::revert))
        countSequence(repo.runner(), *operation, gitDirectory);
    return operation;
}

std::string withoutComments(const GitRepository& repo, const std::string& message)
{
    if (message.empty())
        return message;
    // What a person wrote may begin with "#", too.
    if (std::optional<std::string> written = writtenMessage(message))
        return repo.runner().bytes({"stripspace"}, {.input = std::move(written)});
    RunOptions options{.input = message};
    if (const auto mark = commentCharacter(message))
        options.settings.push_back(std::string("core.commentChar=") + *mark);
    return repo.runner().bytes({"stripspace", "--strip-comments"}, options);
}

void proceed(const GitRepository& repo, const OperationInProgress& operation, OperationStep step, CommitHooks hooks)
{
    waitForIndex(repo);
    if (operation.kind != Kind::bisect) {
        const bool commits = step == OperationStep::proceed && !operation.appliesPatches;
        if (step == OperationStep::proceed)
            requireEditDone(repo, operation);
        const std::vector<std::string> settings =
            commits ? keepingMessage(repo, operation) : std::vector<std::string>();
        if (commits && makesOwnCommit(repo, operation)) {
            commitAsPrepared(repo, settings, hooks);
            if (!goesOn(repo, operation))
                return;
        }
        runTelling(repo.runner(), {commandOf(operation.kind), optionOf(step)}, {.settings = settings});
        return;
    }
    std::vector<std::string> arguments{"bisect", "reset"};
    if (step == OperationStep::forget || operation.isIncomplete)
        arguments.emplace_back("HEAD");
    runTelling(repo.runner(), arguments);
}

void mark(const GitRepository& repo, const OperationInProgress::Bisect& bisect, BisectMark mark)
{
    waitForIndex(repo);
    const std::string& side = mark == BisectMark::good ? bisect.good : bisect.bad;
    runTelling(repo.runner(), {"bisect", mark == BisectMark::skip ? "skip" : side});
}

AbortLoss abortLoss(const GitRepository& repo, const OperationInProgress& operation, const fs::path& gitDirectory)
{
    AbortLoss loss;
    if (operation.kind == Kind::bisect)
        return loss;
    if (operation.progress)
        loss.steps = std::max(operation.progress->step - 1, 0);
    const std::vector<FileChange> files = repo.status().files;
    std::set<std::string> lost;
    for (const auto& [path, stages] : parseStages(repo.runner().bytes({"ls-files", "--resolve-undo", "-z"})))
        lost.insert(path);
    std::ranges::copy(changedSinceStop(repo, gitDirectory, files, writingTime), std::inserter(lost, lost.end()));
    for (const FileChange& file : files) {
        const bool isOnlyInWorkingTree = !file.isConflicted && !file.isUntracked() && file.index == '.';
        if (isOnlyInWorkingTree && abortsHard(operation.kind) && !file.isSubmodule)
            lost.insert(file.path);
        else if (isOnlyInWorkingTree)
            lost.erase(file.path);
    }
    loss.paths.assign(lost.begin(), lost.end());
    return loss;
}

void takeSide(const GitRepository& repo, const std::vector<std::string>& paths, ConflictSide side,
              const fs::path& gitDirectory, const Trash& trash)
{
    const std::map<std::string, Stages> conflicts = parseStages(repo.runner().bytes({"ls-files", "--unmerged", "-z"}));
    const std::vector<FileChange> files = repo.status().files;
    const std::vector<std::string> edited = changedSinceStop(repo, gitDirectory, files, {});
    const std::set<std::string> changed(edited.begin(), edited.end());
    const std::size_t wanted = side == ConflictSide::ours ? 2 : 3;
    std::vector<std::string> written;
    std::string entries;
    std::error_code ignored;
    for (const std::string& path : paths) {
        const auto found = conflicts.find(path);
        if (found == conflicts.end())
            continue;
        const Stages& stages = found->second;
        const std::optional<Stage>& taken = stages[wanted];
        const bool hasFolder = std::ranges::any_of(stages, isSubmodule);
        // Git would remove a folder that stands in the file's place, with everything in it.
        const bool isInTheWay = fs::is_directory(fs::symlink_status(repo.root() / path, ignored));
        if (!hasFolder && isThere(repo.root() / path) && (!taken || changed.contains(path) || isInTheWay)) {
            if (!trash)
                throw GitError("checkout", 1, inQuotes(path) + " cannot be moved to the Trash.");
            trash(repo.root() / path);
        }
        if (taken && !isSubmodule(taken))
            written.push_back(path);
        entries += taken ? taken->mode + ' ' + taken->hash + '\t' + path + '\0' : absentEntry(stages, path);
    }
    if (entries.empty())
        return;
    runOnExactPaths(repo.runner(), {"checkout-index", "-f", "-q", "-z", "--stage=" + std::to_string(wanted), "--stdin"},
                    written);
    repo.runner().accepted({"update-index", "-z", "--index-info"}, {.input = std::move(entries), .environment = {}});
    // Without the files' times in the index, git takes the files for changed and refuses to abort.
    repo.runner().accepted({"update-index", "-q", "--refresh"}, {.accepting = {0, 1}, .environment = {}});
}

} // namespace gitkit

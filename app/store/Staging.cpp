// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/Staging.h"

#include "GitKit/PartialPatch.h"
#include "GitKit/repository/Discard.h"
#include "GitKit/repository/DiscardExtent.h"
#include "GitKit/repository/FileStamps.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/PartialDiscard.h"
#include "app/store/Changes.h"
#include "app/store/DiscardQuestion.h"
#include "app/store/Discards.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"
#include "app/store/readers/ConflictMarkers.h"
#include "app/store/readers/CurrentFiles.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

using gitkit::FileChange;
using gitkit::GitRepository;
using gitkit::StageState;
using Files = Staging::Files;

namespace {

/// Whether the index has the only copy: the file is gone, and HEAD has another or none.
bool isOnlyStaged(const FileChange& file)
{
    return file.hasStaged() && file.worktree == 'D' && file.index != 'D' && !file.isConflicted && !file.isSubmodule;
}

/// Returns a changed file that git knows.
FileChange fileNamed(const std::string& path)
{
    FileChange file;
    file.path = path;
    file.worktree = 'M';
    return file;
}

bool isNew(const FileChange& file) { return file.index == '?' || file.index == 'A'; }

} // namespace

Staging::Staging(const GitAccess& git, WindowState& window, Snapshot& snapshot, Changes& changes, Discards& discards,
                 gitkit::Trash trash)
    : git_(git), window_(window), snapshot_(snapshot), changes_(changes), discards_(discards), trash_(std::move(trash))
{
    snapshot_.follow({.beforeStatus = [this] { endedBeforeRead_ = changes_.ended(); },
                      .afterStatus = [this] { forgetShownStaging(); }});
    slow_ = changes_.running.addNotifier([this] {
        // What takes so long that it is shown as running is not shown as done.
        if (changes_.isRunning({Verb::stage, Verb::unstage}))
            dropShownStaging();
    });
}

Files Staging::selectedFiles() const
{
    const Files& all = snapshot_.status.value().files;
    std::vector<std::size_t> places;
    for (const std::string& path : window_.selectedPaths.value()) {
        for (auto [place, end] = all.placesOf(path); place < end; ++place)
            places.push_back(place);
    }
    if (places.size() == all.size())
        return all;
    std::ranges::sort(places);
    Files::List selected;
    selected.reserve(places.size());
    for (const std::size_t place : places)
        selected.push_back(all[place]);
    return selected;
}

StageState Staging::shownStageState(const FileChange& file) const
{
    const auto underWay = shownStaging_.find(file.path);
    return underWay == shownStaging_.end() ? stateBeneath(file) : underWay->second;
}

/// Returns the state that is shown of a file unless it has one of its own.
StageState Staging::stateBeneath(const FileChange& file) const
{
    return shownOfAll_ && shownOfAll_->files.find(file.path) ? shownOfAll_->state : file.stageState();
}

Staging::StageCounts Staging::shownCounts() const
{
    const Files& files = snapshot_.status.value().files;
    StageCounts counts{files.stagedCount(), files.fullyStagedCount()};
    const auto count = [&counts](StageState state, std::ptrdiff_t times) {
        counts.touched += state == StageState::none ? 0 : times;
        counts.whole += state == StageState::full ? times : 0;
    };
    if (shownOfAll_ && shownOfAll_->files.isSameList(files)) {
        counts = {};
        count(shownOfAll_->state, std::ssize(files.list()));
    } else if (shownOfAll_) {
        counts = {};
        for (const FileChange& file : files)
            count(stateBeneath(file), 1);
    }
    for (const auto& [path, state] : shownStaging_) {
        for (auto [place, end] = files.placesOf(path); place < end; ++place) {
            count(stateBeneath(files[place]), -1);
            count(state, 1);
        }
    }
    return counts;
}

void Staging::showStaging(const Files& files, StageState state)
{
    if (files.isSameList(snapshot_.status.value().files)) {
        shownStaging_.clear();
        shownOfAll_ = ShownOfAll{files, state};
    } else {
        for (const FileChange& file : files)
            shownStaging_[file.path] = state;
    }
    stagingGeneration = stagingGeneration.value() + 1;
}

void Staging::dropShownStaging()
{
    if (!showsStaging())
        return;
    shownStaging_.clear();
    shownOfAll_.reset();
    stagingGeneration = stagingGeneration.value() + 1;
}

/// Called after each status read. A read that began before a change ended may not show its result, so the next read is
/// awaited, which every change asks for.
void Staging::forgetShownStaging()
{
    if (endedBeforeRead_ == changes_.ended() && !changes_.hasUntitled())
        dropShownStaging();
}

/// Returns whether the listed files may not be as they are shown once a change begins, so that their states must be read
/// again: other changes are under way, or a question is asked first.
bool Staging::isListOld() const { return changes_.isTurnTaken() || showsStaging() || changes_.asksFirst(Verb::stage); }

void Staging::stage(const Files& files)
{
    stageChecked(files, [files, isOld = isListOld()](const GitRepository& repo) {
        repo.stage(isOld ? currentFiles(repo, files) : files.list());
    });
}

void Staging::stageAll()
{
    const Files& all = snapshot_.status.value().files;
    stageChecked(all, [all, isOld = isListOld()](const GitRepository& repo) {
        if (isOld)
            requireNoNewConflicts(repo, all);
        repo.stageAll();
    });
}

void Staging::stageChecked(const Files& files, GitAccess::Operation operation)
{
    if (!files.conflicted().empty())
        launch(stagingAfterMarkerCheck(files, std::move(operation)));
    else
        stageNow(files, std::move(operation));
}

void Staging::stageNow(const Files& files, GitAccess::Operation operation)
{
    changeIndex(files, {.verb = Verb::stage,
                        .operation = std::move(operation),
                        .undo = undoable::stage(files),
                        .begins = [this, files] { showStaging(files, StageState::full); }});
}

/// Runs a change that gives the index other entries for `files`. What only the index had is kept, so that Undo brings it
/// back.
void Staging::changeIndex(const Files& files, Change change)
{
    std::vector<FileChange> onlyStaged;
    std::ranges::copy_if(files, std::back_inserter(onlyStaged), isOnlyStaged);
    if (onlyStaged.empty())
        changes_.run(std::move(change));
    else
        discards_.run(std::move(change), onlyStaged);
}

QCoro::Task<> Staging::stagingAfterMarkerCheck(Files files, GitAccess::Operation operation)
{
    // The check takes a moment and the question longer, in which another change may have begun.
    const auto stageAfterwards = [this, files, operation = std::move(operation)] {
        if (!isListOld()) {
            stageNow(files, operation);
            return;
        }
        stageNow(files, [files, operation](const GitRepository& repo) {
            requireNoNewConflicts(repo, files);
            operation(repo);
        });
    };
    const std::vector<std::string> marked = co_await git_.read(filesWithConflictMarkers, files);
    if (marked.empty()) {
        stageAfterwards();
        co_return;
    }
    Confirmation question;
    question.title = marked.size() == 1
                         ? tr("%1 still contains conflict markers").arg(inQuotes(marked.front()))
                         : tr("%Ln file(s) still contain conflict markers", nullptr, static_cast<int>(marked.size()));
    question.message = tr("Staging marks the conflict as resolved, and the markers would be committed.");
    question.actionTitle = tr("Stage Anyway");
    question.action = stageAfterwards;
    window_.ask(std::move(question));
}

void Staging::unstage(const Files& files)
{
    const bool isOld = isListOld();
    changeIndex(files, {.verb = Verb::unstage,
                        .operation =
                            [files, isOld](const GitRepository& repo) {
                                repo.unstage(isOld ? currentFiles(repo, files) : files.list());
                            },
                        .undo = undoable::unstage(files),
                        .begins = [this, files] { showStaging(files, StageState::none); }});
}

void Staging::unstageAll()
{
    const Files& all = snapshot_.status.value().files;
    if (!snapshot_.status.value().hasCommits()) {
        // Unstaging everything resets to the last commit, and there is none.
        if (all.stagedCount() > 0)
            unstage(all);
        return;
    }
    const bool isOld = isListOld();
    changeIndex(all, {.verb = Verb::unstage,
                      .operation =
                          [all, isOld](const GitRepository& repo) {
                              if (isOld)
                                  requireNoNewConflicts(repo, all);
                              repo.unstageAll();
                          },
                      .undo = undoable::unstage(all),
                      .begins = [this, all] { showStaging(all, StageState::none); }});
}

void Staging::applyToIndex(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                           gitkit::PatchDirection direction)
{
    const auto change = gitkit::partialChange(path, diff, lines, direction);
    if (!change)
        return;
    changes_.run({.verb = direction == gitkit::PatchDirection::forward ? Verb::stage : Verb::unstage,
                  .operation = [change = *change](const GitRepository& repo) { repo.applyToIndex(change); },
                  .undo = direction == gitkit::PatchDirection::forward ? undoable::stage({fileNamed(path)})
                                                                       : undoable::unstage({fileNamed(path)}),
                  .isFromDiff = true});
}

void Staging::toggleStage(const FileChange& file)
{
    const Files files = window_.selectedPaths.value().contains(file.path) ? selectedFiles() : Files{file};
    if (shownStageState(file) != StageState::full)
        stage(files);
    else
        unstage(files);
}

void Staging::toggleStageOfSelection()
{
    const Files files = selectedFiles();
    if (files.empty())
        return;
    const auto isStaged = [this](const FileChange& file) { return shownStageState(file) == StageState::full; };
    const bool isAll = files.isSameList(snapshot_.status.value().files);
    if (isAll ? shownCounts().whole == std::ssize(files.list()) : std::ranges::all_of(files, isStaged))
        unstage(files);
    else
        stage(files);
}

void Staging::takeSide(const Files& files, gitkit::ConflictSide side)
{
    std::vector<std::string> paths;
    for (const std::uint32_t place : files.conflicted())
        paths.push_back(files[place].path);
    if (paths.empty())
        return;
    changes_.run({.verb = Verb::takeSide,
                  .operation =
                      [paths, side, directory = snapshot_.gitDirectory(), trash = trash_](const GitRepository& repo) {
                          gitkit::takeSide(repo, paths, side, directory ? *directory : gitkit::gitDirectories(repo).own,
                                           trash);
                      },
                  .undo = undoable::takeSide(paths)});
}

QString Staging::discardTitle(const Files& files)
{
    if (!std::ranges::all_of(files, isNew))
        return tr("Discard Changes…");
    return files.size() == 1 ? tr("Delete File…") : tr("Delete Files…");
}

QString Staging::reasonAgainstDiscard(const Files& files)
{
    const auto submodule = std::ranges::find_if(files, &FileChange::isSubmodule);
    return submodule == files.end()
               ? QString()
               : tr("%1 is a submodule: its changes are discarded in its own window.").arg(inQuotes(submodule->path));
}

void Staging::confirmDiscard(const Files& files)
{
    if (files.empty())
        return;
    if (const QString reason = reasonAgainstDiscard(files); !reason.isEmpty())
        window_.tell(reason);
    else
        launch(askingToDiscard(files));
}

QCoro::Task<> Staging::askingToDiscard(Files files)
{
    std::optional<gitkit::DiscardExtent> counts;
    std::vector<gitkit::FileStamp> stamps;
    try {
        stamps = co_await git_.read(&gitkit::fileStamps, files);
        counts = co_await git_.read(&gitkit::discardExtent, files);
    } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): the question says less; all is kept
    }
    Confirmation question = discardQuestion(files, counts);
    question.action = [this, files, stamps] { discard(files, stamps, Discarded::all); };
    for (Way& unstagedOnly : question.choices)
        unstagedOnly.action = [this, files, stamps] { discard(files, stamps, Discarded::unstaged); };
    window_.ask(std::move(question));
}

void Staging::discardUntracked(const Files& files)
{
    if (!files.empty())
        launch(discardingUntracked(files));
}

QCoro::Task<> Staging::discardingUntracked(Files files)
{
    try {
        discard(files, co_await git_.read(&gitkit::fileStamps, files), Discarded::all);
    } catch (const std::exception& failure) {
        window_.report(failureOf(failure));
    }
}

void Staging::discard(const Files& files, const std::vector<gitkit::FileStamp>& stamps, Discarded what)
{
    discards_.run({.verb = Verb::discard,
                   .operation =
                       [files, what, trash = trash_](const GitRepository& repo) {
                           if (what == Discarded::unstaged)
                               gitkit::discardUnstaged(repo, files, trash);
                           else
                               repo.discard(files, trash);
                       },
                   .undo = undoable::discard(files)},
                  files, [files, stamps, isOld = isListOld()](const GitRepository& repo) {
                      if (isOld)
                          requireNoNewConflicts(repo, files);
                      gitkit::requireUnchanged(repo, stamps);
                  });
}

void Staging::confirmDiscardPart(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                                 DiscardedPart part)
{
    auto change = gitkit::partialChange(path, diff, lines, gitkit::PatchDirection::reverse);
    if (!change)
        return;
    Confirmation question;
    question.title =
        (part == DiscardedPart::hunk ? tr("Discard this hunk of %1?") : tr("Discard the selected lines of %1?"))
            .arg(inQuotes(path));
    question.message = tr("Undo brings it back.");
    question.actionTitle = tr("Discard");
    question.action = [this, change = std::move(*change)] { discardPart(change); };
    question.kind = u"discardLines"_s;
    window_.ask(std::move(question));
}

void Staging::stashPart(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines)
{
    if (auto change = gitkit::partialChange(path, diff, lines, gitkit::PatchDirection::reverse))
        window_.showSheet(StashSheet{.files = {}, .lines = std::move(change)});
}

void Staging::discardPart(const gitkit::PartialChange& change)
{
    const FileChange file = fileNamed(change.path);
    discards_.run({.verb = Verb::discard,
                   .operation = [change](const GitRepository& repo) { gitkit::discardPart(repo, change); },
                   .undo = undoable::discard({file}),
                   .isFromDiff = true},
                  {file});
}

} // namespace plovik

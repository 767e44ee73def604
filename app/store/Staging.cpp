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
#include "app/store/WindowState.h"
#include "app/store/readers/ConflictMarkers.h"
#include "app/store/readers/CurrentFiles.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

namespace plovik {

using gitkit::FileChange;
using gitkit::GitRepository;
using gitkit::StageState;
using Files = Staging::Files;

namespace {

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
        if (changes_.isRunning({Verb::stage, Verb::unstage}) && !shownStaging_.empty()) {
            shownStaging_.clear();
            stagingGeneration = stagingGeneration.value() + 1;
        }
    });
}

Files Staging::selectedFiles() const
{
    Files selected;
    std::ranges::copy_if(snapshot_.status.value().files, std::back_inserter(selected),
                         [this](const FileChange& file) { return window_.selectedPaths.value().contains(file.path); });
    return selected;
}

StageState Staging::shownStageState(const FileChange& file) const
{
    const auto underWay = shownStaging_.find(file.path);
    return underWay == shownStaging_.end() ? file.stageState() : underWay->second;
}

void Staging::showStaging(const Files& files, StageState state)
{
    for (const FileChange& file : files)
        shownStaging_[file.path] = state;
    stagingGeneration = stagingGeneration.value() + 1;
}

/// Called after each status read. A read that began before a change ended may not show its result, so the next read is
/// awaited, which every change asks for.
void Staging::forgetShownStaging()
{
    if (endedBeforeRead_ != changes_.ended() || changes_.hasUntitled() || shownStaging_.empty())
        return;
    shownStaging_.clear();
    stagingGeneration = stagingGeneration.value() + 1;
}

/// Returns whether the listed files may not be as they are shown once a change begins, so that their states must be read
/// again: other changes are under way, or a question is asked first.
bool Staging::isListOld() const
{
    return changes_.isTurnTaken() || !shownStaging_.empty() || changes_.asksFirst(Verb::stage);
}

void Staging::stage(const Files& files)
{
    stageChecked(files, [files, isOld = isListOld()](const GitRepository& repo) {
        repo.stage(isOld ? currentFiles(repo, files) : files);
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
    if (std::ranges::any_of(files, &FileChange::isConflicted))
        launch(stagingAfterMarkerCheck(files, std::move(operation)));
    else
        stageNow(files, std::move(operation));
}

void Staging::stageNow(const Files& files, GitAccess::Operation operation)
{
    changes_.run({.verb = Verb::stage, .operation = std::move(operation), .begins = [this, files] {
                      showStaging(files, StageState::full);
                  }});
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
                         : tr("%n file(s) still contain conflict markers", nullptr, static_cast<int>(marked.size()));
    question.message = tr("Staging marks the conflict as resolved, and the markers would be committed.");
    question.actionTitle = tr("Stage Anyway");
    question.action = stageAfterwards;
    window_.ask(std::move(question));
}

void Staging::unstage(const Files& files)
{
    const bool isOld = isListOld();
    changes_.run(
        {.verb = Verb::unstage,
         .operation = [files,
                       isOld](const GitRepository& repo) { repo.unstage(isOld ? currentFiles(repo, files) : files); },
         .begins = [this, files] { showStaging(files, StageState::none); }});
}

void Staging::unstageAll()
{
    Files staged;
    std::ranges::copy_if(snapshot_.status.value().files, std::back_inserter(staged),
                         [](const FileChange& file) { return file.index != '?' && file.index != '.'; });
    if (!snapshot_.status.value().hasCommits()) {
        // Unstaging everything resets to the last commit, and there is none.
        if (!staged.empty())
            unstage(staged);
        return;
    }
    const bool isOld = isListOld();
    changes_.run({.verb = Verb::unstage,
                  .operation =
                      [staged, isOld](const GitRepository& repo) {
                          if (isOld)
                              requireNoNewConflicts(repo, staged);
                          repo.unstageAll();
                      },
                  .begins = [this, staged] { showStaging(staged, StageState::none); }});
}

void Staging::applyToIndex(const std::string& path, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                           gitkit::PatchDirection direction)
{
    const auto change = gitkit::partialChange(path, diff, lines, direction);
    if (!change)
        return;
    changes_.run({.verb = direction == gitkit::PatchDirection::forward ? Verb::stage : Verb::unstage,
                  .operation = [change = *change](const GitRepository& repo) { repo.applyToIndex(change); },
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
    if (std::ranges::all_of(files, isStaged))
        unstage(files);
    else
        stage(files);
}

void Staging::takeSide(const Files& files, gitkit::ConflictSide side)
{
    std::vector<std::string> paths;
    for (const FileChange& file : files) {
        if (file.isConflicted)
            paths.push_back(file.path);
    }
    if (paths.empty())
        return;
    changes_.run(
        {.verb = Verb::takeSide,
         .operation = [paths, side, directory = snapshot_.gitDirectory(), trash = trash_](const GitRepository& repo) {
             gitkit::takeSide(repo, paths, side, directory ? *directory : gitkit::gitDirectories(repo).own, trash);
         }});
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
    } catch (const std::exception&) {
        // The question says less, and what is discarded is kept all the same.
    }
    Confirmation question = discardQuestion(files, counts);
    question.action = [this, files, stamps] { discard(files, stamps, Discarded::all); };
    if (!question.alternativeTitle.isEmpty())
        question.alternative = [this, files, stamps] { discard(files, stamps, Discarded::unstaged); };
    window_.ask(std::move(question));
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
                       }},
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
    window_.ask(std::move(question));
}

void Staging::discardPart(const gitkit::PartialChange& change)
{
    FileChange file;
    file.path = change.path;
    file.worktree = 'M';
    discards_.run({.verb = Verb::discard,
                   .operation = [change](const GitRepository& repo) { gitkit::discardPart(repo, change); },
                   .isFromDiff = true},
                  {file});
}

} // namespace plovik

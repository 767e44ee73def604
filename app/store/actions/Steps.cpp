// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Steps.h"

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/StepFiles.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/Snapshot.h"
#include "app/store/Undo.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <filesystem>
#include <optional>
#include <utility>

namespace plovik::actions {

using gitkit::GitRepository;
using gitkit::UndoStep;

namespace {

struct StepTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Undo)
};

using Folder = std::optional<std::filesystem::path>;

std::filesystem::path directoryOf(const GitRepository& repo, const Folder& known)
{
    return known ? *known : gitkit::gitDirectories(repo).own;
}

} // namespace

void confirmRestoreFiles(Actors actors, const UndoStep& step)
{
    Confirmation question;
    question.title = StepTexts::tr("Restore the files from before %1?").arg(inQuotes(step.title));
    question.message =
        StepTexts::tr("The files that it has changed become what they were before. Branches and what is staged stay.");
    question.actionTitle = StepTexts::tr("Restore");
    question.risk = Confirmation::Risk::none;
    question.action = [actors, step] {
        Undoable undo{.title = StepTexts::tr("Restored Files"),
                      .done = StepTexts::tr("Restored the files from before %1.").arg(inQuotes(step.title)),
                      .scope = {.kind = "restore"},
                      .takesWork = true};
        undo.complete = [step](const GitRepository& repo, gitkit::UndoScope& scope) {
            scope.overwrites = gitkit::filesOfStep(repo, step);
        };
        actors.changes.run({.verb = Verb::undo,
                            .title = StepTexts::tr("Restoring files…"),
                            .operation =
                                [step, known = actors.snapshot.gitDirectory()](const GitRepository& repo) {
                                    gitkit::restoreFiles(repo, directoryOf(repo, known), step);
                                },
                            .undo = std::move(undo)});
    };
    actors.window.ask(std::move(question));
}

void newBranchBefore(Actors actors, const UndoStep& step)
{
    if (!step.before.head.hash.empty())
        actors.window.showSheet(NewBranchSheet{step.before.head.hash});
}

void confirmForget(Actors actors, Undo& undo, const UndoStep& step)
{
    Confirmation question;
    question.title = StepTexts::tr("Forget %1?").arg(inQuotes(step.title));
    question.message = StepTexts::tr("What is kept of it is removed, and it can no longer be undone.");
    question.actionTitle = StepTexts::tr("Forget");
    question.action = [actors, &undo, step] {
        actors.changes.run(
            {.verb = Verb::undo,
             .operation = [step, known = actors.snapshot.gitDirectory()](
                              const GitRepository& repo) { gitkit::forgetStep(repo, directoryOf(repo, known), step); },
             .succeeded = [&undo, id = step.id] { undo.forgotten(id); }});
    };
    actors.window.ask(std::move(question));
}

} // namespace plovik::actions

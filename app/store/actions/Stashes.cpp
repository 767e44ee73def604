// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Stashes.h"

#include "GitKit/repository/GitRepository.h"
#include "GitKit/undo/PartialStash.h"
#include "app/store/Changes.h"
#include "app/store/Conflicts.h"
#include "app/store/ShownText.h"
#include "app/store/Undoables.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <utility>

using namespace Qt::StringLiterals;

namespace plovik::actions {

using gitkit::GitRepository;

namespace {

struct StashTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Stashes)
};

} // namespace

void stashSave(Actors actors, const QString& message, gitkit::UntrackedFiles untracked)
{
    actors.changes.run({.verb = Verb::saveStash,
                        .title = StashTexts::tr("Stashing…"),
                        .operation = [text = message.toStdString(),
                                      untracked](const GitRepository& repo) { repo.stashSave(text, untracked); },
                        .undo = undoable::saveStash(message.toStdString(), untracked)});
}

void stashFiles(Actors actors, const QString& message, const std::vector<gitkit::FileChange>& files)
{
    actors.changes.run({.verb = Verb::saveStash,
                        .title = StashTexts::tr("Stashing…"),
                        .operation = [text = message.toStdString(),
                                      files](const GitRepository& repo) { gitkit::stashFiles(repo, files, text); },
                        .undo = undoable::stashFiles(message.toStdString(), files)});
}

void stashStaged(Actors actors, const QString& message)
{
    actors.changes.run(
        {.verb = Verb::saveStash,
         .title = StashTexts::tr("Stashing…"),
         .operation = [text = message.toStdString()](const GitRepository& repo) { gitkit::stashStaged(repo, text); },
         .undo = undoable::stashStaged(message.toStdString())});
}

void stashLines(Actors actors, const QString& message, const gitkit::PartialChange& change)
{
    actors.changes.run(
        {.verb = Verb::saveStash,
         .title = StashTexts::tr("Stashing…"),
         .operation = [text = message.toStdString(),
                       change](const GitRepository& repo) { gitkit::stashLines(repo, change, text); },
         .undo = undoable::stashFiles(message.toStdString(), {{.path = change.path, .originalPath = {}}}),
         .isFromDiff = true});
}

void branchFromStash(Actors actors, const std::string& name, const gitkit::Stash& stash)
{
    actors.changes.run({.verb = Verb::createBranch,
                        .title = StashTexts::tr("Creating branch…"),
                        .operation =
                            [name, stash](const GitRepository& repo) {
                                repo.createBranch(name, gitkit::stashBase(repo, stash.hash),
                                                  gitkit::AfterCreating::checkOut);
                                repo.stashApply(stash, gitkit::StashUse::pop);
                            },
                        .undo = undoable::branchFromStash(name, stash),
                        .begins = [&conflicts = actors.conflicts, hash = stash.hash] { conflicts.willApply(hash); }});
}

void stashApply(Actors actors, const gitkit::Stash& stash, gitkit::StashUse use)
{
    const bool pops = use == gitkit::StashUse::pop;
    actors.changes.run({.verb = Verb::applyStash,
                        .title = pops ? StashTexts::tr("Popping stash…") : StashTexts::tr("Applying stash…"),
                        .operation = [stash, use](const GitRepository& repo) { repo.stashApply(stash, use); },
                        .undo = undoable::applyStash(stash, use),
                        .begins = [&conflicts = actors.conflicts, hash = stash.hash] { conflicts.willApply(hash); }});
}

void confirmDrop(Actors actors, const gitkit::Stash& stash)
{
    Confirmation question;
    question.title = StashTexts::tr("Drop %1?").arg(shownText(stash.ref));
    question.message = StashTexts::tr("%1 is deleted and cannot easily be recovered.").arg(inQuotes(stash.message));
    question.actionTitle = StashTexts::tr("Drop");
    question.action = [&changes = actors.changes, stash] {
        changes.run({.verb = Verb::dropStash,
                     .title = StashTexts::tr("Dropping stash…"),
                     .operation = [stash](const GitRepository& repo) { repo.stashDrop(stash); },
                     .undo = undoable::dropStash(stash)});
    };
    question.kind = u"dropStash"_s;
    actors.window.ask(std::move(question));
}

} // namespace plovik::actions

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Stashes.h"

#include "GitKit/repository/GitRepository.h"
#include "app/store/Changes.h"
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

void stashApply(Actors actors, const gitkit::Stash& stash, gitkit::StashUse use)
{
    const bool pops = use == gitkit::StashUse::pop;
    actors.changes.run({.verb = Verb::applyStash,
                        .title = pops ? StashTexts::tr("Popping stash…") : StashTexts::tr("Applying stash…"),
                        .operation = [stash, use](const GitRepository& repo) { repo.stashApply(stash, use); },
                        .undo = undoable::applyStash(stash, use)});
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

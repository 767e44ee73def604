// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/actions/Stashes.h"

#include "GitKit/repository/GitRepository.h"
#include "app/store/Changes.h"
#include "app/store/ShownText.h"
#include "app/store/WindowState.h"

#include <QCoreApplication>

#include <utility>

namespace plovik::actions {

using gitkit::GitRepository;

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Stashes)
};

} // namespace

void stashSave(Actors actors, const QString& message, gitkit::UntrackedFiles untracked)
{
    actors.changes.run({.verb = Verb::saveStash,
                        .title = Texts::tr("Stashing…"),
                        .operation = [text = message.toStdString(), untracked](const GitRepository& repo) {
                            repo.stashSave(text, untracked);
                        }});
}

void stashApply(Actors actors, const gitkit::Stash& stash, gitkit::StashUse use)
{
    const bool pops = use == gitkit::StashUse::pop;
    actors.changes.run({.verb = Verb::applyStash,
                        .title = pops ? Texts::tr("Popping stash…") : Texts::tr("Applying stash…"),
                        .operation = [stash, use](const GitRepository& repo) { repo.stashApply(stash, use); }});
}

void confirmDrop(Actors actors, const gitkit::Stash& stash)
{
    Confirmation question;
    question.title = Texts::tr("Drop %1?").arg(shownText(stash.ref));
    question.message = Texts::tr("%1 is deleted and cannot easily be recovered.").arg(inQuotes(stash.message));
    question.actionTitle = Texts::tr("Drop");
    question.action = [&changes = actors.changes, stash] {
        changes.run({.verb = Verb::dropStash,
                     .title = Texts::tr("Dropping stash…"),
                     .operation = [stash](const GitRepository& repo) { repo.stashDrop(stash); }});
    };
    actors.window.ask(std::move(question));
}

} // namespace plovik::actions

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/CommitMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

void addCopies(QMenu& menu, const gitkit::Commit& commit)
{
    const auto addCopy = [&menu](const QString& title, const QString& text) {
        menu.addAction(title, [text] { QGuiApplication::clipboard()->setText(text); });
    };
    addCopy(u"Copy Hash"_s, shownText(commit.hash));
    addCopy(u"Copy Subject"_s, shownText(commit.subject));
}

void confirmRevert(RepositoryStore& store, const gitkit::Commit& commit)
{
    Confirmation question;
    question.title = u"Revert %1?"_s.arg(shownText(commit.shortHash()));
    question.message = u"A new commit takes the changes of “%1” back."_s.arg(shownText(commit.subject));
    question.actionTitle = u"Revert"_s;
    question.risk = Confirmation::Risk::none;
    question.action = [&store, hash = commit.hash] { actions::revert(store.actors(), hash); };
    store.window().ask(std::move(question));
}

/// What changes the repository; disabled while an action runs, since the store would drop it.
void addActions(QMenu& menu, RepositoryStore& store, const gitkit::Commit& commit)
{
    const auto add = [&menu, isIdle = !store.changes().activity.value()](const QString& title, auto action) {
        menu.addAction(title, &menu, std::move(action))->setEnabled(isIdle);
    };
    const std::string& hash = commit.hash;
    add(u"Check Out Commit"_s, [&store, hash] { actions::checkoutCommit(store.actors(), hash); });
    add(u"New Branch Here…"_s, [&store, hash] { store.window().showSheet(NewBranchSheet{hash}); });
    add(u"New Tag Here…"_s, [&store, hash] { store.window().showSheet(NewTagSheet{hash}); });
    menu.addSeparator();
    add(u"Cherry-Pick"_s, [&store, hash] { actions::cherryPick(store.actors(), hash); });
    add(u"Revert…"_s, [&store, commit] { confirmRevert(store, commit); });
    menu.addSeparator();
}

} // namespace

QMenu* makeCommitMenu(RepositoryStore& store, const gitkit::Commit& commit, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    addActions(*menu, store, commit);
    addCopies(*menu, commit);
    return menu;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/CommitMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Picks.h"
#include "app/store/actions/Refs.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/Foretelling.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/compare/CompareMenu.h"
#include "app/ui/history/PlanMenu.h"
#include "app/ui/history/RowText.h"
#include "app/ui/patches/PatchEntries.h"
#include "app/ui/web/WebLinkEntries.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

namespace plovik {

namespace {

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommitMenu)
};

void addCopies(QMenu& menu, const gitkit::Commit& commit)
{
    const auto addCopy = [&menu](CommandId id, const QString& title, const QString& text) {
        markAs(id, menu.addAction(title, [text] { QGuiApplication::clipboard()->setText(text); }));
    };
    addCopy(CommandId::copyHash, Texts::tr("Copy Hash"), shownText(commit.hash));
    addCopy(CommandId::copySubject, Texts::tr("Copy Subject"), exactText(commit.subject));
}

void addChanges(QMenu& menu, RepositoryStore& store, const gitkit::Commit& commit)
{
    const auto add = [&](CommandId id, Verb verb, const QString& title, auto run) {
        return markAs(id, addChange(menu, store, verb, title, std::move(run)));
    };
    const std::string& hash = commit.hash;
    add(CommandId::checkOutCommit, Verb::checkOut, Texts::tr("Check Out Commit"),
        [&store, hash] { actions::checkoutCommit(store.actors(), hash); });
    add(CommandId::newBranchHere, Verb::createBranch, Texts::tr("New Branch Here…"),
        [&store, hash] { store.window().showSheet(NewBranchSheet{hash}); });
    add(CommandId::newTagHere, Verb::createTag, Texts::tr("New Tag Here…"),
        [&store, hash] { store.window().showSheet(NewTagSheet{hash}); });
    menu.addSeparator();
    using Act = ForetoldQuestion::Act;
    QAction* const pick = add(CommandId::cherryPick, Verb::cherryPick,
                              commit.parents.size() > 1 ? Texts::tr("Cherry-Pick…") : Texts::tr("Cherry-Pick"),
                              [&store, commit] { actions::cherryPick(store.actors(), std::vector{commit}); });
    QAction* const revert =
        add(CommandId::revert, Verb::revert, commit.parents.size() > 1 ? Texts::tr("Revert…") : Texts::tr("Revert"),
            [&store, commit] { actions::revert(store.actors(), std::vector{commit}); });
    if (commit.parents.size() == 1) { // of a merge, the parent is asked for first
        foretellIn(menu, *pick, store, {.act = Act::cherryPick, .pick = {{hash}}});
        foretellIn(menu, *revert, store, {.act = Act::revert, .pick = {{hash}}});
    }
    const auto& branch = store.snapshot().status.value().branch;
    add(CommandId::resetHere, Verb::reset,
        branch ? plainMenuText(Texts::tr("Reset “%1” to Here…").arg(shownText(*branch)))
               : Texts::tr("Reset HEAD to Here…"),
        [&store, hash] { store.window().showSheet(ResetSheet{hash}); });
    menu.addSeparator();
}

/// `commits` are the newest first.
void addPicks(QMenu& menu, RepositoryStore& store, const std::vector<gitkit::Commit>& commits)
{
    const int count = static_cast<int>(commits.size());
    QAction* const pick =
        addChange(menu, store, Verb::cherryPick, Texts::tr("Cherry-Pick %Ln Commit(s)", nullptr, count),
                  [&store, commits] { actions::cherryPick(store.actors(), commits); });
    QAction* const revert = addChange(menu, store, Verb::revert, Texts::tr("Revert %Ln Commit(s)", nullptr, count),
                                      [&store, commits] { actions::revert(store.actors(), commits); });
    const QString why = actions::cannotPick(commits);
    for (QAction* const entry : {markAs(CommandId::cherryPick, pick), markAs(CommandId::revert, revert)}) {
        if (!why.isEmpty()) {
            entry->setEnabled(false);
            entry->setToolTip(plainToolTip(why));
        }
    }
    gitkit::Pick all; // the oldest first
    for (auto commit = commits.rbegin(); commit != commits.rend(); ++commit)
        all.commits.push_back(commit->hash);
    foretellIn(menu, *pick, store, {.act = ForetoldQuestion::Act::cherryPick, .pick = all});
    foretellIn(menu, *revert, store, {.act = ForetoldQuestion::Act::revert, .pick = all});
    menu.addSeparator();
}

} // namespace

QMenu* makeCommitMenu(RepositoryStore& store, const gitkit::Commit& commit, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    fillCommitMenu(*menu, store, commit);
    return menu;
}

void fillCommitMenu(QMenu& menu, RepositoryStore& store, const gitkit::Commit& commit)
{
    addChanges(menu, store, commit);
    addPlanEntries(menu, store, {commit.hash});
    addComparisons(menu, store, commit);
    markAs(CommandId::commitRelations,
           menu.addAction(Texts::tr("Children, Branches and Tags…"), &menu,
                          [&store, hash = commit.hash] { store.window().showSheet(RelationsSheet{hash}); }));
    menu.addSeparator();
    addCopies(menu, commit);
    addOwnCommands(menu, store, {.place = ownCommands::Entry::Place::commit, .commit = commit.hash});
    addWebLinks(menu, store, {.commit = commit.hash});
    menu.addSeparator();
    addPatchEntries(menu, store, {commit});
}

QMenu* makeCommitsMenu(RepositoryStore& store, const std::vector<gitkit::Commit>& commits, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    menu->setToolTipsVisible(true);
    if (commits.size() == 2) {
        addComparisonOfBoth(*menu, store, commits.back(), commits.front());
        menu->addSeparator();
    }
    addPicks(*menu, store, commits);
    std::vector<std::string> planned;
    for (const gitkit::Commit& commit : commits)
        planned.push_back(commit.hash);
    addPlanEntries(*menu, store, planned);
    QStringList hashes;
    QStringList subjects;
    for (const gitkit::Commit& commit : commits) {
        hashes += shownText(commit.hash);
        subjects += exactText(commit.subject);
    }
    const auto addCopy = [menu](CommandId id, const QString& title, const QString& text) {
        markAs(id, menu->addAction(title, [text] { QGuiApplication::clipboard()->setText(text); }));
    };
    addCopy(CommandId::copyHash, Texts::tr("Copy Hashes"), hashes.join(u'\n'));
    addCopy(CommandId::copySubject, Texts::tr("Copy Subjects"), subjects.join(u'\n'));
    addPatchEntries(*menu, store, commits);
    return menu;
}

QMenu* makeLabelsMenu(RepositoryStore& store, const std::vector<gitkit::RefLabel>& labels, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    for (const gitkit::RefLabel& label : labels) {
        if (const std::string name = gitkit::fullNameOf(label); !name.empty())
            menu->addAction(plainMenuText(shownLine(label.name)), menu,
                            [&store, name] { store.window().select(SidebarItem::ref(name)); });
    }
    return menu;
}

} // namespace plovik

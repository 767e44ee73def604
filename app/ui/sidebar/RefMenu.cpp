// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/RefMenu.h"

#include "GitKit/records/Commit.h"
#include "GitKit/records/RemoteBranch.h"
#include "app/store/ShownText.h"
#include "app/store/actions/BranchSettings.h"
#include "app/store/actions/Merges.h"
#include "app/store/actions/Pushes.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/Foretelling.h"
#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/compare/CompareMenu.h"
#include "app/ui/sidebar/UpstreamChoice.h"
#include "app/ui/web/WebLinkEntries.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>
#include <QPointer>

#include <functional>
#include <string>
#include <vector>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::GitRef;

struct Texts {
    Q_DECLARE_TR_FUNCTIONS(plovik::RefMenu)
};

/// In a menu "&" would mark a letter.
QString currentName(const RepositoryStore& store)
{
    const auto& branch = store.snapshot().status.value().branch;
    return branch ? shownText(*branch) : u"HEAD"_s;
}

void refuse(QAction& entry, const QString& why)
{
    entry.setEnabled(false);
    entry.setToolTip(plainToolTip(why));
}

void addMerge(QMenu& menu, RepositoryStore& store, const GitRef& ref)
{
    const QString title = ref.kind == GitRef::Kind::local
                              ? plainMenuText(Texts::tr("Merge into “%1”").arg(currentName(store)))
                              : Texts::tr("Merge");
    QAction* const merge =
        addChange(menu, store, Verb::merge, title, [&store, ref] { actions::merge(store.actors(), ref); });
    markAs(CommandId::mergeRef, merge);
    QAction* const how = addChange(menu, store, Verb::merge, Texts::tr("Merge With Options…"),
                                   [&store, ref] { store.window().showSheet(MergeSheet{ref.fullName}); });
    markAs(CommandId::mergeRefHow, how);
    QAction* const rebase =
        addChange(menu, store, Verb::rebase,
                  plainMenuText(Texts::tr("Rebase “%1” onto “%2”").arg(currentName(store), shownText(ref.name))),
                  [&store, ref] { actions::rebaseOnto(store.actors(), ref); });
    markAs(CommandId::rebaseOntoRef, rebase);
    if (ref.kind == GitRef::Kind::local)
        markAs(CommandId::rebaseRef,
               addChange(menu, store, Verb::rewrite,
                         plainMenuText(Texts::tr("Rebase “%1” onto…").arg(shownText(ref.name))), [&store, ref] {
                             store.window().showSheet(RebaseSheet{.branch = ref.isHead ? std::string() : ref.fullName});
                         }));
    if (ref.isHead) {
        for (QAction* const entry : {merge, how, rebase})
            refuse(*entry, Texts::tr("This branch is checked out."));
    }
    foretellIn(menu, *merge, store, {.act = ForetoldQuestion::Act::merge, .ref = ref.fullName});
    foretellIn(menu, *rebase, store, {.act = ForetoldQuestion::Act::rebase, .ref = ref.fullName});
}

void addUpstreamChoice(QMenu& menu, RepositoryStore& store, const GitRef& branch, const GitRef& upstream)
{
    QAction* const entry =
        addChange(menu, store, Verb::setUpstream, plainMenuText(shownText(upstream.name)),
                  [&store, branch, upstream] { actions::setUpstream(store.actors(), branch.name, upstream.fullName); });
    entry->setCheckable(true);
    entry->setChecked(branch.upstream == upstream.name);
}

/// The branches of remotes that are called alike come first, and not all of very many are listed.
std::vector<GitRef> upstreamsFor(const RepositoryStore& store, const GitRef& branch)
{
    constexpr std::size_t most = 30;
    std::vector<GitRef> chosen;
    for (const bool isAlike : {true, false}) {
        for (const GitRef& remote : store.snapshot().remoteBranches.value()) {
            const bool comesFirst = remote.name == branch.upstream || remote.name.ends_with('/' + branch.name);
            if (comesFirst == isAlike && chosen.size() < most)
                chosen.push_back(remote);
        }
    }
    return chosen;
}

void addUpstreams(QMenu& menu, RepositoryStore& store, const GitRef& branch)
{
    QMenu* const choices = menu.addMenu(Texts::tr("Upstream"));
    const std::vector<GitRef> upstreams = upstreamsFor(store, branch);
    for (const GitRef& upstream : upstreams)
        addUpstreamChoice(*choices, store, branch, upstream);
    if (upstreams.size() < store.snapshot().remoteBranches.value().size())
        addChange(*choices, store, Verb::setUpstream, Texts::tr("Choose…"),
                  [&store, name = branch.name, window = QPointer(menu.parentWidget())] {
                      if (window)
                          chooseUpstream(store, name, *window->window());
                  });
    choices->addSeparator();
    QAction* const none = addChange(*choices, store, Verb::setUpstream, Texts::tr("None"), [&store, branch] {
        actions::setUpstream(store.actors(), branch.name, std::nullopt);
    });
    none->setCheckable(true);
    none->setChecked(!branch.upstream);
}

/// Says why a branch that is not checked out cannot be moved on to its upstream; empty where it can.
QString whyNotForward(const RepositoryStore& store, const GitRef& branch)
{
    if (!branch.upstream)
        return Texts::tr("It follows no other branch.");
    if (!store.snapshot().hasRef(branch.upstreamRef))
        return Texts::tr("Its upstream %1 is gone.").arg(shownText(*branch.upstream));
    return {};
}

/// For a branch that is not checked out.
void addPulls(QMenu& menu, RepositoryStore& store, const GitRef& branch)
{
    QAction* const pull = addChange(menu, store, Verb::pullOther, Texts::tr("Pull"),
                                    [&store, branch] { actions::pullOther(store.actors(), branch.name); });
    markAs(CommandId::pullRef, pull);
    const QString why = whyNotForward(store, branch);
    if (!why.isEmpty()) {
        refuse(*pull, why);
        return;
    }
    QAction* const forward =
        addChange(menu, store, Verb::fastForward,
                  plainMenuText(Texts::tr("Fast-Forward to “%1”").arg(shownText(*branch.upstream))),
                  [&store, branch] { actions::fastForward(store.actors(), branch.name); });
    markAs(CommandId::fastForwardRef, forward);
    const gitkit::Divergence from = store.counts().of(branch.fullName);
    if (from.ahead > 0)
        refuse(*forward, Texts::tr("It has commits of its own. Check it out to merge."));
}

/// For a branch that is not checked out; the one that is gets a reset.
void addMove(QMenu& menu, RepositoryStore& store, const GitRef& branch)
{
    const std::string commit = store.window().selectedCommit.value().value_or(std::string());
    const QString title = commit.empty()
                              ? Texts::tr("Move to Selected Commit")
                              : Texts::tr("Move to Selected Commit (%1)").arg(shownText(gitkit::shortHash(commit)));
    QAction* const move = addChange(menu, store, Verb::moveBranch, title,
                                    [&store, branch, commit] { actions::moveBranch(store.actors(), branch, commit); });
    markAs(CommandId::moveRef, move);
    if (commit.empty())
        refuse(*move, Texts::tr("Select a commit in the history first."));
    else if (commit == branch.hash)
        refuse(*move, Texts::tr("It is there already."));
}

/// What is for local branches alone.
void addBranchEntries(QMenu& menu, RepositoryStore& store, const GitRef& branch)
{
    if (!branch.isHead) {
        addPulls(menu, store, branch);
        addMove(menu, store, branch);
    }
    markAs(CommandId::pushRef, addChange(menu, store, Verb::pushTag, Texts::tr("Push to…"),
                                         [&store, branch] { actions::askWhereToPush(store.actors(), branch.name); }));
    addNewRequest(menu, store, branch.name);
    menu.addSeparator();
    markAs(CommandId::renameRef, addChange(menu, store, Verb::renameBranch, Texts::tr("Rename…"), [&store, branch] {
               store.window().showSheet(RenameBranchSheet{branch.name});
           }));
    addUpstreams(menu, store, branch);
}

void addMakeUpstream(QMenu& menu, RepositoryStore& store, const GitRef& remote)
{
    const auto& current = store.snapshot().status.value().branch;
    if (!current)
        return;
    QAction* const entry = addChange(
        menu, store, Verb::setUpstream, plainMenuText(Texts::tr("Make Upstream of “%1”").arg(shownText(*current))),
        [&store, branch = *current, name = remote.fullName] { actions::setUpstream(store.actors(), branch, name); });
    if (store.snapshot().status.value().upstream == remote.name)
        refuse(*entry, Texts::tr("It is its upstream already."));
}

/// Adds an entry for each remote, in a menu of their own where there are several.
void addForRemotes(QMenu& menu, RepositoryStore& store, CommandId id, Verb verb, const QString& one,
                   const QString& several, const std::function<void(const std::string&)>& run)
{
    const std::vector<std::string>& remotes = store.snapshot().remotes.value();
    if (remotes.size() == 1) {
        markAs(id, addChange(menu, store, verb, plainMenuText(one.arg(shownText(remotes.front()))),
                             [run, remote = remotes.front()] { run(remote); }));
        return;
    }
    if (remotes.empty())
        return;
    QMenu* const choices = menu.addMenu(several);
    for (const std::string& remote : remotes)
        addChange(*choices, store, verb, plainMenuText(shownText(remote)), [run, remote] { run(remote); });
}

void addTagEntries(QMenu& menu, RepositoryStore& store, const GitRef& tag)
{
    addForRemotes(
        menu, store, CommandId::pushRef, Verb::pushTag, Texts::tr("Push to %1"), Texts::tr("Push to"),
        [&store, name = tag.name](const std::string& remote) { actions::pushTag(store.actors(), name, remote); });
}

void addLocalDeletion(QMenu& menu, RepositoryStore& store, const GitRef& ref)
{
    const Verb verb = ref.kind == GitRef::Kind::tag ? Verb::deleteTag : Verb::deleteBranch;
    QAction* const remove = addChange(menu, store, verb, Texts::tr("Delete…"),
                                      [&store, ref] { actions::confirmDelete(store.actors(), ref); });
    markAs(CommandId::deleteRef, remove);
    if (ref.isHead)
        refuse(*remove, Texts::tr("Git deletes no branch that is checked out."));
}

void addRemoteDeletion(QMenu& menu, RepositoryStore& store, const GitRef& ref)
{
    const auto ask = [&store, ref](const std::string& remote) {
        actions::confirmDeleteOnRemote(store.actors(), ref, remote);
    };
    if (ref.kind == GitRef::Kind::tag) {
        addForRemotes(menu, store, CommandId::deleteOnRemote, Verb::deleteOnRemote, Texts::tr("Delete on %1…"),
                      Texts::tr("Delete on"), ask);
        return;
    }
    const std::string remote = gitkit::remoteBranchOf(ref.name, store.snapshot().remotes.value()).remote;
    if (!remote.empty())
        markAs(CommandId::deleteOnRemote, addChange(menu, store, Verb::deleteOnRemote,
                                                    plainMenuText(Texts::tr("Delete on %1…").arg(shownText(remote))),
                                                    [ask, remote] { ask(remote); }));
}

} // namespace

QMenu* makeRefMenu(RepositoryStore& store, const GitRef& ref, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    QAction* const checkOut = addChange(*menu, store, Verb::checkOut, Texts::tr("Check Out"),
                                        [&store, ref] { actions::checkout(store.actors(), ref); });
    markAs(CommandId::checkOutRef, checkOut);
    if (ref.isHead)
        refuse(*checkOut, Texts::tr("This branch is checked out already."));
    if (ref.kind != GitRef::Kind::tag)
        addMerge(*menu, store, ref);
    markAs(CommandId::newBranchFromRef,
           addChange(*menu, store, Verb::createBranch, Texts::tr("New Branch from Here…"),
                     [&store, name = ref.fullName] { store.window().showSheet(NewBranchSheet{name}); }));
    if (const QString why = actions::damage(ref); !why.isEmpty()) {
        for (QAction* const entry : menu->actions())
            refuse(*entry, why);
    }
    if (ref.isHead)
        addCommand(*menu, store, CommandId::push);
    if (ref.kind == GitRef::Kind::local)
        addBranchEntries(*menu, store, ref);
    if (ref.kind == GitRef::Kind::remote)
        addMakeUpstream(*menu, store, ref);
    if (ref.kind == GitRef::Kind::tag)
        addTagEntries(*menu, store, ref);
    menu->addSeparator();
    addComparisons(*menu, store, ref);
    if (ref.kind == GitRef::Kind::local)
        markAs(CommandId::refLogOfBranch,
               menu->addAction(Texts::tr("Where It Was"), menu,
                               [&store, name = ref.fullName] { store.window().select(SidebarItem::refLog(name)); }));
    menu->addSeparator();
    markAs(CommandId::copyRefName, menu->addAction(Texts::tr("Copy Name"), [name = exactText(ref.name)] {
        QGuiApplication::clipboard()->setText(name);
    }));
    if (ref.kind != GitRef::Kind::remote || !store.snapshot().remotes.value().empty())
        menu->addSeparator();
    if (ref.kind != GitRef::Kind::remote)
        addLocalDeletion(*menu, store, ref);
    if (ref.kind != GitRef::Kind::local)
        addRemoteDeletion(*menu, store, ref);
    addOwnCommands(*menu, store, {.place = ownCommands::Entry::Place::branch, .branch = ref.fullName});
    return menu;
}

QMenu* makeRemoteMenu(RepositoryStore& store, const std::string& remote, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    markAs(CommandId::pushAllTags, addChange(*menu, store, Verb::pushTag, Texts::tr("Push All Tags…"),
                                             [&store, remote] { actions::confirmPushTags(store.actors(), remote); }));
    menu->addSeparator();
    addChange(*menu, store, Verb::editRemote, Texts::tr("Edit…"),
              [&store, remote] { actions::askToEditRemote(store.actors(), remote); });
    addChange(*menu, store, Verb::editRemote, Texts::tr("Rename…"),
              [&store, remote] { actions::askToEditRemote(store.actors(), remote, actions::RemoteFocus::name); });
    addChange(*menu, store, Verb::editRemote, Texts::tr("Remove…"),
              [&store, remote] { actions::confirmRemoveRemote(store.actors(), remote); });
    menu->addSeparator();
    addCommand(*menu, store, CommandId::addRemote);
    return menu;
}

QMenu* makeRemotesMenu(RepositoryStore& store, QWidget* parent)
{
    auto* const menu = new QMenu(parent);
    addCommand(*menu, store, CommandId::addRemote);
    for (const std::string& remote : store.snapshot().remotes.value()) {
        menu->addSeparator();
        const QString name = shownText(remote);
        addChange(*menu, store, Verb::editRemote, plainMenuText(Texts::tr("Edit “%1”…").arg(name)),
                  [&store, remote] { actions::askToEditRemote(store.actors(), remote); });
        addChange(*menu, store, Verb::editRemote, plainMenuText(Texts::tr("Remove “%1”…").arg(name)),
                  [&store, remote] { actions::confirmRemoveRemote(store.actors(), remote); });
    }
    return menu;
}

} // namespace plovik

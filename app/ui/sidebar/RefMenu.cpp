// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/RefMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QCoreApplication>
#include <QGuiApplication>
#include <QMenu>

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
    if (ref.isHead)
        refuse(*merge, Texts::tr("This branch is checked out."));
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
        refuse(*choices->addAction(Texts::tr("Others")),
               Texts::tr("Choose one of the others in its own menu, while this branch is checked out."));
    choices->addSeparator();
    QAction* const none = addChange(*choices, store, Verb::setUpstream, Texts::tr("None"), [&store, branch] {
        actions::setUpstream(store.actors(), branch.name, std::nullopt);
    });
    none->setCheckable(true);
    none->setChecked(!branch.upstream);
}

/// What is for local branches alone.
void addBranchEntries(QMenu& menu, RepositoryStore& store, const GitRef& branch)
{
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
    menu->addSeparator();
    markAs(CommandId::copyRefName, menu->addAction(Texts::tr("Copy Name"), [name = exactText(ref.name)] {
        QGuiApplication::clipboard()->setText(name);
    }));
    if (ref.kind == GitRef::Kind::remote)
        return menu;
    menu->addSeparator();
    const Verb verb = ref.kind == GitRef::Kind::tag ? Verb::deleteTag : Verb::deleteBranch;
    QAction* const remove = addChange(*menu, store, verb, Texts::tr("Delete…"),
                                      [&store, ref] { actions::confirmDelete(store.actors(), ref); });
    markAs(CommandId::deleteRef, remove);
    if (ref.isHead)
        refuse(*remove, Texts::tr("Git deletes no branch that is checked out."));
    return menu;
}

} // namespace plovik

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

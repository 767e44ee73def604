// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/RefMenu.h"

#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Remotes.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMenu>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::GitRef;

/// In a menu "&" would mark a letter.
QString menuText(QString text) { return text.replace(u'&', u"&&"_s); }

QString currentName(const RepositoryStore& store)
{
    const auto& branch = store.snapshot().status.value().branch;
    return branch ? shownText(*branch) : u"HEAD"_s;
}

/// Asks, and then merges a branch into the current one.
void confirmMerge(RepositoryStore& store, const GitRef& ref)
{
    Confirmation question;
    question.title = u"Merge “%1” into “%2”?"_s.arg(shownText(ref.name), currentName(store));
    question.message =
        u"Where both changed the same lines, the conflicts are left in the working copy to be resolved."_s;
    question.actionTitle = u"Merge"_s;
    question.risk = Confirmation::Risk::none;
    question.action = [&store, ref] { actions::merge(store.actors(), ref); };
    store.window().ask(std::move(question));
}

/// Fills a menu with the entries of one ref.
class Entries {
public:
    Entries(RepositoryStore& store, const GitRef& ref, QMenu& menu)
        : store_(store), ref_(ref), menu_(menu), isIdle_(!store.changes().activity.value())
    {}

    void addCheckOut()
    {
        addAction(u"Check Out"_s, [&store = store_, ref = ref_] {
            actions::checkout(store.actors(), ref);
        })->setEnabled(isIdle_ && !ref_.isHead);
    }

    void addMerge(const QString& title)
    {
        addAction(title, [&store = store_, ref = ref_] {
            confirmMerge(store, ref);
        })->setEnabled(isIdle_ && !ref_.isHead);
    }

    void addNewBranch()
    {
        addAction(u"New Branch from Here…"_s, [&store = store_, name = ref_.fullName] {
            store.window().showSheet(NewBranchSheet{name});
        })->setEnabled(isIdle_);
    }

    void addPush()
    {
        addAction(u"Push"_s, [&store = store_] { actions::push(store.actors()); })->setEnabled(isIdle_);
    }

    void addCopyName()
    {
        addAction(u"Copy Name"_s, [name = shownText(ref_.name)] { QGuiApplication::clipboard()->setText(name); });
    }

    void addDelete()
    {
        menu_.addSeparator();
        // Git deletes no branch that is checked out.
        addAction(u"Delete…"_s, [&store = store_, ref = ref_] {
            actions::confirmDelete(store.actors(), ref);
        })->setEnabled(isIdle_ && !ref_.isHead);
    }

private:
    template <typename Action>
    QAction* addAction(const QString& title, Action action)
    {
        return menu_.addAction(title, &menu_, std::move(action));
    }

    RepositoryStore& store_;
    const GitRef& ref_;
    QMenu& menu_;
    bool isIdle_; ///< while an action runs the store would drop another one
};

} // namespace

QMenu* makeRefMenu(RepositoryStore& store, const GitRef& ref, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    Entries entries(store, ref, *menu);
    entries.addCheckOut();
    if (ref.kind == GitRef::Kind::local)
        entries.addMerge(menuText(u"Merge into “%1”…"_s.arg(currentName(store))));
    else if (ref.kind == GitRef::Kind::remote)
        entries.addMerge(u"Merge…"_s);
    entries.addNewBranch();
    if (ref.isHead)
        entries.addPush();
    menu->addSeparator();
    entries.addCopyName();
    if (ref.kind != GitRef::Kind::remote)
        entries.addDelete();
    return menu;
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/compare/CompareMenu.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/PalettePopup.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QMenu>
#include <QPointer>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using gitkit::ComparedState;
using gitkit::Comparison;
using Kind = PaletteEntry::Kind;

struct CompareTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CompareMenu)
};

ComparedState headOf(const RepositoryStore& store)
{
    const gitkit::RepoStatus& status = store.snapshot().status.value();
    return {status.oid.value_or(std::string()), status.branch.value_or("HEAD")};
}

QAction* addComparison(QMenu& menu, RepositoryStore& store, const QString& title, const Comparison& comparison)
{
    return menu.addAction(title, &menu, [&store, comparison] { store.window().compare(comparison); });
}

/// Returns the state that an entry of the palette stands for; nullopt when the ref is gone.
std::optional<ComparedState> stateOf(const Snapshot& now, const PaletteEntry& entry)
{
    if (entry.kind == Kind::commit)
        return ComparedState{entry.name, {}};
    for (const auto* const refs : {&now.branches.value(), &now.remoteBranches.value(), &now.tags.value()}) {
        const auto found = std::ranges::find(*refs, entry.name, &gitkit::GitRef::fullName);
        if (found != refs->end() && !found->hash.empty())
            return ComparedState{found->hash, found->name};
    }
    return std::nullopt;
}

QString kindOf(const PaletteEntry& entry)
{
    switch (entry.kind) {
    case Kind::branch:
        return CompareTexts::tr("branch");
    case Kind::remoteBranch:
        return CompareTexts::tr("remote branch");
    case Kind::tag:
        return CompareTexts::tr("tag");
    default:
        return entry.detail;
    }
}

/// Returns the window over which a context menu, or one inside it, is opened.
QWidget* windowOf(const QMenu& menu)
{
    QWidget* widget = menu.parentWidget();
    while (qobject_cast<QMenu*>(widget))
        widget = widget->parentWidget();
    return widget ? widget->window() : nullptr;
}

/// Opens a list of branches, tags and commits, and compares a state with the chosen one.
void chooseOther(RepositoryStore& store, const ComparedState& state, QWidget& window)
{
    PaletteRequest request{.scope = PaletteRequest::Scope::states};
    PalettePopup::Actions actions;
    actions.row = [](const PaletteEntry& entry) { return PaletteRow{.title = entry.title, .detail = kindOf(entry)}; };
    actions.choose = [&store, state](const PaletteEntry& entry) {
        if (const std::optional<ComparedState> other = stateOf(store.snapshot(), entry))
            store.window().compare({.from = *other, .to = state});
    };
    const PalettePopup::Names names{CompareTexts::tr("States to Compare With"), CompareTexts::tr("Find a State"),
                                    CompareTexts::tr("A branch, tag or commit to compare with")};
    (new PalettePopup(store.git(), names, std::move(request), std::move(actions), &window))->openOver(window);
}

void addStates(QMenu& menu, RepositoryStore& store, const ComparedState& state)
{
    const ComparedState head = headOf(store);
    QAction* const withHead =
        addComparison(menu, store, CompareTexts::tr("Compare with HEAD"), {.from = state, .to = head});
    markAs(CommandId::compareWithHead, withHead);
    if (head.hash.empty() || head.hash == state.hash) {
        withHead->setEnabled(false);
        withHead->setToolTip(plainToolTip(head.hash.empty()
                                              ? CompareTexts::tr("Nothing has been committed yet.")
                                              : CompareTexts::tr("This is the commit that is checked out.")));
    }
    QAction* const withTree =
        addComparison(menu, store, CompareTexts::tr("Compare with Working Copy"), {.from = state, .to = {}});
    if (store.changes().isReadOnly())
        withTree->setEnabled(false);
    markAs(CommandId::compareWithWorkingTree, withTree);
    markAs(CommandId::compareWith,
           menu.addAction(CompareTexts::tr("Compare with…"), &menu, [&store, state, window = QPointer(windowOf(menu))] {
               if (window)
                   chooseOther(store, state, *window);
           }));
}

/// A merge is shown against its first parent; this leads to the others.
void addParents(QMenu& menu, RepositoryStore& store, const gitkit::Commit& merge)
{
    QMenu* const parents = menu.addMenu(CompareTexts::tr("Compare with Parent"));
    const ComparedState state{merge.hash, {}};
    for (const std::string& parent : merge.parents)
        addComparison(*parents, store, shownText(gitkit::shortHash(parent)), {.from = {parent, {}}, .to = state});
    parents->addSeparator();
    addComparison(*parents, store, CompareTexts::tr("All Parents at Once"),
                  {.from = {}, .to = state, .kind = Comparison::Kind::merge});
}

QMenu& addSubmenu(QMenu& menu)
{
    QMenu* const inside = menu.addMenu(CompareTexts::tr("Compare"));
    inside->setToolTipsVisible(true);
    return *inside;
}

} // namespace

void addComparisons(QMenu& parent, RepositoryStore& store, const gitkit::Commit& commit)
{
    QMenu& menu = addSubmenu(parent);
    const ComparedState state{commit.hash, {}};
    addStates(menu, store, state);
    if (commit.parents.size() > 1)
        addParents(menu, store, commit);
    markAs(CommandId::browseFiles, addComparison(menu, store, CompareTexts::tr("Browse All Files"),
                                                 {.from = {}, .to = state, .kind = Comparison::Kind::files}));
}

void addComparisons(QMenu& parent, RepositoryStore& store, const gitkit::GitRef& ref)
{
    if (!ref.hash.empty())
        addStates(addSubmenu(parent), store, {ref.hash, ref.name});
}

void addComparisonOfBoth(QMenu& menu, RepositoryStore& store, const gitkit::Commit& from, const gitkit::Commit& to)
{
    markAs(CommandId::compareBoth, addComparison(menu, store, CompareTexts::tr("Compare Both"),
                                                 {.from = {from.hash, {}}, .to = {to.hash, {}}}));
}

} // namespace plovik

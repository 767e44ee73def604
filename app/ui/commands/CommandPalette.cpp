// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/CommandPalette.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/ChoicePopup.h"
#include "app/ui/widgets/Mnemonics.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>

namespace plovik {

namespace {

struct PaletteTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::CommandPalette)
};

QString readTitle(const QString& text)
{
    return withoutMnemonic(text).replace(QLatin1String("&&"), QLatin1String("&"));
}

Choice choiceOf(QAction& item, const Command& command, const QString& menu)
{
    Choice choice{.title = PaletteTexts::tr("%1: %2", "menu, command").arg(menu, readTitle(item.text())),
                  .detail = command.shortcut().toString(QKeySequence::NativeText),
                  .isCurrent = item.isChecked(),
                  .isOffered = item.isEnabled()};
    if (!choice.isOffered && item.toolTip() != item.iconText())
        choice.whyNot = item.toolTip();
    // The focus has to be back where it was before the list opened.
    choice.run = [item = QPointer(&item)] {
        if (item)
            QMetaObject::invokeMethod(item, &QAction::trigger, Qt::QueuedConnection);
    };
    return choice;
}

void addCommands(std::vector<Choice>& choices, QMenu& menu, const QString& title)
{
    // Brings the items up to date, which otherwise happens when a menu is opened.
    Q_EMIT menu.aboutToShow();
    for (QAction* const item : menu.actions()) {
        if (item->menu())
            addCommands(choices, *item->menu(), title);
        else if (const auto id = commandOf(*item); id && item->isVisible() && *id != CommandId::commandPalette)
            choices.push_back(choiceOf(*item, command(*id), title));
    }
    Q_EMIT menu.aboutToHide();
}

void addRefs(std::vector<Choice>& choices, RepositoryStore& store, const std::vector<gitkit::GitRef>& refs,
             const QString& kind)
{
    for (const gitkit::GitRef& ref : refs)
        choices.push_back({.title = shownText(ref.name),
                           .detail = kind,
                           .isCurrent = ref.isHead,
                           .run = [&store, name = ref.fullName] { store.window().select(SidebarItem::ref(name)); }});
}

} // namespace

void showCommandPalette(QMenuBar& bar, RepositoryStore& store)
{
    std::vector<Choice> choices;
    for (QAction* const entry : bar.actions())
        addCommands(choices, *entry->menu(), readTitle(entry->text()));
    const Snapshot& now = store.snapshot();
    addRefs(choices, store, now.branches.value(), PaletteTexts::tr("branch"));
    addRefs(choices, store, now.remoteBranches.value(), PaletteTexts::tr("remote branch"));
    addRefs(choices, store, now.tags.value(), PaletteTexts::tr("tag"));
    const ChoicePopup::Names names{PaletteTexts::tr("Commands and Refs"), PaletteTexts::tr("Filter Commands and Refs"),
                                   PaletteTexts::tr("A command, a branch or a tag")};
    (new ChoicePopup(names, std::move(choices), true, bar.window()))->openOver(*bar.window());
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/OwnCommandEntries.h"

#include "app/settings/Settings.h"
#include "app/store/actions/OwnCommands.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commands/MainMenu.h"
#include "app/ui/commands/SelectionActions.h"
#include "app/ui/widgets/RowPainting.h"

#include <QAction>
#include <QCoreApplication>
#include <QMenu>
#include <QShortcut>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

using Place = ownCommands::Entry::Place;

constexpr const char* ownCommandProperty = "ownCommand";
const QString selectionName = u"selection"_s;

struct OwnCommandTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::OwnCommandEntries)
};

QAction* addOwn(QMenu& menu, RepositoryStore& store, const ownCommands::Entry& entry, int number,
                const OwnCommandTarget& target)
{
    const OwnCommandRun run{
        entry.title, {entry.line.toStdString(), target.commit, target.branch, target.files}, entry.asksFirst};
    QAction* const action = addChange(menu, store, Verb::runOwnCommand, plainMenuText(entry.title),
                                      [&store, run] { actions::runOwnCommand(store.actors(), run); });
    action->setProperty(ownCommandProperty, number);
    return action;
}

QString nothingSelected(Place place)
{
    switch (place) {
    case Place::commit:
        return OwnCommandTexts::tr("Select a commit.");
    case Place::branch:
        return OwnCommandTexts::tr("Select a branch or tag in the sidebar.");
    case Place::file:
        return OwnCommandTexts::tr("Select a file.");
    case Place::repository:
        break;
    }
    return {};
}

/// Adds an entry that triggers the one in the context menu of what is selected.
void addForSelection(QMenu& menu, const ownCommands::Entry& entry, QAction* selected)
{
    QAction* const action = menu.addAction(plainMenuText(entry.title));
    action->setEnabled(selected && selected->isEnabled());
    action->setToolTip(plainToolTip(selected ? selected->toolTip() : nothingSelected(entry.place)));
    if (selected)
        QObject::connect(action, &QAction::triggered, selected, &QAction::trigger);
}

} // namespace

void addOwnCommands(QMenu& menu, RepositoryStore& store, const OwnCommandTarget& target)
{
    const std::vector<ownCommands::Entry> entries = ownCommands::all();
    bool isFirst = true;
    for (std::size_t number = 0; number < entries.size(); ++number) {
        if (!entries[number].isComplete() || entries[number].place != target.place)
            continue;
        if (std::exchange(isFirst, false))
            menu.addSeparator();
        addOwn(menu, store, entries[number], static_cast<int>(number), target);
    }
}

void fillOwnCommands(QMenu& menu, QWidget& window, RepositoryStore& store, MenuTarget& target)
{
    const std::vector<ownCommands::Entry> entries = ownCommands::all();
    // What the entries trigger lives until they are made anew.
    delete menu.findChild<QObject*>(selectionName, Qt::FindDirectChildrenOnly);
    auto* const selection = new SelectionActions(window, &menu);
    selection->setObjectName(selectionName);
    if (std::ranges::any_of(entries, [](const auto& entry) { return entry.place != Place::repository; }))
        selection->look();
    for (std::size_t number = 0; number < entries.size(); ++number) {
        const ownCommands::Entry& entry = entries[number];
        if (!entry.isComplete())
            continue;
        if (entry.place == Place::repository)
            addOwn(menu, store, entry, static_cast<int>(number), {});
        else
            addForSelection(menu, entry, selection->ofOwnCommand(static_cast<int>(number)));
        QAction* const action = menu.actions().constLast();
        action->setProperty(ownCommandProperty, static_cast<int>(number));
        // Shown and not listened to: OwnCommandKeys does.
        action->setText(action->text() +
                        (entry.keys.isEmpty()
                             ? QString()
                             : u'\t' + QKeySequence::fromString(entry.keys).toString(QKeySequence::NativeText)));
    }
    if (menu.isEmpty())
        menu.addAction(OwnCommandTexts::tr("None Yet"))->setEnabled(false);
    menu.addSeparator();
    menu.addAction(OwnCommandTexts::tr("Edit in the Settings…"), &menu, [&target] { target.showSettings(); });
}

std::optional<int> ownCommandOf(const QAction& entry)
{
    const QVariant number = entry.property(ownCommandProperty);
    return number.isValid() ? std::optional(number.toInt()) : std::nullopt;
}

QString commandWithKeys(const QString& keys)
{
    const QKeySequence sequence = QKeySequence::fromString(keys, QKeySequence::PortableText);
    const auto found = std::ranges::find_if(allCommands(), [&sequence](const Command& command) {
        return !sequence.isEmpty() && (command.shortcut() == sequence || QKeySequence(command.otherKeys) == sequence);
    });
    return found == allCommands().end() ? QString() : found->title();
}

OwnCommandKeys::OwnCommandKeys(QWidget& window, RepositoryStore& store)
    : QObject(&window), window_(window), store_(store)
{
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::ownCommands.key))
            listen();
    });
    listen();
}

void OwnCommandKeys::listen()
{
    qDeleteAll(shortcuts_);
    shortcuts_.clear();
    const std::vector<ownCommands::Entry> entries = ownCommands::all();
    for (std::size_t number = 0; number < entries.size(); ++number) {
        const ownCommands::Entry& entry = entries[number];
        if (!entry.isComplete() || entry.keys.isEmpty() || !commandWithKeys(entry.keys).isEmpty())
            continue;
        auto* const shortcut =
            new QShortcut(QKeySequence::fromString(entry.keys, QKeySequence::PortableText), &window_);
        shortcuts_.push_back(shortcut);
        connect(shortcut, &QShortcut::activated, this, [this, entry, number] {
            QMenu menu;
            SelectionActions selection(window_, nullptr);
            QAction* action = nullptr;
            if (entry.place == Place::repository) {
                action = addOwn(menu, store_, entry, static_cast<int>(number), {});
            } else {
                selection.look();
                action = selection.ofOwnCommand(static_cast<int>(number));
            }
            if (!action)
                store_.window().tell(nothingSelected(entry.place));
            else if (!action->isEnabled())
                store_.window().tell(store_.changes().whyNot(Verb::runOwnCommand));
            else
                action->trigger();
        });
    }
}

} // namespace plovik

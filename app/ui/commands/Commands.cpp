// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/Commands.h"

#include "app/store/Obstacles.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QMenu>

#include <utility>

namespace plovik {

namespace {

constexpr const char* commandProperty = "plovikCommand";

QString translated(const char* text) { return QCoreApplication::translate("Commands", text); }

/// Shows why an entry is disabled; a menu shows no tooltips by itself.
void setOffered(QMenu& menu, QAction& action, bool isOffered, const QString& whyNot)
{
    menu.setToolTipsVisible(true);
    action.setEnabled(isOffered);
    action.setToolTip(plainToolTip(whyNot));
}

} // namespace

QString Command::title() const { return translated(name); }

QString Command::buttonTitle() const { return translated(buttonName ? buttonName : name); }

QKeySequence Command::shortcut() const { return keys == QKeyCombination() ? QKeySequence() : QKeySequence(keys); }

QString Command::whatIsWanted() const { return wanted ? translated(wanted) : QString(); }

bool Command::isOffered(const RepositoryStore& store) const
{
    return whyNot(store).isEmpty() && (!isPossible || isPossible(store));
}

QString Command::whyNot(const RepositoryStore& store) const
{
    const QString inTheWay = verb ? obstacle(store.changes(), store.snapshot(), *verb) : QString();
    return inTheWay.isEmpty() && isPossible && !isPossible(store) ? whatIsWanted() : inTheWay;
}

void Command::run(RepositoryStore& store) const { std::get<void (*)(RepositoryStore&)>(action)(store); }

void Command::run(MenuTarget& application) const { (application.*std::get<void (MenuTarget::*)()>(action))(); }

std::vector<QPropertyNotifier> followOffers(const RepositoryStore& store, const std::function<void()>& changed)
{
    std::vector<QPropertyNotifier> notifiers;
    const auto follow = [&](const auto&... fields) { (notifiers.push_back(fields.addNotifier(changed)), ...); };
    follow(store.changes().running, store.changes().isCancelling, store.trail().canGoBack, store.trail().canGoForward,
           store.draft().generatingMessage, store.window().showsCommandLog, store.rewriting().plan,
           store.rewriting().outcome, store.rewriting().movable, store.neighbours().submodules);
    const Snapshot& now = store.snapshot();
    follow(now.status, now.inProgress, now.remotes, now.hasLoaded, now.readProblem);
    return notifiers;
}

QAction* addCommand(QMenu& menu, RepositoryStore& store, CommandId id)
{
    const Command& added = command(id);
    QAction* const action = menu.addAction(added.title(), &menu, [&store, &added] { added.run(store); });
    setOffered(menu, *action, added.isOffered(store), added.whyNot(store));
    return action;
}

QAction* addChange(QMenu& menu, const RepositoryStore& store, Verb verb, const QString& title,
                   std::function<void()> run)
{
    QAction* const action = menu.addAction(title, &menu, std::move(run));
    const QString whyNot = obstacle(store.changes(), store.snapshot(), verb);
    setOffered(menu, *action, whyNot.isEmpty(), whyNot);
    return action;
}

QAction* markAs(CommandId id, QAction* entry)
{
    entry->setProperty(commandProperty, static_cast<int>(id));
    return entry;
}

std::optional<CommandId> commandOf(const QAction& entry)
{
    const QVariant id = entry.property(commandProperty);
    return id.isValid() ? std::optional(static_cast<CommandId>(id.toInt())) : std::nullopt;
}

} // namespace plovik

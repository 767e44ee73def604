// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/SelectionActions.h"

#include "app/ui/commands/OwnCommandEntries.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QWidget>

namespace plovik {

SelectionActions::SelectionActions(QWidget& window, QObject* parent) : QObject(parent), window_(window) {}

SelectionActions::~SelectionActions() { drop(); }

void SelectionActions::look()
{
    drop();
    for (QWidget* widget = focusBehindMenus(); widget && widget != &window_; widget = widget->parentWidget())
        add(*widget);
    for (QWidget* const widget : window_.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->window() == &window_)
            add(*widget);
    }
}

void SelectionActions::add(QWidget& widget)
{
    auto* const source = dynamic_cast<ContextMenuSource*>(&widget);
    QMenu* const menu = source ? source->makeContextMenu() : nullptr;
    if (!menu)
        return;
    menus_.emplace_back(menu);
    add(*menu);
}

void SelectionActions::add(const QMenu& menu)
{
    for (QAction* const entry : menu.actions()) {
        if (const std::optional<CommandId> id = commandOf(*entry))
            found_.try_emplace(*id, entry);
        else if (const std::optional<int> own = ownCommandOf(*entry))
            own_.try_emplace(*own, entry);
        else if (entry->menu())
            add(*entry->menu());
    }
}

void SelectionActions::drop()
{
    found_.clear();
    own_.clear();
    // An entry may be what is being carried out now.
    for (const QPointer<QMenu>& menu : std::exchange(menus_, {})) {
        if (menu)
            menu->deleteLater();
    }
}

QAction* SelectionActions::of(CommandId id) const
{
    const auto found = found_.find(id);
    return found == found_.end() ? nullptr : found->second.data();
}

QAction* SelectionActions::ofOwnCommand(int number) const
{
    const auto found = own_.find(number);
    return found == own_.end() ? nullptr : found->second.data();
}

namespace {

/// Remembers the focus while a menu bar has it, which takes it when the keyboard goes into its menus.
class FocusMemory : public QObject {
public:
    static FocusMemory& shared()
    {
        static QPointer<FocusMemory> memory;
        if (!memory)
            memory = new FocusMemory;
        return *memory;
    }

    QWidget* last() const { return last_; }

private:
    FocusMemory() : QObject(qApp), last_(QApplication::focusWidget())
    {
        connect(qApp, &QApplication::focusChanged, this, [this](QWidget* /*old*/, QWidget* now) {
            if (!qobject_cast<QMenuBar*>(now))
                last_ = now;
        });
    }

    QPointer<QWidget> last_;
};

} // namespace

QWidget* focusBehindMenus()
{
    QWidget* const behind = FocusMemory::shared().last();
    QWidget* const focus = QApplication::focusWidget();
    return qobject_cast<QMenuBar*>(focus) ? behind : focus;
}

} // namespace plovik

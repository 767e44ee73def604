// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/MenuAccessible.h"

#include "app/ui/widgets/Mnemonics.h"

#include <QAccessible>
#include <QAction>
#include <QMenu>
#include <QPointer>

namespace plovik {

namespace {

/// An entry with keys behind a tab, which the toolkit would take for a part of its name.
class AccessibleEntry : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    explicit AccessibleEntry(QAction* action) : action_(action) {}

    bool isValid() const override { return !action_.isNull(); }
    QObject* object() const override { return action_; }
    QAccessible::Role role() const override { return QAccessible::MenuItem; }

    QString text(QAccessible::Text kind) const override
    {
        switch (kind) {
        case QAccessible::Name:
            return withoutMnemonic(action_->text().section(u'\t', 0, 0));
        case QAccessible::Accelerator:
            return action_->text().section(u'\t', 1);
        case QAccessible::Help:
            return action_->whatsThis();
        default:
            return {};
        }
    }
    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override
    {
        QAccessible::State state;
        state.invisible = !menu() || !menu()->isVisible() || !action_->isVisible();
        state.focused = menu() && menu()->activeAction() == action_;
        state.disabled = !action_->isEnabled();
        state.checkable = action_->isCheckable();
        state.checked = action_->isChecked();
        return state;
    }

    QRect rect() const override
    {
        const QRect place = menu() ? menu()->actionGeometry(action_) : QRect();
        return menu() ? QRect(menu()->mapToGlobal(place.topLeft()), place.size()) : place;
    }

    QAccessibleInterface* parent() const override
    {
        return menu() ? QAccessible::queryAccessibleInterface(menu()) : nullptr;
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override
    {
        if (name == pressAction() && action_)
            action_->trigger();
    }
    QStringList keyBindingsForAction(const QString&) const override { return {text(QAccessible::Accelerator)}; }

private:
    QMenu* menu() const
    {
        const QList<QObject*> places = action_ ? action_->associatedObjects() : QList<QObject*>();
        return places.isEmpty() ? nullptr : qobject_cast<QMenu*>(places.front());
    }

    QPointer<QAction> action_;
};

QAccessibleInterface* makeEntryInterface(const QString&, QObject* object)
{
    auto* const action = qobject_cast<QAction*>(object);
    return action && action->text().contains(u'\t') ? new AccessibleEntry(action) : nullptr;
}

} // namespace

void installMenuAccessibility()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeEntryInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace plovik

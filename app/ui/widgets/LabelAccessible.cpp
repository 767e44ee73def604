// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/LabelAccessible.h"

#include <QAccessibleWidget>
#include <QLabel>
#include <QTextDocumentFragment>

namespace plovik {

namespace {

class AccessibleLabel : public QAccessibleWidget {
public:
    explicit AccessibleLabel(QLabel* label) : QAccessibleWidget(label, QAccessible::StaticText) {}

    QString text(QAccessible::Text which) const override
    {
        const auto* const label = static_cast<const QLabel*>(widget());
        const bool isNamed = !label->accessibleName().isEmpty();
        if (which == QAccessible::Name && !isNamed)
            return shown(*label);
        if (which == QAccessible::Description && isNamed && label->accessibleDescription().isEmpty())
            return shown(*label);
        if (which == QAccessible::Value)
            return shown(*label);
        return QAccessibleWidget::text(which);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        return state;
    }

private:
    static QString shown(const QLabel& label)
    {
        const QString text = label.text();
        const bool isRich =
            label.textFormat() == Qt::RichText || (label.textFormat() == Qt::AutoText && Qt::mightBeRichText(text));
        return isRich ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
    }
};

QAccessibleInterface* makeLabelInterface(const QString& className, QObject* object)
{
    if (className != QLatin1StringView("QLabel"))
        return nullptr;
    auto* const label = qobject_cast<QLabel*>(object);
    return label ? new AccessibleLabel(label) : nullptr;
}

} // namespace

void installLabelAccessibility()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeLabelInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

} // namespace plovik

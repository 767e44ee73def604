// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAccessible.h"

#include "app/ui/diff/DiffSectionView.h"

#include <QAccessibleWidget>

#include <algorithm>
#include <vector>

namespace plovik {

namespace {

/// The text is made when it is first asked for, and again after the diff has changed.
class AccessibleDiff : public QAccessibleWidget, public QAccessibleTextInterface {
public:
    explicit AccessibleDiff(DiffSectionView* view) : QAccessibleWidget(view, QAccessible::EditableText) {}

    void* interface_cast(QAccessible::InterfaceType type) override
    {
        if (type == QAccessible::TextInterface)
            return static_cast<QAccessibleTextInterface*>(this);
        return QAccessibleWidget::interface_cast(type);
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.readOnly = true;
        state.multiLine = true;
        state.selectableText = true;
        return state;
    }

    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? whole() : QAccessibleWidget::text(kind);
    }

    int characterCount() const override { return static_cast<int>(whole().size()); }
    QString text(int start, int end) const override { return whole().mid(start, end - start); }

    int cursorPosition() const override
    {
        return controller().currentRow() < 0 ? 0 : startOf(controller().currentRow());
    }
    void setCursorPosition(int position) override { controller().setCurrentRow(rowAt(position)); }

    void selection(int index, int* start, int* end) const override
    {
        const std::vector<int> rows = controller().diff().rowsOf(controller().selection());
        const bool isOne = index == 0 && !rows.empty();
        *start = isOne ? startOf(rows.front()) : 0;
        *end = isOne ? startOf(rows.back() + 1) : 0;
    }
    int selectionCount() const override { return controller().selection().isEmpty() ? 0 : 1; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}

    QRect characterRect(int offset) const override
    {
        const QRect row = view()->rowRect(rowAt(offset));
        return {view()->mapToGlobal(row.topLeft()), row.size()};
    }
    int offsetAtPoint(const QPoint& point) const override
    {
        const int row = view()->places().rowNear(view()->mapFromGlobal(point));
        return row < 0 ? 0 : startOf(row);
    }
    void scrollToSubstring(int start, int) override { Q_EMIT view()->revealRequested(view()->rowRect(rowAt(start))); }
    QString attributes(int, int* start, int* end) const override
    {
        *start = 0;
        *end = characterCount();
        return {};
    }

    void forget()
    {
        text_.clear();
        starts_.clear();
    }

private:
    DiffSectionView* view() const { return static_cast<DiffSectionView*>(widget()); }
    DiffController& controller() const { return view()->controller(); }

    const QString& whole() const
    {
        if (starts_.empty() || revision_ != controller().diff().revision()) {
            revision_ = controller().diff().revision();
            text_ = controller().diff().plainText();
            starts_.clear();
            starts_.push_back(0);
            for (qsizetype at = text_.indexOf(u'\n'); at >= 0; at = text_.indexOf(u'\n', at + 1))
                starts_.push_back(static_cast<int>(at) + 1);
        }
        return text_;
    }

    int notesAbove() const { return static_cast<int>(controller().diff().notes().above.size()); }

    int startOf(int row) const
    {
        const QString& all = whole();
        const auto line = static_cast<std::size_t>(row) + static_cast<std::size_t>(notesAbove());
        return line < starts_.size() ? starts_[line] : static_cast<int>(all.size());
    }

    int rowAt(int offset) const
    {
        whole();
        const auto after = std::ranges::upper_bound(starts_, offset);
        const int row = static_cast<int>(after - starts_.begin()) - 1 - notesAbove();
        return std::clamp(row, 0, std::max(0, controller().diff().document().rowCount() - 1));
    }

    mutable int revision_ = 0; ///< of the diff that `text_` was made from
    mutable QString text_;
    mutable std::vector<int> starts_; ///< of each line in the text
};

QAccessibleInterface* makeInterface(const QString&, QObject* object)
{
    auto* const view = qobject_cast<DiffSectionView*>(object);
    return view ? new AccessibleDiff(view) : nullptr;
}

AccessibleDiff* interfaceOf(DiffSectionView* view)
{
    return dynamic_cast<AccessibleDiff*>(QAccessible::queryAccessibleInterface(view));
}

} // namespace

void installDiffAccessibility()
{
    static const bool isInstalled = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    Q_UNUSED(isInstalled)
}

void announceDiffChange(DiffSectionView* view)
{
    // Querying the interface would make it, which is wasted when no assistive technology runs.
    if (!QAccessible::isActive())
        return;
    if (AccessibleDiff* const interface = interfaceOf(view)) {
        interface->forget();
        QAccessibleEvent event(view, QAccessible::NameChanged);
        QAccessible::updateAccessibility(&event);
    }
}

void announceDiffCursor(DiffSectionView* view)
{
    if (!QAccessible::isActive() || !view->hasFocus())
        return;
    if (AccessibleDiff* const interface = interfaceOf(view)) {
        QAccessibleTextCursorEvent event(view, interface->cursorPosition());
        QAccessible::updateAccessibility(&event);
    }
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/PaneCycle.h"

#include "app/ui/widgets/FocusRing.h"

#include <QApplication>
#include <QShortcut>
#include <QWidget>

#include <algorithm>
#include <utility>
#include <vector>

namespace plovik {

namespace {

constexpr const char* paneProperty = "pane";

bool takesFocus(const QWidget* widget)
{
    return widget->isVisible() && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus);
}

/// Returns what gets the focus in a pane; null when nothing there can.
QWidget* targetIn(QWidget* pane)
{
    if (takesFocus(pane))
        return pane;
    const QList<QWidget*> inside = pane->findChildren<QWidget*>();
    const auto found = std::ranges::find_if(inside, takesFocus);
    return found == inside.end() ? nullptr : *found;
}

std::vector<QWidget*> panesOf(const QWidget& window)
{
    std::vector<std::pair<QPoint, QWidget*>> placed;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        const bool isPane = hasFocusRing(widget) || widget->property(paneProperty).toBool();
        if (isPane && widget->isVisible() && targetIn(widget))
            placed.emplace_back(widget->mapTo(&window, QPoint(0, 0)), widget);
    }
    std::ranges::sort(placed, {}, [](const auto& one) { return std::pair(one.first.x(), one.first.y()); });
    std::vector<QWidget*> panes;
    for (const auto& [place, widget] : placed)
        panes.push_back(widget);
    return panes;
}

} // namespace

void makePane(QWidget& widget) { widget.setProperty(paneProperty, true); }

PaneCycle::PaneCycle(QWidget& window) : QObject(&window), window_(window)
{
    const auto add = [this](const QKeySequence& keys, int step) {
        connect(new QShortcut(keys, &window_), &QShortcut::activated, this, [this, step] { move(step); });
    };
    add(Qt::Key_F6, 1);
    add(Qt::SHIFT | Qt::Key_F6, -1);
}

void PaneCycle::move(int step)
{
    const std::vector<QWidget*> panes = panesOf(window_);
    if (panes.empty())
        return;
    const auto count = std::ssize(panes);
    const QWidget* const focus = QApplication::focusWidget();
    const auto current =
        std::ranges::find_if(panes, [focus](QWidget* pane) { return pane == focus || pane->isAncestorOf(focus); });
    // From outside of all panes, as in the toolbar, the first or last one comes next.
    std::ptrdiff_t next = step > 0 ? 0 : count - 1;
    if (focus && current != panes.end())
        next = (current - panes.begin() + step + count) % count;
    targetIn(panes[static_cast<std::size_t>(next)])->setFocus(Qt::TabFocusReason);
}

} // namespace plovik

#include "moc_PaneCycle.cpp"

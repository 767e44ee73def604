// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commands/NavigationButtons.h"

#include "app/store/RepositoryStore.h"

#include <QApplication>
#include <QMouseEvent>
#include <QWidget>

namespace plovik {

NavigationButtons::NavigationButtons(RepositoryStore& store, QWidget& window)
    : QObject(&window), store_(store), window_(window)
{
    qApp->installEventFilter(this);
}

bool NavigationButtons::eventFilter(QObject* watched, QEvent* event)
{
    const bool isPress = event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!isPress && event->type() != QEvent::MouseButtonRelease)
        return false;
    const Qt::MouseButton button = static_cast<QMouseEvent*>(event)->button();
    if (button != Qt::BackButton && button != Qt::ForwardButton)
        return false;
    if (!watched->isWidgetType() || static_cast<QWidget*>(watched)->window() != &window_)
        return false;
    if (isPress && button == Qt::BackButton)
        store_.trail().goBack();
    else if (isPress)
        store_.trail().goForward();
    return true;
}

} // namespace plovik

#include "moc_NavigationButtons.cpp"

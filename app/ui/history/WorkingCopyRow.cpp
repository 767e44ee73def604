// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/WorkingCopyRow.h"

#include "app/ui/history/GraphCell.h"
#include "app/ui/widgets/RowPainting.h"

#include <QKeyEvent>
#include <QPainter>
#include <QStyle>

namespace plovik {

WorkingCopyRow::WorkingCopyRow(RepositoryStore& store, QWidget* parent) : QAbstractButton(parent), store_(store)
{
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(tr("Show the working copy"));
    connect(this, &QAbstractButton::clicked, this, [this] { store_.window().select(SidebarItem::workingCopy()); });
    const auto shows = [this] { showChanges(); };
    notifiers_.push_back(store_.snapshot().status.addNotifier(shows));
    notifiers_.push_back(store_.snapshot().hasLoaded.addNotifier(shows));
    notifiers_.push_back(store_.window().selection.addNotifier(shows));
    notifiers_.push_back(store_.history().isHistoryFiltered.addNotifier(shows));
    showChanges();
}

bool WorkingCopyRow::isWanted() const
{
    const bool isOfAll = store_.history().shownScope() == SidebarItem::history();
    return isOfAll && !store_.history().isHistoryFiltered.value() && !store_.changes().isReadOnly();
}

void WorkingCopyRow::showChanges()
{
    const auto count = static_cast<int>(store_.snapshot().status.value().files.size());
    setText(!store_.snapshot().hasLoaded.value() ? tr("Working Copy")
            : count == 0                         ? tr("Working Copy · No changes")
                                                 : tr("Working Copy · %Ln change(s)", nullptr, count));
    setAccessibleName(text());
    Q_EMIT wantedChanged();
    update();
}

void WorkingCopyRow::setTextLeft(double left)
{
    textLeft_ = left;
    update();
}

void WorkingCopyRow::paintEvent(QPaintEvent*)
{
    const Theme& theme = Theme::current();
    QPainter painter(this);
    painter.fillRect(rect(), theme.content);
    if (underMouse() || hasFocus()) {
        QColor tint = theme.selection;
        tint.setAlphaF(hasFocus() ? 1.0F : 0.4F);
        painter.fillRect(rect(), tint);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    if (textLeft_ > HistoryColumns::graphGap + GraphLanes::left) {
        painter.setPen(QPen(theme.lane(0), 1.5, Qt::DotLine));
        painter.setBrush(theme.content);
        const double x = isRightToLeft() ? width() - GraphLanes::left : GraphLanes::left;
        painter.drawEllipse(QPointF(x, height() / 2.0), 4, 4);
    }
    if (hasFocus()) {
        painter.setPen(QPen(theme.accent, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(1, 1, -1, -1));
    }
    const int left = static_cast<int>(textLeft_);
    const QRect area = QStyle::visualRect(layoutDirection(), rect(), rect().adjusted(left, 0, -12, 0));
    const bool hasChanges = !store_.snapshot().status.value().files.empty();
    paintText(painter, area, text(), Theme::font(), hasChanges ? theme.text : theme.secondaryText);
}

void WorkingCopyRow::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else if (event->key() == Qt::Key_Down)
        Q_EMIT leftDownwards();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace plovik

#include "moc_WorkingCopyRow.cpp"

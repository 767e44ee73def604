// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFilesList.h"

#include "app/ui/workingcopy/ChangedFileDelegate.h"
#include "app/ui/workingcopy/ChangedFilesModel.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>

namespace plovik {

ChangedFilesList::ChangedFilesList(QWidget* parent) : RowList(tr("Changed Files"), parent)
{
    setSelectionMode(ExtendedSelection);
    setItemDelegate(new ChangedFileDelegate(this));
}

QModelIndex ChangedFilesList::checkBoxAt(const QPoint& point) const
{
    const QModelIndex index = indexAt(point);
    const QPoint logical(isRightToLeft() ? viewport()->width() - 1 - point.x() : point.x(), point.y());
    return index.isValid() && ChangedFileDelegate::isOnCheckBox(visualRect(index), index, logical) ? index
                                                                                                   : QModelIndex();
}

bool ChangedFilesList::pressCheckBox(const QMouseEvent& event)
{
    const QModelIndex index = checkBoxAt(event.position().toPoint());
    isPressing_ = event.button() == Qt::LeftButton && index.isValid();
    pressed_ = isPressing_ ? index : QModelIndex();
    return isPressing_;
}

void ChangedFilesList::mousePressEvent(QMouseEvent* event)
{
    if (!pressCheckBox(*event))
        RowList::mousePressEvent(event);
}

void ChangedFilesList::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (pressCheckBox(*event))
        return;
    RowList::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
        Q_EMIT openRequested();
}

void ChangedFilesList::mouseMoveEvent(QMouseEvent* event)
{
    // A drag that began on a check box selects nothing.
    if (!isPressing_)
        RowList::mouseMoveEvent(event);
}

void ChangedFilesList::mouseReleaseEvent(QMouseEvent* event)
{
    if (!isPressing_ || event->button() != Qt::LeftButton) {
        RowList::mouseReleaseEvent(event);
        return;
    }
    isPressing_ = false;
    const QModelIndex index = checkBoxAt(event->position().toPoint());
    if (index.isValid() && index == pressed_)
        Q_EMIT checkBoxClicked(index);
}

bool ChangedFilesList::selectCurrent()
{
    if (!selectionModel()->hasSelection() && currentIndex().isValid())
        selectionModel()->select(currentIndex(), QItemSelectionModel::ClearAndSelect);
    return selectionModel()->hasSelection();
}

void ChangedFilesList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    void (ChangedFilesList::*request)() = nullptr;
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Space:
        request = &ChangedFilesList::toggleRequested;
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        request = &ChangedFilesList::openRequested;
        break;
    case Qt::Key_Delete:
        request = &ChangedFilesList::discardRequested;
        break;
    default:
        RowList::keyPressEvent(event);
        return;
    }
    // A key that is held asks only once.
    if (!event->isAutoRepeat() && selectCurrent())
        Q_EMIT(this->*request)();
}

void ChangedFilesList::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Keyboard && !selectCurrent())
        return;
    if (const std::optional<QPoint> position = menuPosition(*this, *event))
        Q_EMIT menuRequested(*position);
}

void ChangedFilesList::keyboardSearch(const QString& typed)
{
    const bool goesOn = sinceTyped_.isValid() && !sinceTyped_.hasExpired(QApplication::keyboardInputInterval());
    sinceTyped_.start();
    typed_ = goesOn ? typed_ + typed : typed;
    // Typing the same letter repeatedly steps through the files that begin with it.
    const bool isOneLetter = typed_.count(typed_.front(), Qt::CaseInsensitive) == typed_.size();
    const int from = currentIndex().row() + (isOneLetter ? 1 : 0);
    const auto& files = static_cast<const ChangedFilesModel&>(*model());
    if (const QModelIndex found = files.nextMatch(isOneLetter ? typed_.left(1) : typed_, from); found.isValid())
        setCurrentIndex(found);
}

} // namespace plovik

#include "moc_ChangedFilesList.cpp"

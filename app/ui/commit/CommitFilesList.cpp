// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFilesList.h"

#include "app/ui/commit/CommitFileDelegate.h"
#include "app/ui/commit/CommitFilesModel.h"
#include "app/ui/widgets/FileListTools.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include <utility>

namespace plovik {

CommitFilesList::CommitFilesList(QWidget* parent)
    : RowList(tr("Commit Files"), parent), files_(new CommitFilesModel(this))
{
    setModel(files_);
    setItemDelegate(new CommitFileDelegate(this));
    tools_ = new FileListTools(this, CommitFileDelegate::triangleLeft);
    connect(selectionModel(), &QItemSelectionModel::currentChanged, this, [this] {
        if (const std::optional<std::size_t> place = currentPlace())
            lastFile_ = static_cast<int>(*place);
        Q_EMIT currentFileChanged();
    });
    // A tree, a list or a filter that is left: the file stays current if it is there.
    connect(files_, &QAbstractItemModel::modelReset, this, [this] {
        if (!isFilling_ && lastFile_ < static_cast<int>(files().size()))
            setCurrentIndex(files_->indexOfFile(lastFile_));
    });
}

void CommitFilesList::setReading(std::shared_ptr<const CommitReading> reading)
{
    {
        const QScopedValueRollback filling(isFilling_, true);
        lastFile_ = 0;
        files_->setReading(std::move(reading));
    }
    if (const QModelIndex first = files().empty() ? QModelIndex() : files_->indexOfFile(0); first.isValid())
        setCurrentIndex(first);
    else
        Q_EMIT currentFileChanged();
}

void CommitFilesList::countsChanged() { files_->countsChanged(); }

const std::vector<gitkit::CommitFile>& CommitFilesList::files() const { return files_->files(); }

void CommitFilesList::setCurrentFile(std::size_t file)
{
    files_->openFor(static_cast<int>(file));
    setCurrentIndex(files_->indexOfFile(static_cast<int>(file)));
}

std::optional<std::size_t> CommitFilesList::currentPlace() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() ? std::optional(static_cast<std::size_t>(files_->fileOf(current))) : std::nullopt;
}

const gitkit::CommitFile* CommitFilesList::currentFile() const
{
    const QModelIndex current = currentIndex();
    return current.isValid() && !files_->isFolder(current) ? &files_->file(current) : nullptr;
}

void CommitFilesList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    switch (isPlain && currentFile() ? event->key() : 0) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        // A held key opens the file once.
        if (!event->isAutoRepeat())
            Q_EMIT openRequested();
        return;
    case Qt::Key_Space:
    case Qt::Key_Right:
        Q_EMIT diffFocusRequested();
        return;
    default:
        RowList::keyPressEvent(event);
    }
}

void CommitFilesList::mouseDoubleClickEvent(QMouseEvent* event)
{
    RowList::mouseDoubleClickEvent(event);
    if (event->button() == Qt::LeftButton && indexAt(event->position().toPoint()).isValid())
        Q_EMIT openRequested();
}

void CommitFilesList::contextMenuEvent(QContextMenuEvent* event)
{
    const std::optional<QPoint> position = menuPosition(*this, *event);
    if (!position)
        return;
    if (currentFile())
        Q_EMIT menuRequested(*position);
}

} // namespace plovik

#include "moc_CommitFilesList.cpp"

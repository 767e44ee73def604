// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/CommitFilesModel.h"

#include "app/ui/commit/StatusChip.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QLocale>

#include <algorithm>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

QString shownPath(const gitkit::CommitFile& file)
{
    const QString path = ShownLine::of(file.path).shown;
    return file.originalPath ? ShownLine::of(*file.originalPath).shown + u" → "_s + path : path;
}

char shownStatus(const gitkit::CommitFile& file) { return file.source ? '?' : file.status; }

void CommitFilesModel::setReading(std::shared_ptr<const CommitReading> reading)
{
    beginResetModel();
    reading_ = std::move(reading);
    measure();
    makeRows();
    endResetModel();
}

void CommitFilesModel::countsChanged()
{
    measure();
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void CommitFilesModel::measure()
{
    mostAdded_ = mostRemoved_ = 0;
    if (!reading_ || !reading_->counts)
        return;
    for (const gitkit::ChangeCounts& counts : *reading_->counts) {
        mostAdded_ = std::max(mostAdded_, counts.added.value_or(0));
        mostRemoved_ = std::max(mostRemoved_, counts.removed.value_or(0));
    }
}

const std::vector<gitkit::CommitFile>& CommitFilesModel::files() const
{
    static const std::vector<gitkit::CommitFile> none;
    return reading_ ? reading_->detail.files : none;
}

const gitkit::CommitFile& CommitFilesModel::file(const QModelIndex& index) const
{
    return files()[static_cast<std::size_t>(fileOf(index))];
}

const gitkit::ChangeCounts* CommitFilesModel::counts(const QModelIndex& index) const
{
    return reading_->countsOf(static_cast<std::size_t>(fileOf(index)));
}

QString CommitFilesModel::description(const QModelIndex& index) const
{
    QString status = statusDescription(shownStatus(file(index)));
    const gitkit::ChangeCounts* const known = counts(index);
    if (!known)
        return status;
    if (!known->added || !known->removed)
        return tr("%1, binary").arg(status);
    return tr("%1, %2 added, %3 removed")
        .arg(status, QLocale().toString(*known->added), QLocale().toString(*known->removed));
}

QVariant CommitFilesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    if (isFolder(index) || role == isFolderRole || role == depthRole)
        return FileRowsModel::data(index, role);
    switch (role) {
    case Qt::DisplayRole:
        return shownPath(file(index));
    case Qt::AccessibleTextRole:
        return ShownLine::of(file(index).path).shown;
    case Qt::AccessibleDescriptionRole:
        return description(index);
    case Qt::ToolTipRole:
        return plainToolTip(shownPath(file(index)) + u'\n' + description(index));
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_CommitFilesModel.cpp"

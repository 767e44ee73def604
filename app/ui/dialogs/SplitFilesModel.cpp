// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/SplitFilesModel.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QApplication>
#include <QFontMetrics>
#include <QSize>

#include <utility>

namespace plovik {

namespace {

constexpr int splitRowSpace = 10;

QString shownName(const gitkit::CommitFile& file)
{
    const QString path = shownText(file.path);
    switch (file.status) {
    case 'A':
        return SplitFilesModel::tr("%1 (new)").arg(path);
    case 'D':
        return SplitFilesModel::tr("%1 (deleted)").arg(path);
    case 'R':
    case 'C':
        return SplitFilesModel::tr("%1 → %2").arg(shownText(file.originalPath.value_or(std::string())), path);
    default:
        return path;
    }
}

Qt::CheckState tickOf(SplitChoice::Share share)
{
    if (share == SplitChoice::Share::some)
        return Qt::PartiallyChecked;
    return share == SplitChoice::Share::all ? Qt::Checked : Qt::Unchecked;
}

} // namespace

void SplitFilesModel::setFiles(std::vector<gitkit::CommitFile> files)
{
    beginResetModel();
    choice_ = SplitChoice(std::move(files));
    endResetModel();
}

void SplitFilesModel::setCounts(const std::vector<gitkit::ChangeCounts>& counts)
{
    choice_.setCounts(counts);
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1));
}

void SplitFilesModel::takeLines(std::size_t file, const gitkit::ParsedDiff& diff, const std::set<int>& lines,
                                SplitChoice::Into into)
{
    choice_.takeLines(file, diff, lines, into);
    const QModelIndex changed = index(static_cast<int>(file));
    Q_EMIT dataChanged(changed, changed, {Qt::CheckStateRole});
}

int SplitFilesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(choice_.files().size());
}

Qt::ItemFlags SplitFilesModel::flags(const QModelIndex& index) const
{
    return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
}

QVariant SplitFilesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const auto file = static_cast<std::size_t>(index.row());
    if (role == Qt::CheckStateRole)
        return tickOf(choice_.shareOf(file));
    if (role == Qt::ToolTipRole)
        return plainToolTip(shownName(choice_.files()[file]));
    if (role == Qt::SizeHintRole)
        return QSize(0, QFontMetrics(QApplication::font("QListView")).height() + splitRowSpace);
    return role == Qt::DisplayRole ? shownName(choice_.files()[file]) : QVariant();
}

bool SplitFilesModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole)
        return false;
    choice_.take(static_cast<std::size_t>(index.row()),
                 value.toInt() == Qt::Checked ? SplitChoice::Into::first : SplitChoice::Into::second);
    Q_EMIT dataChanged(index, index, {Qt::CheckStateRole});
    return true;
}

} // namespace plovik

#include "moc_SplitFilesModel.cpp"

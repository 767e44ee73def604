// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFilesModel.h"

#include "app/store/ShownText.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/widgets/RowPainting.h"

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Returns a hash of the paths and of which of them are in conflict, since those come first.
std::size_t hashOfRows(const std::vector<gitkit::FileChange>& files)
{
    std::size_t hash = files.size();
    for (const gitkit::FileChange& file : files)
        hash = (hash * 1099511628211U ^ std::hash<std::string>{}(file.path)) + (file.isConflicted ? 1 : 0);
    return hash;
}

/// What happened to a file and how much of it is staged, in words.
QString description(const gitkit::FileChange& file, gitkit::StageState state)
{
    const QString change = statusDescription(file.statusCode());
    switch (state) {
    case gitkit::StageState::full:
        return ChangedFilesModel::tr("%1, staged").arg(change);
    case gitkit::StageState::partial:
        return ChangedFilesModel::tr("%1, partially staged").arg(change);
    case gitkit::StageState::none:
        break;
    }
    if (file.isUntracked() || file.isConflicted)
        return change;
    return ChangedFilesModel::tr("%1, not staged").arg(change);
}

} // namespace

QString shownPath(const gitkit::FileChange& file)
{
    const QString path = shownText(file.path);
    return file.originalPath ? shownText(*file.originalPath) + u" → "_s + path : path;
}

Qt::CheckState checkState(gitkit::StageState state)
{
    switch (state) {
    case gitkit::StageState::full:
        return Qt::Checked;
    case gitkit::StageState::partial:
        return Qt::PartiallyChecked;
    case gitkit::StageState::none:
        break;
    }
    return Qt::Unchecked;
}

ChangedFilesModel::ChangedFilesModel(const RepositoryStore& store, QObject* parent)
    : QAbstractListModel(parent), store_(store), rowsHash_(hashOfRows(files())),
      rowCount_(static_cast<int>(files().size()))
{
    arrange();
}

void ChangedFilesModel::arrange()
{
    order_.clear();
    if (std::ranges::none_of(files(), &gitkit::FileChange::isConflicted))
        return;
    for (const bool isConflicted : {true, false}) {
        for (std::size_t place = 0; place < files().size(); ++place) {
            if (files()[place].isConflicted == isConflicted)
                order_.push_back(static_cast<std::uint32_t>(place));
        }
    }
}

std::size_t ChangedFilesModel::placeOf(int row) const
{
    const auto place = static_cast<std::size_t>(row);
    return place < order_.size() ? order_[place] : place;
}

void ChangedFilesModel::rebuild()
{
    const std::size_t hash = hashOfRows(files());
    const int count = static_cast<int>(files().size());
    if (hash == rowsHash_ && count == rowCount_) {
        if (count > 0)
            Q_EMIT dataChanged(index(0), index(count - 1));
        return;
    }
    beginResetModel();
    rowsHash_ = hash;
    rowCount_ = count;
    arrange();
    endResetModel();
}

void ChangedFilesModel::stagingChanged()
{
    if (rowCount_ > 0)
        Q_EMIT dataChanged(index(0), index(rowCount_ - 1), {Qt::CheckStateRole});
}

const gitkit::FileChange& ChangedFilesModel::file(const QModelIndex& index) const
{
    return files().at(placeOf(index.row()));
}

QModelIndex ChangedFilesModel::indexOf(const std::string& path) const
{
    const auto found = std::ranges::find(files(), path, &gitkit::FileChange::path);
    if (found == files().end())
        return {};
    const auto place = found - files().begin();
    const auto row = std::ranges::find(order_, static_cast<std::uint32_t>(place));
    return index(static_cast<int>(row == order_.end() ? place : row - order_.begin()));
}

int ChangedFilesModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rowCount_; }

QVariant ChangedFilesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || placeOf(index.row()) >= files().size())
        return {};
    const gitkit::FileChange& changed = file(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownText(changed.path);
    case Qt::CheckStateRole:
        return checkState(store_.staging().shownStageState(changed));
    case Qt::AccessibleDescriptionRole:
        return description(changed, store_.staging().shownStageState(changed));
    case Qt::ToolTipRole:
        return plainToolTip(shownPath(changed) + u'\n' +
                            description(changed, store_.staging().shownStageState(changed)));
    default:
        return {};
    }
}

Qt::ItemFlags ChangedFilesModel::flags(const QModelIndex& index) const
{
    return QAbstractListModel::flags(index) | Qt::ItemIsUserCheckable;
}

} // namespace plovik

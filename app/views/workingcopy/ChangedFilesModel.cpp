#include "app/views/workingcopy/ChangedFilesModel.h"

#include "app/views/RowPainting.h"
#include "app/views/ShownText.h"

#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

std::size_t hashOfPaths(const std::vector<gitkit::FileChange>& files)
{
    std::size_t hash = files.size();
    for (const gitkit::FileChange& file : files)
        hash = hash * 1099511628211U ^ std::hash<std::string>{}(file.path);
    return hash;
}

} // namespace

QString shownPath(const gitkit::FileChange& file)
{
    const QString path = shownText(file.path);
    return file.originalPath ? shownText(*file.originalPath) + u" → "_s + path : path;
}

ChangedFilesModel::ChangedFilesModel(const RepositoryStore& store, QObject* parent)
    : QAbstractListModel(parent), store_(store), pathsHash_(hashOfPaths(files())),
      rowCount_(static_cast<int>(files().size()))
{}

void ChangedFilesModel::rebuild()
{
    const std::size_t hash = hashOfPaths(files());
    const int count = static_cast<int>(files().size());
    if (hash == pathsHash_ && count == rowCount_) {
        if (count > 0)
            Q_EMIT dataChanged(index(0), index(count - 1));
        return;
    }
    beginResetModel();
    pathsHash_ = hash;
    rowCount_ = count;
    endResetModel();
}

const gitkit::FileChange& ChangedFilesModel::file(const QModelIndex& index) const
{
    return files().at(static_cast<std::size_t>(index.row()));
}

QModelIndex ChangedFilesModel::indexOf(const std::string& path) const
{
    const auto found = std::ranges::find(files(), path, &gitkit::FileChange::path);
    return found == files().end() ? QModelIndex() : index(static_cast<int>(found - files().begin()));
}

int ChangedFilesModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rowCount_; }

QVariant ChangedFilesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= files().size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownText(file(index).path);
    case Qt::AccessibleDescriptionRole:
        return statusDescription(file(index).statusCode());
    case Qt::ToolTipRole:
        return u"%1: %2"_s.arg(statusDescription(file(index).statusCode()), shownPath(file(index)));
    default:
        return {};
    }
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/ChangedFilesModel.h"

#include "app/store/ConflictWords.h"
#include "app/store/ShownText.h"
#include "app/ui/commit/StatusChip.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/TypedText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// What happened to a file and how much of it is staged, in words.
QString description(const gitkit::FileChange& file, gitkit::StageState state, const QString& conflict)
{
    QString change = statusDescription(file.statusCode());
    if (!conflict.isEmpty())
        return ChangedFilesModel::tr("%1: %2", "Conflicted: changed on both sides").arg(change, conflict);
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
    : FileRowsModel(parent), store_(store), arrangement_(files().arrangement()),
      fileCount_(static_cast<int>(files().size())), conflicts_(store.conflicts().list.addNotifier([this] {
          if (rowCount() > 0)
              Q_EMIT dataChanged(index(0), index(rowCount() - 1));
      }))
{}

QString ChangedFilesModel::conflictWords(const gitkit::FileChange& file) const
{
    const gitkit::Conflict* const conflict = file.isConflicted ? store_.conflicts().find(file.path) : nullptr;
    return conflict ? plovik::conflictWords::happened(*conflict, store_.conflicts().list.value().names) : QString();
}

std::size_t ChangedFilesModel::placeOf(int file) const
{
    const auto wanted = static_cast<std::size_t>(file);
    const std::vector<std::uint32_t>& first = files().conflicted();
    if (wanted < first.size())
        return first[wanted];
    // So many of the others stand before the one that is wanted, and so many of the first do.
    const std::size_t others = wanted - first.size();
    std::size_t before = 0;
    for (std::size_t end = first.size(); before < end;) {
        const std::size_t middle = (before + end) / 2;
        if (first[middle] - middle <= others)
            before = middle + 1;
        else
            end = middle;
    }
    return others + before;
}

int ChangedFilesModel::fileAt(std::size_t place) const
{
    const std::vector<std::uint32_t>& first = files().conflicted();
    const auto before = static_cast<std::size_t>(std::ranges::lower_bound(first, place) - first.begin());
    return static_cast<int>(files()[place].isConflicted ? before : place + first.size() - before);
}

void ChangedFilesModel::rebuild()
{
    const int count = static_cast<int>(files().size());
    folderStates_.clear();
    if (files().arrangement() == arrangement_ && count == fileCount_) {
        if (rowCount() > 0)
            Q_EMIT dataChanged(index(0), index(rowCount() - 1));
        return;
    }
    beginResetModel();
    arrangement_ = files().arrangement();
    fileCount_ = count;
    makeRows();
    endResetModel();
}

void ChangedFilesModel::stagingChanged()
{
    folderStates_.clear();
    if (rowCount() > 0)
        Q_EMIT dataChanged(index(0), index(rowCount() - 1), {Qt::CheckStateRole});
}

const gitkit::FileChange& ChangedFilesModel::file(const QModelIndex& index) const
{
    return files().at(placeOf(fileOf(index)));
}

bool ChangedFilesModel::startsClosed(int first, int end) const
{
    for (int file = first; file < end; ++file) {
        if (!files()[placeOf(file)].isUntracked())
            return false;
    }
    return true;
}

int ChangedFilesModel::endOfGroup(int file) const
{
    const int conflicted = static_cast<int>(files().conflicted().size());
    return file < conflicted ? conflicted : fileCount_;
}

Qt::CheckState ChangedFilesModel::stateOf(const QModelIndex& index) const
{
    const auto shown = [this](int file) {
        return checkState(store_.staging().shownStageState(files()[placeOf(file)]));
    };
    if (!isFolder(index))
        return shown(fileOf(index));
    const Row of = row(index);
    const auto [known, isNew] = folderStates_.try_emplace({of.first, of.end}, Qt::Unchecked);
    if (isNew) {
        const std::vector<int> inside = filesOf(index);
        known->second = shown(inside.front());
        if (!std::ranges::all_of(inside, [&, all = known->second](int file) { return shown(file) == all; }))
            known->second = Qt::PartiallyChecked;
    }
    return known->second;
}

QModelIndex ChangedFilesModel::indexOf(const std::string& path) const
{
    const auto [first, last] = files().placesOf(path);
    if (first != last)
        return indexOfFile(fileAt(first));
    return path.ends_with('/') ? indexOfFolder(path) : QModelIndex();
}

QModelIndex ChangedFilesModel::nextMatch(const QString& typed, int from) const
{
    QModelIndex byPath;
    const int rows = rowCount();
    for (int step = 0; step < rows; ++step) {
        const int row = (std::max(from, 0) + step) % rows;
        if (isFolder(index(row)))
            continue;
        const std::string_view path = file(index(row)).path;
        if (beginsWithTyped(path.substr(path.rfind('/') + 1), typed))
            return index(row);
        if (!byPath.isValid() && beginsWithTyped(path, typed))
            byPath = index(row);
    }
    return byPath;
}

QItemSelection ChangedFilesModel::rowsOf(const std::set<std::string>& paths) const
{
    std::vector<int> rows;
    std::map<int, int> hidden; // files in closed folders, by the folder's row
    for (const std::string& path : paths) {
        for (auto [place, end] = files().placesOf(path); place < end; ++place) {
            const QModelIndex at = indexOfFile(fileAt(place));
            if (at.isValid() && isFolder(at))
                ++hidden[at.row()];
            else if (at.isValid())
                rows.push_back(at.row());
        }
    }
    for (const auto& [folder, count] : hidden) {
        if (const Row of = row(index(folder)); count == of.end - of.first)
            rows.push_back(folder);
    }
    std::ranges::sort(rows);
    QItemSelection selection;
    for (std::size_t first = 0; first < rows.size();) {
        std::size_t last = first;
        while (last + 1 < rows.size() && rows[last + 1] == rows[last] + 1)
            ++last;
        selection.append(QItemSelectionRange(index(rows[first]), index(rows[last])));
        first = last + 1;
    }
    return selection;
}

QVariant ChangedFilesModel::data(const QModelIndex& index, int role) const
{
    // The status may be newer than the rows.
    if (!index.isValid() || placeOf(sourceOf(row(index).end - 1)) >= files().size())
        return {};
    if (role == Qt::CheckStateRole)
        return stateOf(index);
    if (isFolder(index) || role == isFolderRole || role == depthRole)
        return FileRowsModel::data(index, role);
    const gitkit::FileChange& changed = file(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownText(changed.path);
    case Qt::AccessibleDescriptionRole:
        return description(changed, store_.staging().shownStageState(changed), conflictWords(changed));
    case Qt::ToolTipRole:
        return plainToolTip(shownPath(changed) + u'\n' +
                            description(changed, store_.staging().shownStageState(changed), conflictWords(changed)));
    default:
        return {};
    }
}

Qt::ItemFlags ChangedFilesModel::flags(const QModelIndex& index) const
{
    return FileRowsModel::flags(index) | Qt::ItemIsUserCheckable;
}

} // namespace plovik

#include "moc_ChangedFilesModel.cpp"

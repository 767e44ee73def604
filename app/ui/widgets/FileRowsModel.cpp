// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/widgets/FileRowsModel.h"

#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/TypedText.h"

#include <QLocale>

#include <algorithm>
#include <numeric>

namespace plovik {

bool FileRowsModel::startsClosed(int, int) const { return false; }
int FileRowsModel::endOfGroup(int) const { return fileCount(); }

void FileRowsModel::setTree(bool isTree)
{
    if (isTree == isTree_)
        return;
    isTree_ = isTree;
    remake();
}

void FileRowsModel::setFilter(const QString& filter)
{
    if (filter == filter_)
        return;
    filter_ = filter;
    remake();
}

void FileRowsModel::remake()
{
    beginResetModel();
    makeRows();
    endResetModel();
}

void FileRowsModel::makeRows()
{
    kept_.clear();
    rows_.clear();
    if (isPlain())
        return;
    int count = fileCount();
    if (!filter_.isEmpty()) {
        for (int file = 0; file < count; ++file) {
            if (containsTyped(pathOf(file), filter_))
                kept_.push_back(file);
        }
        count = static_cast<int>(kept_.size());
    }
    if (isTree_) {
        for (int first = 0; first < count;) {
            const int behind = endOfGroup(sourceOf(first));
            int end = first;
            while (end < count && sourceOf(end) < behind)
                ++end;
            addRows(first, end, 0, 0);
            first = end;
        }
        return;
    }
    for (int place = 0; place < count; ++place)
        rows_.push_back({place, place + 1});
}

void FileRowsModel::addRows(int first, int end, int nameBegin, int depth)
{
    while (first < end) {
        const std::size_t slash = pathAt(first).find('/', static_cast<std::size_t>(nameBegin));
        // What git names like a folder, another repository, is a file here.
        if (slash == std::string_view::npos || slash + 1 == pathAt(first).size()) {
            rows_.push_back({first, first + 1, depth, nameBegin});
            ++first;
        } else {
            first = addFolder(first, end, nameBegin, static_cast<int>(slash), depth);
        }
    }
}

/// Returns where the folder's files end.
int FileRowsModel::addFolder(int first, int end, int nameBegin, int slash, int depth)
{
    const auto length = [](int at) { return static_cast<std::size_t>(at) + 1; };
    const int behind = endOfFolder(first, end, pathAt(first).substr(0, length(slash)));
    for (std::size_t next = 0; next != std::string_view::npos;) {
        next = pathAt(first).find('/', length(slash));
        if (next == std::string_view::npos || next + 1 == pathAt(first).size() ||
            endOfFolder(first, behind, pathAt(first).substr(0, next + 1)) != behind)
            break;
        slash = static_cast<int>(next);
    }
    const std::string_view folder = pathAt(first).substr(0, length(slash));
    const bool isOpen = !filter_.isEmpty() || !isClosed(folder, first, behind);
    rows_.push_back({first, behind, depth, nameBegin, slash + 1, isOpen});
    if (isOpen)
        addRows(first, behind, slash + 1, depth + 1);
    return behind;
}

int FileRowsModel::endOfFolder(int first, int end, std::string_view folder) const
{
    int behind = first + 1;
    while (behind < end && pathAt(behind).starts_with(folder))
        ++behind;
    return behind;
}

bool FileRowsModel::isClosed(std::string_view folder, int first, int end) const
{
    const bool starts = startsClosed(sourceOf(first), sourceOf(end - 1) + 1);
    return starts != turned_.contains(folder);
}

FileRowsModel::Row FileRowsModel::row(const QModelIndex& index) const
{
    if (isPlain())
        return {index.row(), index.row() + 1};
    return rows_[static_cast<std::size_t>(index.row())];
}

int FileRowsModel::fileOf(const QModelIndex& index) const { return sourceOf(row(index).first); }

std::vector<int> FileRowsModel::filesOf(const QModelIndex& index) const
{
    const Row of = row(index);
    std::vector<int> files(static_cast<std::size_t>(of.end - of.first));
    std::iota(files.begin(), files.end(), of.first);
    std::ranges::transform(files, files.begin(), [this](int place) { return sourceOf(place); });
    return files;
}

QModelIndex FileRowsModel::indexOfFile(int file) const
{
    if (isPlain())
        return index(file);
    const auto kept = std::ranges::lower_bound(kept_, file);
    if (!filter_.isEmpty() && (kept == kept_.end() || *kept != file))
        return {};
    const int place = filter_.isEmpty() ? file : static_cast<int>(kept - kept_.begin());
    // The rows' first files rise; of several rows with the same one, the last is the file or what hides it.
    const auto behind = std::ranges::upper_bound(rows_, place, {}, &Row::first);
    return behind == rows_.begin() ? QModelIndex() : index(static_cast<int>(behind - rows_.begin() - 1));
}

void FileRowsModel::setOpen(const QModelIndex& index, bool isOpen)
{
    if (!index.isValid() || !isFolder(index) || row(index).isOpen == isOpen || !filter_.isEmpty())
        return;
    const std::string folder = keyOf(index);
    if (!turned_.erase(folder))
        turned_.insert(folder);
    const int at = index.row();
    const Row before = row(index);
    std::vector<Row> all = std::move(rows_);
    rows_.clear();
    // Only the rows inside come or go, so that the others keep selection and place.
    if (isOpen) {
        addRows(before.first, before.end, before.folderEnd, before.depth + 1);
        const std::vector<Row> inside = std::exchange(rows_, std::move(all));
        beginInsertRows({}, at + 1, at + static_cast<int>(inside.size()));
        rows_[static_cast<std::size_t>(at)].isOpen = true;
        rows_.insert(rows_.begin() + at + 1, inside.begin(), inside.end());
        endInsertRows();
    } else {
        rows_ = std::move(all);
        int behind = at + 1;
        while (behind < rowCount() && rows_[static_cast<std::size_t>(behind)].depth > before.depth)
            ++behind;
        beginRemoveRows({}, at + 1, behind - 1);
        rows_[static_cast<std::size_t>(at)].isOpen = false;
        rows_.erase(rows_.begin() + at + 1, rows_.begin() + behind);
        endRemoveRows();
    }
    Q_EMIT dataChanged(index, index);
}

void FileRowsModel::openFor(int file)
{
    for (QModelIndex at = indexOfFile(file); at.isValid() && isFolder(at) && !row(at).isOpen; at = indexOfFile(file))
        setOpen(at, true);
}

std::string FileRowsModel::keyOf(const QModelIndex& index) const
{
    const Row of = row(index);
    const std::string_view path = pathAt(of.first);
    return std::string(of.folderEnd > 0 ? path.substr(0, static_cast<std::size_t>(of.folderEnd)) : path);
}

QModelIndex FileRowsModel::indexOfFolder(std::string_view path) const
{
    const auto found = std::ranges::find_if(rows_, [&](const Row& row) {
        return static_cast<std::size_t>(row.folderEnd) == path.size() && pathAt(row.first).starts_with(path);
    });
    return found == rows_.end() ? QModelIndex() : index(static_cast<int>(found - rows_.begin()));
}

int FileRowsModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid())
        return 0;
    return isPlain() ? fileCount() : static_cast<int>(rows_.size());
}

/// Tells what a folder's row tells; the files' rows belong to the model of the files.
QVariant FileRowsModel::data(const QModelIndex& index, int role) const
{
    if (role == isFolderRole)
        return isFolder(index);
    if (role == depthRole)
        return row(index).depth;
    const Row of = row(index);
    switch (role) {
    case Qt::DisplayRole:
        return shownText(pathAt(of.first).substr(static_cast<std::size_t>(of.nameBegin),
                                                 static_cast<std::size_t>(of.folderEnd - of.nameBegin)));
    case Qt::AccessibleTextRole:
        return shownText(keyOf(index));
    case Qt::ToolTipRole:
        return plainToolTip(shownText(keyOf(index)));
    case Qt::AccessibleDescriptionRole: {
        const QString files = tr("Folder, %Ln file(s)", nullptr, of.end - of.first);
        return of.isOpen ? files : tr("%1, folded").arg(files);
    }
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_FileRowsModel.cpp"

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractListModel>

#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// The rows of a list of files: one for each file, or as a tree with rows for the folders, which can be folded; of all
/// files, or of those whose path holds what the user types. Folders with nothing but one folder in them share its row.
/// A plain list of all files costs nothing for each file. Main thread.
///
/// Files are numbered from 0. Those of a folder stand next to each other, as sortForDisplay() leaves them.
class FileRowsModel : public QAbstractListModel {
    Q_OBJECT

public:
    using QAbstractListModel::QAbstractListModel;

    enum Role { isFolderRole = Qt::UserRole + 100, depthRole };

    struct Row {
        int first = 0;      ///< among the files that the filter lets through: the file, or the first one of the folder
        int end = 0;        ///< behind the last one
        int depth = 0;      ///< how many rows of folders it is in
        int nameBegin = 0;  ///< where its name begins in the path
        int folderEnd = 0;  ///< where the folder ends in the path, with its slash; 0 for a file
        bool isOpen = true; ///< of a folder
    };

    void setTree(bool isTree);
    bool isTree() const { return isTree_; }
    void setFilter(const QString& filter);
    const QString& filter() const { return filter_; }

    bool isFolder(const QModelIndex& index) const { return row(index).folderEnd > 0; }
    Row row(const QModelIndex& index) const;
    /// Returns the files of a row: one, or those of a folder that the filter lets through.
    std::vector<int> filesOf(const QModelIndex& index) const;
    /// Returns the file of a row, or the first one of a folder.
    int fileOf(const QModelIndex& index) const;
    /// Returns the row of a file, or that of the outermost folder that hides it. Invalid when the filter hides it.
    QModelIndex indexOfFile(int file) const;
    /// Opens or closes a folder.
    void setOpen(const QModelIndex& index, bool isOpen);
    /// Opens the folders that hide a file.
    void openFor(int file);
    /// Returns a folder's path with its slash, or a file's path.
    std::string keyOf(const QModelIndex& index) const;
    QModelIndex indexOfFolder(std::string_view path) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override
    {
        return QAbstractListModel::flags(index) | Qt::ItemIsDragEnabled;
    }

protected:
    virtual int fileCount() const = 0;
    virtual std::string_view pathOf(int file) const = 0;
    /// Returns whether a folder of these files is closed until the user opens it.
    virtual bool startsClosed(int first, int end) const;
    /// Returns where the next group begins, whose folders are apart from those before.
    virtual int endOfGroup(int file) const;
    /// Returns the file at a place that a Row names.
    int sourceOf(int place) const { return kept_.empty() ? place : kept_[static_cast<std::size_t>(place)]; }
    /// Makes the rows anew. To be called inside a reset, when the files have changed.
    void makeRows();

private:
    bool isPlain() const { return !isTree_ && filter_.isEmpty(); }
    std::string_view pathAt(int place) const { return pathOf(sourceOf(place)); }
    void addRows(int first, int end, int nameBegin, int depth);
    int addFolder(int first, int end, int nameBegin, int slash, int depth);
    int endOfFolder(int first, int end, std::string_view folder) const;
    bool isClosed(std::string_view folder, int first, int end) const;
    void remake();

    bool isTree_ = false;
    QString filter_;
    std::vector<int> kept_;                     ///< the files that the filter lets through; empty without a filter
    std::vector<Row> rows_;                     ///< whose files are places in `kept_`; empty for a plain list
    std::set<std::string, std::less<>> turned_; ///< the folders that are not as they start
};

} // namespace plovik

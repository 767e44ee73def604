// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commit/CommitReading.h"
#include "app/ui/widgets/RowList.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

namespace plovik {

class CommitFilesModel;
class FileListTools;

/// The files that a commit touched; a row's accessible name is the path. Return and a double click open the current
/// file, Space and Right move the keyboard focus to its diff. Main thread.
class CommitFilesList : public RowList {
    Q_OBJECT

public:
    explicit CommitFilesList(QWidget* parent = nullptr);

    /// Shows a commit's files and makes the first one current. A null reading shows no files.
    void setReading(std::shared_ptr<const CommitReading> reading);
    /// Must be called when the counts of the reading have changed.
    void countsChanged();
    const std::vector<gitkit::CommitFile>& files() const;
    /// The buttons and the field that belong to the list.
    FileListTools& tools() const { return *tools_; }
    /// Makes a file's row current.
    void setCurrentFile(std::size_t file);
    /// Returns the place of the current row's file, or of a folder's first one; nullopt when no row is current.
    std::optional<std::size_t> currentPlace() const;
    /// Returns the file of the current row, or nullptr when no row of a file is current.
    const gitkit::CommitFile* currentFile() const;

Q_SIGNALS:
    void currentFileChanged();
    void openRequested();
    void diffFocusRequested();
    /// Asks for the menu of the current file. `position` is in screen coordinates.
    void menuRequested(const QPoint& position);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    CommitFilesModel* files_;
    FileListTools* tools_;
    int lastFile_ = 0; ///< that was current
    bool isFilling_ = false;
};

} // namespace plovik

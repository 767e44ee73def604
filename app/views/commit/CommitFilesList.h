#pragma once

#include "GitKit/records/CommitFile.h"
#include "app/views/RowList.h"

#include <vector>

namespace plovik {

/// The files that a commit touched, each with its letter; a row's accessible name is the path. Main thread.
class CommitFilesList : public RowList {
    Q_OBJECT

public:
    explicit CommitFilesList(QWidget* parent = nullptr);

    /// Takes over another commit's files and makes the first one current.
    void setFiles(std::vector<gitkit::CommitFile> files);
    const std::vector<gitkit::CommitFile>& files() const;
    /// The file of the current row; null without one.
    const gitkit::CommitFile* currentFile() const;

Q_SIGNALS:
    void currentFileChanged();

protected:
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    class Model;
    class Delegate;

    Model* files_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileRevision.h"
#include "app/ui/widgets/RowList.h"

#include <QString>

#include <string>
#include <vector>

class QMenu;

namespace plovik {

/// The commits that touched a file, two lines a row: what and which commit, then who, when and, where it differs, the
/// path then. Main thread.
class FileHistoryList : public RowList {
    Q_OBJECT

public:
    explicit FileHistoryList(QWidget* parent = nullptr);

    /// `path` is what the file is called where it is looked at. Keeps the current row and the place where that row
    /// still is one; makes the first row current otherwise.
    void setRevisions(std::vector<gitkit::FileRevision> revisions, const std::string& path);
    const std::vector<gitkit::FileRevision>& revisions() const;
    /// Of the current row; null without one.
    const gitkit::FileRevision* current() const;

    /// The menu of the current row. The caller's to delete.
    QMenu* makeMenu();

Q_SIGNALS:
    void currentRevisionChanged();
    void commitRequested(const std::string& hash);
    void blameRequested(const gitkit::FileRevision& revision);
    void backRequested();
    /// The last rows have come into sight.
    void endReached();

protected:
    void scrollContentsBy(int dx, int dy) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;

private:
    class Model;
    class Delegate;

    bool isOnHash(QPoint point) const;
    void requestCurrent();

    Model* model_;
    Delegate* delegate_;
};

} // namespace plovik

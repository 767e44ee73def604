// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/FileRevision.h"
#include "app/ui/widgets/ContextMenuSource.h"
#include "app/ui/widgets/RowList.h"

#include <QString>

#include <string>
#include <vector>

class QMenu;

namespace plovik {

/// The commits that touched a file, two lines a row: subject and hash, then date, author and the path at that time where
/// it differs. Main thread.
class FileHistoryList : public RowList, public ContextMenuSource {
    Q_OBJECT

public:
    explicit FileHistoryList(QWidget* parent = nullptr);

    /// `path` is the name of the file in the revision that is inspected. Keeps the current row and its place when the
    /// commit is still in the list; otherwise makes the first row current.
    void setRevisions(std::vector<gitkit::FileRevision> revisions, const std::string& path);
    /// Adds rows below. Nothing moves.
    void addRevisions(std::vector<gitkit::FileRevision> revisions);
    /// Draws the rows paler, because another file's are being read.
    void setOutdated(bool isOutdated);
    bool isOutdated() const { return isOutdated_; }
    const std::vector<gitkit::FileRevision>& revisions() const;
    /// Returns the revision of the current row, or null when there is none.
    const gitkit::FileRevision* current() const;

    /// Returns a new menu for the current row. The caller deletes it.
    QMenu* makeMenu();

    /// Returns the menu of the current commit, or null when there is none.
    QMenu* makeContextMenu() override;

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
    bool isOutdated_ = false;
};

} // namespace plovik

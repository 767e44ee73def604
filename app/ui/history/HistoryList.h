// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/drag/DropArea.h"
#include "app/ui/history/HistoryModel.h"
#include "app/ui/history/HistoryRowPainter.h"
#include "app/ui/widgets/ContextMenuSource.h"
#include "app/ui/widgets/EqualRowList.h"

#include <vector>

namespace plovik {

class HistoryHeader;
class WorkingCopyRow;

/// The list of commits with the graph beside it. Its selection and the store's `selectedCommit` follow each other.
/// Main thread.
///
/// The list draws its rows itself instead of calling a delegate for each, so that graph lines join without a seam at
/// every scale factor. Relative dates are computed whenever a row is drawn, so no timer runs.
class HistoryList : public EqualRowList, public ContextMenuSource {
    Q_OBJECT

public:
    /// `store` outlives the list.
    explicit HistoryList(RepositoryStore& store, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {640, 320}; }

    QMenu* makeContextMenu() override;

Q_SIGNALS:
    /// Emitted when the end of the page is near and older commits exist.
    void moreWanted();

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void selectionChanged(const QItemSelection& selected, const QItemSelection& deselected) override;
    void scrollContentsBy(int dx, int dy) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    /// A visible row. The list uses it to find its place again after the page has changed.
    struct Anchor {
        std::string hash;
        int y = 0; ///< the row's top in the viewport
    };

    int rowAt(int y) const;
    int lastVisibleRow() const;
    int selectedRow() const;
    std::vector<gitkit::Commit> selectedCommits() const;
    QMenu* makeMenuOf(const gitkit::Commit& commit);
    void keepSelection();
    void selectAgain();
    HistoryColumns columns() const;
    void placeHeader();
    void showColumns();
    double logicalX(double x) const;
    void lookAtLanes();
    void takeColumnChoices(const QString& key);
    void hover(int row);
    void takeSearch();
    bool marksMatches() const;

    void followSelectedCommit();
    void reveal();
    void select(int row);
    void scrollNear(int row);
    void rememberPlace();
    void takeNewPage();
    void returnToPlace(const std::vector<Anchor>& place);
    void wantMoreNearEnd();
    void askForMore();
    bool handledAsReading(const QKeyEvent* event);
    bool handledAsPlan(const QKeyEvent* event);
    bool isPlanKey(const QKeyEvent& event) const;

    void beginDrag(QPoint pressed);
    std::vector<DropArea::Place> dropPlaces(QPoint position);

    bool showToolTip(QHelpEvent* event);
    void offerLabels(QPoint position);

    RepositoryStore& store_;
    HistoryModel* model_;
    HistoryRowPainter rowPainter_;
    HistoryHeader* header_;
    WorkingCopyRow* workingCopy_;
    int seenLanes_ = 1; ///< of the rows seen so far; the graph has room for them
    int hovered_ = -1;  ///< the row under the pointer
    std::vector<Anchor> place_;
    bool isRestoring_ = false; ///< the list changes its selection and place itself; the user does not
    bool isAsking_ = false;
    std::vector<std::string> kept_; ///< hashes of the selected rows, while the page is replaced
    bool isByKey_ = false;          ///< a key is changing the selection
    bool revealsWhenShown_ = false; ///< the selected row must be scrolled into view once the list is visible
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

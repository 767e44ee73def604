// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/RepositoryStore.h"
#include "app/ui/history/HistoryModel.h"
#include "app/ui/history/HistoryRowPainter.h"

#include <QListView>

#include <vector>

namespace plovik {

/// The list of commits with the graph beside it. Its selection is the store's `selectedCommit`, both ways.
///
/// Rows are drawn by the list itself rather than one delegate call each, so that lines join without a seam at every
/// scale factor. Nothing runs while nothing happens: relative dates are told anew whenever a row is drawn.
class HistoryList : public QListView {
    Q_OBJECT

public:
    explicit HistoryList(RepositoryStore& store, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {640, 320}; }

Q_SIGNALS:
    /// The end of the page is near and older commits exist. Asked once until the page has grown.
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

private:
    /// A row on screen, by which the list finds its place again in another page.
    struct Anchor {
        std::string hash;
        int y = 0; ///< its top in the viewport
    };

    int rowAt(int y) const;
    int lastVisibleRow() const;
    int selectedRow() const;
    HistoryColumns columns() const;

    void followSelectedCommit();
    void reveal();
    void select(int row);
    void scrollNear(int row);
    void rememberPlace();
    void takeNewPage();
    void returnToPlace(const std::vector<Anchor>& place);
    void wantMoreNearEnd();
    void askForMore();

    void paintSelection(QPainter& painter, int row) const;
    void paintGraph(QPainter& painter, int first, int last, const HistoryColumns& columns) const;
    void paintTexts(QPainter& painter, int first, int last, const HistoryColumns& columns);
    bool showToolTip(QHelpEvent* event);

    RepositoryStore& store_;
    HistoryModel* model_;
    HistoryRowPainter rowPainter_;
    std::vector<Anchor> place_;
    bool isRestoring_ = false; ///< selection and place follow the store and the page, not the user
    bool isAsking_ = false;
    bool isByKey_ = false;          ///< the selection changes because of a key
    bool revealsWhenShown_ = false; ///< the selected row was to be brought into sight while there was nothing to see
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

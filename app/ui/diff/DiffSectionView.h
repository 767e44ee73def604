// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/CutButton.h"
#include "app/ui/diff/DiffAnchor.h"
#include "app/ui/diff/DiffButtons.h"
#include "app/ui/diff/DiffController.h"
#include "app/ui/diff/DiffGeometry.h"
#include "app/ui/diff/DiffPointer.h"
#include "app/ui/diff/GapButtons.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QBasicTimer>
#include <QWidget>

#include <memory>

namespace plovik {

class DiffSectionBar;
class FunctionBar;

/// Shows one diff with its bar, as high as all of its lines; the view that it stands in scrolls it. Draws only what is
/// exposed, passes events on to the diff's controller, and follows its signals. Main thread.
class DiffSectionView : public QWidget, public ContextMenuSource {
    Q_OBJECT

public:
    DiffSectionView(std::shared_ptr<DiffController> controller, QWidget* parent);

    DiffController& controller() const { return *controller_; }
    DiffKind kind() const { return controller_->diff().content().kind; }
    DiffSectionBar& bar() const { return *bar_; }
    const DiffGeometry& places() const { return geometry_; }
    /// Returns where a row stands in this widget.
    QRect rowRect(int row) const { return geometry_.rowRect(row); }

    int heightFor(int width) const { return geometry_.heightFor(width, insetHeight(width)) + cutButton_->room(); }
    /// Wraps long lines anew for a width. Returns by how much what is looked at has moved down.
    int fit(int width);
    int hiddenWidth(int width) const { return geometry_.hiddenWidth(width); }
    void setOffset(int offset); ///< the horizontal scroll position
    void setVisibleTop(int y);  ///< what of this widget is scrolled out of sight at the top
    /// See DiffAnchor::walkStart().
    int walkStart(int direction) const { return anchor_.walkStart(direction, sight()); }

    /// Tints what a search has found here; null without a search. Not owned.
    void setFound(const DiffFound* found);
    /// Brings a run of a row's source into sight.
    void revealText(int row, qsizetype begin, qsizetype end);
    /// Shows a widget above the lines, as high as its width asks for. Takes ownership and deletes the one before. To be
    /// called again when that height has changed.
    void setInset(QWidget* inset);
    QWidget* inset() const { return inset_; }
    const DiffFound* found() const { return found_; }
    /// Returns how much of the lines is covered by what stays in sight at the top.
    int coveredHeight() const;

    /// Lets the tab key come here behind a widget, unless that is null, and go through the buttons. Returns the last one.
    QWidget* orderTabs(QWidget* before);

    QMenu* makeContextMenu() override;

public Q_SLOTS:
    void copy();
    void selectAll() { controller_->selectAll(); }

Q_SIGNALS:
    /// What was looked at has moved down by `shift`.
    void contentHeightChanged(int shift);
    void revealRequested(const QRect& area);
    void foundChanged();

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void followController();
    void forgetPointer();
    void showContent();
    void showRelaid();
    void updateOffers();
    void revealRows(int first, int last, int linesAround);
    void remeasure();
    /// Places what stands in this widget after its rows or their sizes have changed.
    void spread(int shift);
    void applyFonts();
    int insetHeight(int width) const { return inset_ ? inset_->heightForWidth(width) : 0; }
    /// Places what stands above and below the rows.
    void placeAround();
    void placeHunkButtons();
    DiffAnchor::Sight sight() const { return {visibleTop_, visibleRegion().boundingRect()}; }
    void hover(QPoint point);
    void pointAt(QPoint point);

    std::shared_ptr<DiffController> controller_;
    DiffGeometry geometry_;
    DiffPointer pointer_;
    DiffAnchor anchor_;
    DiffSectionBar* bar_;
    FunctionBar* functionBar_;
    CutButton* cutButton_;
    DiffButtons hunkButtons_{*this};
    QWidget* inset_ = nullptr;
    const DiffFound* found_ = nullptr;
    GapButton hoveredGap_;
    int visibleTop_ = 0;
    QBasicTimer dragTimer_; ///< scrolls on while the pointer rests outside
};

} // namespace plovik

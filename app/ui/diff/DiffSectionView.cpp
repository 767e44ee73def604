// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffSectionView.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/ui/diff/DiffAccessible.h"
#include "app/ui/diff/DiffKeys.h"
#include "app/ui/diff/DiffMenu.h"
#include "app/ui/diff/DiffSectionBar.h"
#include "app/ui/diff/DiffSectionPainter.h"
#include "app/ui/diff/FunctionBar.h"
#include "app/ui/widgets/RowPainting.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QPushButton>

#include <algorithm>
#include <utility>

namespace plovik {

namespace {

constexpr int scrollEvery = 40; ///< milliseconds

/// Lets the tab key go from one widget to the other. Returns the other.
QWidget* orderTab(QWidget* before, QWidget* next)
{
    if (before && before->nextInFocusChain() != next)
        QWidget::setTabOrder(before, next);
    return next;
}

} // namespace

DiffSectionView::DiffSectionView(std::shared_ptr<DiffController> controller, QWidget* parent)
    : QWidget(parent), controller_(std::move(controller)), geometry_(controller_->diff()),
      pointer_(*controller_, geometry_), anchor_(*controller_, geometry_), bar_(new DiffSectionBar(this)),
      functionBar_(new FunctionBar(controller_->diff(), geometry_, this)), cutButton_(new CutButton(*controller_, this))
{
    installDiffAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    bar_->hide();
    functionBar_->hide();
    followController();
    connect(bar_, &DiffSectionBar::triggered, this, [this](DiffAction::Verb verb, DiffAction::Part part) {
        controller_->request(controller_->activeHunk(), verb, part);
    });
    connect(&hunkButtons_, &DiffButtons::triggered, this, [this](DiffAction::Verb verb, DiffAction::Part part) {
        controller_->request(controller_->activeHunk(), verb, part);
    });
    // The hunk of the current line may be out of sight when the keyboard comes to its buttons.
    connect(&hunkButtons_, &DiffButtons::focused, this, [this] {
        if (const int hunk = controller_->activeHunk(); hunk >= 0)
            Q_EMIT revealRequested(
                rowRect(controller_->diff().document().hunks()[static_cast<std::size_t>(hunk)].first));
    });
    connect(functionBar_, &FunctionBar::pressed, this, [this](int row) { Q_EMIT revealRequested(rowRect(row)); });
    connect(cutButton_, &CutButton::focused, this, [this] { Q_EMIT revealRequested(cutButton_->geometry()); });
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::codeFontName.key) || key == QLatin1String(settings::codeFontSize.key))
            applyFonts();
        if (key == QLatin1String(settings::tabWidth.key))
            controller_->setTabWidth(CodeFont::tabWidth());
    });
    controller_->setTabWidth(CodeFont::tabWidth());
    remeasure();
}

void DiffSectionView::followController()
{
    DiffController* const controller = controller_.get();
    connect(controller, &DiffController::aboutToReplace, this, [this](DiffPlace place) {
        anchor_.holdWholeFile(place, sight());
        forgetPointer();
        hoveredGap_ = {};
    });
    connect(controller, &DiffController::contentChanged, this, &DiffSectionView::showContent);
    connect(controller, &DiffController::aboutToRelay, this,
            [this](std::optional<int> row) { anchor_.hold(row, sight()); });
    connect(controller, &DiffController::relaid, this, &DiffSectionView::showRelaid);
    connect(controller, &DiffController::offersChanged, this, &DiffSectionView::updateOffers);
    connect(controller, &DiffController::revealRequested, this, &DiffSectionView::revealRows);
    connect(controller, &DiffController::selectionChanged, this, [this] {
        updateOffers();
        announceDiffCursor(this);
    });
    connect(controller, &DiffController::looksChanged, this, [this] {
        placeHunkButtons();
        update();
    });
}

void DiffSectionView::showContent()
{
    const DiffContent& content = controller_->diff().content();
    setAccessibleName(content.name);
    bar_->setText(content.title, content.detail);
    bar_->setVisible(!content.title.isEmpty());
    cutButton_->follow();
    remeasure();
    updateOffers();
    announceDiffChange(this);
}

void DiffSectionView::forgetPointer()
{
    pointer_.release();
    dragTimer_.stop();
}

void DiffSectionView::showRelaid()
{
    forgetPointer();
    geometry_.measure();
    spread(anchor_.release());
    updateOffers();
    announceDiffChange(this);
    hover(underMouse() ? mapFromGlobal(QCursor::pos()) : QPoint(-1, -1));
    if (const std::optional<int> shift = anchor_.releaseWholeFile(sight()))
        Q_EMIT contentHeightChanged(*shift);
}

void DiffSectionView::remeasure()
{
    geometry_.measure();
    spread(0);
}

void DiffSectionView::spread(int shift)
{
    Q_EMIT contentHeightChanged(shift);
    placeAround();
    placeHunkButtons();
    functionBar_->follow(visibleTop_);
    update();
}

void DiffSectionView::applyFonts()
{
    hunkButtons_.applyFont();
    anchor_.hold({}, sight());
    geometry_.measure();
    spread(anchor_.release());
}

void DiffSectionView::setInset(QWidget* inset)
{
    if (inset_ && inset_ != inset) {
        inset_->hide();
        inset_->deleteLater();
    }
    const bool isNew = inset_ != inset;
    inset_ = inset;
    if (inset_ && isNew) {
        inset_->setParent(this);
        bar_->raise();
    }
    placeAround();
    if (inset_)
        inset_->show();
    remeasure();
}

void DiffSectionView::placeAround()
{
    geometry_.setInsetHeight(insetHeight(width()));
    if (inset_)
        inset_->setGeometry(0, geometry_.insetTop(), width(), insetHeight(width()));
    cutButton_->place(geometry_.heightFor(width(), insetHeight(width())));
}

int DiffSectionView::fit(int width)
{
    if (width == geometry_.width() || !controller_->diff().wraps())
        return 0;
    anchor_.hold({}, sight());
    geometry_.setWidth(width);
    return anchor_.release();
}

void DiffSectionView::setOffset(int offset)
{
    if (offset == geometry_.offset())
        return;
    geometry_.setOffset(offset);
    update(geometry_.rowsArea());
}

void DiffSectionView::setVisibleTop(int y)
{
    visibleTop_ = y;
    bar_->move(0, std::clamp(y, 0, std::max(0, height() - DiffSectionBar::barHeight())));
    functionBar_->follow(visibleTop_);
}

int DiffSectionView::coveredHeight() const { return geometry_.barHeight() + functionBar_->mostHeight(); }

void DiffSectionView::setFound(const DiffFound* found)
{
    found_ = found;
    update();
    Q_EMIT foundChanged();
}

void DiffSectionView::revealText(int row, qsizetype begin, qsizetype end)
{
    constexpr int aside = 60;
    const int lines = 2 * geometry_.metrics().lineHeight;
    const QRect area = geometry_.lineOf(row, begin);
    Q_EMIT revealRequested(area.adjusted(0, -lines, 0, lines));
    if (const int beyond = geometry_.xOf(row, end) - geometry_.cellWidth(); beyond > 0)
        Q_EMIT revealRequested(QRect(width() + beyond + aside, area.top(), 1, area.height()));
    if (const int hidden = geometry_.xOf(row, begin) - geometry_.metrics().codeLeft; hidden < 0)
        Q_EMIT revealRequested(QRect(hidden - aside, area.top(), 1, area.height()));
}

void DiffSectionView::revealRows(int first, int last, int linesAround)
{
    const int around = linesAround * geometry_.metrics().lineHeight;
    if (last != first || around > 0)
        Q_EMIT revealRequested(rowRect(last).adjusted(0, 0, 0, around));
    // The first row comes last, so that it is in sight where there is no room for all of them.
    Q_EMIT revealRequested(rowRect(first).adjusted(0, -around, 0, 0));
}

void DiffSectionView::updateOffers()
{
    bar_->setOffers(barOffers(*controller_));
    hunkButtons_.show(hunkOffers(*controller_));
    functionBar_->raise();
    bar_->raise();
    orderTabs(nullptr);
    placeHunkButtons();
    update();
}

QWidget* DiffSectionView::orderTabs(QWidget* before)
{
    QWidget* last = orderTab(before, this);
    for (const DiffButtons* const row : {&bar_->buttons(), &std::as_const(hunkButtons_)}) {
        for (const auto& [verb, button] : row->all())
            last = orderTab(last, button);
    }
    return orderTab(last, cutButton_);
}

void DiffSectionView::placeHunkButtons()
{
    const int hunk = controller_->activeHunk();
    if (hunk < 0)
        return;
    const int header = controller_->diff().document().hunks()[static_cast<std::size_t>(hunk)].first;
    hunkButtons_.place(rowRect(header).adjusted(0, 0, -DiffMetrics::margin, 0));
}

void DiffSectionView::hover(QPoint point)
{
    const DiffDocument& document = controller_->diff().document();
    const GapButton button = gapButtonAt(document, geometry_, point);
    const int row = geometry_.rowAt(point);
    const bool tellsMove = row >= 0 && geometry_.isInGutter(point.x());
    setToolTip(plainToolTip(tellsMove && button.row < 0 ? movedText(document, row) : gapButtonTitle(document, button)));
    if (button == hoveredGap_)
        return;
    hoveredGap_ = button;
    update();
}

void DiffSectionView::pointAt(QPoint point)
{
    setCursor(pointer_.isOverText(point) ? Qt::IBeamCursor : Qt::ArrowCursor);
    hover(point);
    const int row = geometry_.rowAt(point);
    const int hunk = row < 0 ? controller_->hoveredHunk() : controller_->diff().document().row(row).hunk;
    if (hunk == controller_->hoveredHunk())
        return;
    // The buttons go with the pointer, and the focus must not go with the buttons.
    if (hunkButtons_.haveFocus())
        setFocus(Qt::MouseFocusReason);
    controller_->setHoveredHunk(hunk);
}

void DiffSectionView::copy()
{
    if (const QString text = controller_->diff().textOf(controller_->selection()); !text.isEmpty())
        QApplication::clipboard()->setText(text);
}

bool DiffSectionView::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride && isDiffKey(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void DiffSectionView::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setLayoutDirection(Qt::LeftToRight); // as code is
    DiffSectionPainter(*controller_, geometry_, hunkButtons_, {found_, hoveredGap_, hasFocus()})
        .paint(painter, event->rect());
}

void DiffSectionView::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    geometry_.setWidth(width());
    bar_->resize(width(), DiffSectionBar::barHeight());
    setVisibleTop(visibleTop_);
    placeAround();
    placeHunkButtons();
}

void DiffSectionView::changeEvent(QEvent* event)
{
    QWidget::changeEvent(event);
    if (event->type() == QEvent::PaletteChange)
        update();
    else if (event->type() == QEvent::ApplicationFontChange)
        applyFonts();
}

void DiffSectionView::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    const int row = geometry_.rowAt(point);
    if (event->button() != Qt::LeftButton || row < 0) {
        QWidget::mousePressEvent(event);
        return;
    }
    pointer_.putCursor(point);
    const ShownDiff& diff = controller_->diff();
    if (const GapButton gap = gapButtonAt(diff.document(), geometry_, point); gap.row >= 0) {
        press(*controller_, gap);
        return;
    }
    if (diff.document().row(row).kind == DiffDocument::Kind::hunk) {
        // On a touch screen no movement announces a press: the button may be drawn here and stand elsewhere.
        pointAt(point);
        if (auto* const button = qobject_cast<QPushButton*>(childAt(point))) {
            button->click();
            return;
        }
    }
    pointer_.press(point, event->modifiers());
    if (pointer_.isDragging())
        dragTimer_.start(scrollEvery, this);
}

void DiffSectionView::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (pointer_.isDragging())
        pointer_.dragTo(point);
    else
        pointAt(point);
}

void DiffSectionView::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != dragTimer_.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    const QPoint point = pointer_.point();
    if (visibleRegion().boundingRect().contains(point))
        return;
    // After scrolling, the resting pointer is over another line.
    const QPoint before = mapToParent(QPoint());
    Q_EMIT revealRequested(QRect(point, QSize(1, 1)));
    pointer_.dragTo(point + before - mapToParent(QPoint()));
}

void DiffSectionView::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    forgetPointer();
}

void DiffSectionView::mouseDoubleClickEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (geometry_.isInGutter(point.x()) || geometry_.rowAt(point) < 0)
        mousePressEvent(event);
    else
        pointer_.selectWord(point);
}

void DiffSectionView::leaveEvent(QEvent* event)
{
    QWidget::leaveEvent(event);
    hover({-1, -1});
    // The buttons stay while the pointer is on its way to them; with the focus they go to the keyboard's hunk.
    if (!pointer_.isDragging() && controller_->currentRow() >= 0 && hasFocus())
        controller_->setHoveredHunk(-1);
}

void DiffSectionView::keyPressEvent(QKeyEvent* event)
{
    const int page = std::max(1, visibleRegion().boundingRect().height() / geometry_.metrics().lineHeight - 3);
    if (event->matches(QKeySequence::Copy))
        copy();
    else if (event->matches(QKeySequence::SelectAll))
        selectAll();
    else if (!handleDiffKey(*controller_, *event, page))
        QWidget::keyPressEvent(event);
}

void DiffSectionView::contextMenuEvent(QContextMenuEvent* event)
{
    if (event->reason() == QContextMenuEvent::Mouse)
        pointAt(event->pos());
    const int current = controller_->currentRow();
    const bool isByKeyboard = event->reason() == QContextMenuEvent::Keyboard && current >= 0;
    const QPoint below =
        isByKeyboard ? rowRect(current).bottomLeft() + QPoint(geometry_.metrics().codeLeft, 0) : QPoint();
    makeDiffMenu(*this)->popup(isByKeyboard ? mapToGlobal(below) : event->globalPos());
}

QMenu* DiffSectionView::makeContextMenu() { return makeDiffMenu(*this); }

} // namespace plovik

#include "moc_DiffSectionView.cpp"

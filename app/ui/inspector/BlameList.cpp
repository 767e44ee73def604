// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameList.h"

#include "app/settings/CodeFont.h"
#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/history/RowText.h"
#include "app/ui/inspector/BlameMenu.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/RowList.h"
#include "app/ui/widgets/RowPainting.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <QWheelEvent>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace plovik {

/// Draws rows from the left edge of the view, also while the code is scrolled sideways.
class BlameList::Delegate : public QStyledItemDelegate {
public:
    explicit Delegate(BlameList* list) : QStyledItemDelegate(list), list_(list) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        BlameRowPainter::Look look;
        look.offset = list_->horizontalOffset();
        // The first row counts as in sight while at least half of it is.
        look.topRow = (list_->verticalOffset() + list_->rows_.rowHeight() / 2) / list_->rows_.rowHeight();
        look.isSelected = option.state & QStyle::State_Selected;
        look.isCurrent = list_->hasFocus() && index == list_->currentIndex();
        look.found = list_->found_;
        look.offersBefore = index.row() == list_->hovered_ && list_->reasonAgainstBefore(index.row()).isEmpty();
        const QRect area(0, option.rect.top(), list_->viewport()->width(), option.rect.height());
        ++list_->linesDrawn_;
        list_->rows_.paint(*painter, index.row(), area, look);
    }

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override
    {
        return {list_->rows_.contentWidth(), list_->rows_.rowHeight()};
    }

private:
    BlameList* list_;
};

BlameList::BlameList(QWidget* parent) : QListView(parent), model_(new BlameModel(this))
{
    setAccessibleName(tr("Blame"));
    giveFocusRing(*this);
    setLayoutDirection(Qt::LeftToRight); // as code is
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setSelectionRectVisible(false);
    setItemDelegate(new Delegate(this));
    setModel(model_);
    viewport()->setMouseTracking(true);
    auto* const corner = new QWidget;
    corner->setBackgroundRole(QPalette::Base);
    corner->setAutoFillBackground(true);
    setCornerWidget(corner);
    measure();
    connect(&Settings::shared(), &Settings::changed, this, [this](const QString& key) {
        if (key == QLatin1String(settings::codeFontName.key) || key == QLatin1String(settings::codeFontSize.key) ||
            key == QLatin1String(settings::blameGutterWidth.key))
            measure();
        if (key == QLatin1String(settings::tabWidth.key)) {
            rows_.takeTabWidth();
            measure();
        }
    });
}

void BlameList::takeDocument(std::shared_ptr<const BlameDocument> document)
{
    hovered_ = pressed_ = -1;
    rows_.setDocument(document);
    model_->setDocument(std::move(document));
    measure();
}

void BlameList::setDocument(std::shared_ptr<const BlameDocument> document, Place place)
{
    Hold hold{place.row, place.y, place.row, place.row, place.row};
    if (place.row < 0)
        hold = {0, 0, 0, -1, -1};
    replaceDocument(std::move(document), hold);
    if (place.row < 0)
        horizontalScrollBar()->setValue(0);
}

BlameList::Hold BlameList::hold() const
{
    const std::vector<int> selected = selectedRows();
    const int top = topRow();
    return {top, placeOf(top).y, currentRow(), selected.empty() ? -1 : selected.front(),
            selected.empty() ? -1 : selected.back()};
}

void BlameList::replaceDocument(std::shared_ptr<const BlameDocument> document, const Hold& hold)
{
    const int x = horizontalScrollBar()->value();
    takeDocument(std::move(document));
    // Making a row current must not scroll, since `hold` says where the rows stand.
    setAutoScroll(false);
    selectionModel()->setCurrentIndex(model_->index(hold.current), QItemSelectionModel::NoUpdate);
    if (hold.firstSelected >= 0 && hold.lastSelected >= hold.firstSelected)
        selectionModel()->select({model_->index(hold.firstSelected), model_->index(hold.lastSelected)},
                                 QItemSelectionModel::ClearAndSelect);
    setAutoScroll(true);
    scrollRowTo({hold.top, hold.y});
    horizontalScrollBar()->setValue(x);
}

void BlameList::setSyntax(std::shared_ptr<const FileSyntax> syntax)
{
    rows_.setSyntax(std::move(syntax));
    viewport()->update();
}

void BlameList::scrollRowTo(Place place)
{
    doItemsLayout();
    verticalScrollBar()->setValue(place.row * rows_.rowHeight() - place.y);
}

BlameList::Place BlameList::placeOf(int row) const { return {row, row * rows_.rowHeight() - verticalOffset()}; }

int BlameList::topRow() const { return std::min(verticalOffset() / rows_.rowHeight(), model_->rowCount() - 1); }

std::vector<int> BlameList::selectedRows() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.push_back(row);
    }
    std::ranges::sort(rows);
    return rows;
}

void BlameList::measure()
{
    const int top = topRow();
    const int before = rows_.rowHeight();
    rows_.measure(width(), static_cast<int>(Settings::shared().value(settings::blameGutterWidth)));
    horizontalScrollBar()->setSingleStep(20);
    scheduleDelayedItemsLayout();
    if (before != rows_.rowHeight() && top > 0)
        scrollRowTo({top, 0});
    viewport()->update();
}

void BlameList::copy()
{
    const std::vector<int> rows = selectedRows();
    if (rows.empty())
        return;
    QString text;
    for (const int row : rows)
        text += textOf(document()->text(row)) + u'\n';
    if (rows.size() == 1)
        text.chop(1);
    QGuiApplication::clipboard()->setText(text);
}

QString BlameList::reasonAgainstBefore(int row) const
{
    if (row < 0 || !document() || document()->previous(row))
        return {};
    return document()->commit(row).isUncommitted
               ? tr("The file is not committed yet: there is nothing before these lines.")
               : tr("This commit made the file: there is nothing before it.");
}

void BlameList::askForBefore(int row)
{
    if (row >= 0 && reasonAgainstBefore(row).isEmpty())
        Q_EMIT beforeRequested(row);
}

void BlameList::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    // The columns go on below the last line.
    const int end = placeOf(model_->rowCount()).y;
    if (model_->rowCount() == 0 || end >= viewport()->height())
        return;
    QPainter painter(viewport());
    painter.setLayoutDirection(Qt::LeftToRight); // as code is
    painter.fillRect(QRect(0, end, rows_.annotationWidth(), viewport()->height() - end), blameTint(0));
    painter.fillRect(
        QRect(rows_.annotationWidth(), end, rows_.codeLeft() - rows_.annotationWidth(), viewport()->height() - end),
        blameTint(0));
}

void BlameList::scrollTo(const QModelIndex& index, ScrollHint hint)
{
    // Every row is as wide as the widest line, so going to a row must not scroll sideways.
    const int x = horizontalScrollBar()->value();
    QListView::scrollTo(index, hint);
    horizontalScrollBar()->setValue(x);
}

void BlameList::scrollContentsBy(int dx, int dy)
{
    QListView::scrollContentsBy(dx, dy);
    // The left columns do not move with the code, and the row that shows the commit at the top changes.
    viewport()->update();
}

void BlameList::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    measure();
}

void BlameList::changeEvent(QEvent* event)
{
    QListView::changeEvent(event);
    if (event->type() == QEvent::FontChange)
        measure();
}

void BlameList::wheelEvent(QWheelEvent* event)
{
    if (!event->modifiers().testFlag(Qt::ControlModifier)) {
        turned_ = 0;
        QListView::wheelEvent(event);
        return;
    }
    turned_ = CodeFont::changeSizeByWheel(turned_ + event->angleDelta().y());
    event->accept();
}

bool BlameList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip) {
        const auto* const help = static_cast<QHelpEvent*>(event);
        showAbout(help->globalPos(), help->pos());
        return true;
    }
    if (event->type() == QEvent::Leave)
        pointAt({-1, -1});
    return QListView::viewportEvent(event);
}

void BlameList::showAbout(QPoint global, QPoint point)
{
    const QModelIndex index = indexAt(point);
    if (!index.isValid() || point.x() >= rows_.annotationWidth()) {
        QToolTip::hideText();
        return;
    }
    const int row = index.row();
    const QRect area(0, placeOf(row).y, rows_.annotationWidth(), rows_.rowHeight());
    const QString text = isOnBeforeButton(point) ? tr("Blame Before This Commit (B)") : model_->about(row);
    QToolTip::showText(global, plainToolTip(text), viewport(), area);
}

bool BlameList::isOnBeforeButton(QPoint point) const
{
    if (hovered_ < 0 || !reasonAgainstBefore(hovered_).isEmpty())
        return false;
    const QRect area(0, placeOf(hovered_).y, viewport()->width(), rows_.rowHeight());
    return rows_.beforeButton(area).contains(point);
}

bool BlameList::isOnGutterEdge(QPoint point) const
{
    constexpr int reach = 4;
    return std::abs(point.x() - rows_.annotationWidth()) <= reach && model_->rowCount() > 0;
}

void BlameList::setFound(const DiffFound* found)
{
    found_ = found;
    viewport()->update();
}

void BlameList::reveal(const DiffFound::Run& match)
{
    selectionModel()->setCurrentIndex(model_->index(match.row), QItemSelectionModel::ClearAndSelect);
    const auto [left, right] = rows_.spanOf(match);
    const int room = viewport()->width() - rows_.codeLeft();
    QScrollBar* const bar = horizontalScrollBar();
    if (right - bar->value() > room || left < bar->value())
        bar->setValue(left - room / 4);
}

void BlameList::pointAt(QPoint point)
{
    if (isOnGutterEdge(point)) {
        viewport()->setCursor(Qt::SplitHCursor);
        return;
    }
    const bool isInside = point.x() >= 0 && point.x() < rows_.annotationWidth();
    const int row = isInside ? indexAt(point).row() : -1;
    viewport()->setCursor(row >= 0 ? Qt::PointingHandCursor : Qt::ArrowCursor);
    if (row == hovered_)
        return;
    hovered_ = row;
    viewport()->update(QRect(0, 0, rows_.annotationWidth(), viewport()->height()));
}

void BlameList::mouseMoveEvent(QMouseEvent* event)
{
    if (isResizing_) {
        Settings::shared().set(settings::blameGutterWidth, std::max(1.0, event->position().x()));
        return;
    }
    pointAt(event->position().toPoint());
    // A drag that began at a commit selects no lines.
    if (pressed_ < 0)
        QListView::mouseMoveEvent(event);
}

void BlameList::mousePressEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    pointAt(point);
    isResizing_ = event->button() == Qt::LeftButton && isOnGutterEdge(point);
    if (isResizing_)
        return;
    pressed_ = event->button() == Qt::LeftButton ? hovered_ : -1;
    pressedButton_ = pressed_ >= 0 && isOnBeforeButton(point);
    if (!pressedButton_)
        QListView::mousePressEvent(event);
}

void BlameList::mouseReleaseEvent(QMouseEvent* event)
{
    const QPoint point = event->position().toPoint();
    if (std::exchange(isResizing_, false))
        return;
    const int pressed = std::exchange(pressed_, -1);
    const bool wasButton = std::exchange(pressedButton_, false);
    if (!wasButton)
        QListView::mouseReleaseEvent(event);
    pointAt(point);
    if (pressed < 0 || pressed != hovered_ || event->button() != Qt::LeftButton)
        return;
    if (!wasButton)
        Q_EMIT commitRequested(pressed);
    else if (isOnBeforeButton(point))
        askForBefore(pressed);
}

/// A double click on the gutter's edge makes it as wide as needed again.
void BlameList::mouseDoubleClickEvent(QMouseEvent* event)
{
    if (isOnGutterEdge(event->position().toPoint()))
        Settings::shared().set(settings::blameGutterWidth, 0);
    else
        QListView::mouseDoubleClickEvent(event);
}

void BlameList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = (event->modifiers() & ~Qt::KeypadModifier) == Qt::NoModifier;
    const int row = currentRow();
    if (event->matches(QKeySequence::Copy)) {
        copy();
        return;
    }
    switch (isPlain ? event->key() : 0) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (row >= 0 && !event->isAutoRepeat())
            Q_EMIT commitRequested(row);
        return;
    case Qt::Key_B:
        if (!event->isAutoRepeat())
            askForBefore(row);
        return;
    case Qt::Key_Backspace:
        if (!event->isAutoRepeat())
            Q_EMIT backRequested();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
        horizontalScrollBar()->triggerAction(event->key() == Qt::Key_Left ? QScrollBar::SliderSingleStepSub
                                                                          : QScrollBar::SliderSingleStepAdd);
        return;
    case Qt::Key_Escape:
        event->ignore();
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void BlameList::contextMenuEvent(QContextMenuEvent* event)
{
    const std::optional<QPoint> position = menuPosition(*this, *event);
    if (!position)
        return;
    if (QMenu* const menu = makeContextMenu()) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(*position);
    }
}

QMenu* BlameList::makeContextMenu() { return currentRow() < 0 || !document() ? nullptr : makeBlameMenu(*this); }

// Letters are commands here, so typing does not search.
void BlameList::keyboardSearch(const QString&) {}

} // namespace plovik

#include "moc_BlameList.cpp"

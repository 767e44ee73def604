// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryList.h"

#include "app/store/ShownText.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/history/CommitMenu.h"
#include "app/ui/history/GraphCell.h"
#include "app/ui/history/HistoryBody.h"
#include "app/ui/history/HistoryHeader.h"
#include "app/ui/history/PlanBar.h"
#include "app/ui/history/PlanSigns.h"
#include "app/ui/history/RowText.h"
#include "app/ui/history/WorkingCopyRow.h"
#include "app/ui/widgets/RowPainting.h"

#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QMenu>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>

#include <algorithm>

namespace plovik {

namespace {

/// Older commits are asked for this many rows before the end, so that a held Page Down does not wait for them.
constexpr int rowsAhead = 1500;
constexpr std::size_t mostSelected = 1000;

class RowHeight : public QStyledItemDelegate {
public:
    RowHeight(const HistoryRowPainter& painter, QObject* parent) : QStyledItemDelegate(parent), painter_(painter) {}
    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {0, painter_.rowHeight()}; }

private:
    const HistoryRowPainter& painter_;
};

constexpr CommandId planKeys[] = {CommandId::editCommitMessage, CommandId::squashIntoParent, CommandId::moveCommitUp,
                                  CommandId::moveCommitDown, CommandId::dropCommit};

/// The graph's room grows by so many lanes at once.
constexpr int laneStep = 4;

} // namespace

HistoryList::HistoryList(RepositoryStore& store, QWidget* parent)
    : EqualRowList(parent), store_(store), model_(new HistoryModel(store, this)), header_(new HistoryHeader(this)),
      workingCopy_(new WorkingCopyRow(store, this))
{
    setAccessibleName(tr("History"));
    setSelectionMode(ExtendedSelection);
    setItemDelegate(new RowHeight(rowPainter_, this));
    setModel(model_);
    // paintEvent() paints the whole viewport, so filling the background first would waste time.
    viewport()->setAutoFillBackground(false);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);

    viewport()->setMouseTracking(true);
    setAutoFillBackground(true);
    setBackgroundRole(QPalette::Base);
    connect(&Settings::shared(), &Settings::changed, this, &HistoryList::takeColumnChoices);
    connect(workingCopy_, &WorkingCopyRow::wantedChanged, this, &HistoryList::placeHeader);
    connect(workingCopy_, &WorkingCopyRow::leftDownwards, this, [this] { setFocus(Qt::OtherFocusReason); });
    placeHeader();
    setDragged([this](QPoint pressed) { beginDrag(pressed); });
    new DropArea(store, *viewport(), [this](QPoint position) { return dropPlaces(position); });
    new DropArea(store, *workingCopy_, [this](QPoint) {
        return std::vector{DropArea::Place{{DropTarget::Kind::workingCopy}, workingCopy_->rect()}};
    });

    // Connected after setModel(), so that the view and its selection have handled the reset before takeNewPage().
    connect(model_, &QAbstractItemModel::modelAboutToBeReset, this, &HistoryList::keepSelection);
    connect(model_, &QAbstractItemModel::modelReset, this, &HistoryList::takeNewPage);

    const auto repaint = [this] { showColumns(); };
    connect(model_, &QAbstractItemModel::rowsInserted, this, &HistoryList::lookAtLanes);
    notifiers_.push_back(store_.history().isHistoryFiltered.addNotifier(repaint));
    notifiers_.push_back(store_.history().isOutdated.addNotifier(repaint));
    notifiers_.push_back(store_.window().selectedCommit.addNotifier([this] { followSelectedCommit(); }));
    notifiers_.push_back(store_.history().commitReveals.addNotifier([this] { reveal(); }));
    notifiers_.push_back(store_.history().hasMoreHistory.addNotifier([this] { wantMoreNearEnd(); }));
    const auto search = [this] { takeSearch(); };
    notifiers_.push_back(store_.history().historySearch.addNotifier(search));
    notifiers_.push_back(store_.history().historySearchField.addNotifier(search));
    notifiers_.push_back(store_.history().searchesInGraph.addNotifier(repaint));
    notifiers_.push_back(store_.matches().changes.addNotifier(repaint));
    notifiers_.push_back(store_.rewriting().plan.addNotifier(repaint));
    notifiers_.push_back(store_.rewriting().marks.addNotifier(repaint));
    notifiers_.push_back(store_.rewriting().movable.addNotifier(repaint));
    takeSearch();
    followSelectedCommit();
    revealsWhenShown_ = true;
}

bool HistoryList::marksMatches() const
{
    return store_.history().searchesInGraph.value() && store_.matches().count() > 0;
}

/// Marks in the texts of the rows what is searched for.
void HistoryList::takeSearch()
{
    rowPainter_.setMarks(store_.history().searchMarks());
    viewport()->update();
}

int HistoryList::rowAt(int y) const { return (y + verticalOffset()) / rowPainter_.rowHeight(); }

int HistoryList::lastVisibleRow() const { return std::min(rowAt(viewport()->height() - 1), model_->rowCount() - 1); }

int HistoryList::selectedRow() const
{
    if (!selectionModel() || !selectionModel()->hasSelection())
        return -1;
    // Of several the one that was reached last is shown.
    const int current = currentIndex().row();
    return selectionModel()->isSelected(model_->index(current)) ? current : selectionModel()->selection().front().top();
}

/// Returns the selected commits, the newest first, and no more than can be worked with.
std::vector<gitkit::Commit> HistoryList::selectedCommits() const
{
    std::vector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom() && rows.size() < mostSelected; ++row)
            rows.push_back(row);
    }
    std::ranges::sort(rows);
    std::vector<gitkit::Commit> commits;
    for (const int row : rows) {
        if (std::optional<HistoryRow> shown = model_->row(row))
            commits.push_back(std::move(shown->commit));
    }
    return commits;
}

void HistoryList::keepSelection()
{
    isRestoring_ = true;
    kept_.clear();
    if (selectionModel()->hasSelection()) {
        for (const gitkit::Commit& commit : selectedCommits())
            kept_.push_back(commit.hash);
    }
}

/// Selects what was selected besides the current row before the page was replaced.
void HistoryList::selectAgain()
{
    for (const std::string& hash : std::exchange(kept_, {})) {
        if (const int row = model_->rowOf(hash); row >= 0 && selectionModel()->hasSelection())
            selectionModel()->select(model_->index(row), QItemSelectionModel::Select);
    }
}

HistoryColumns HistoryList::columns() const
{
    return rowPainter_.columns(viewport()->width(), store_.history().isHistoryFiltered.value() ? 0 : seenLanes_);
}

void HistoryList::placeHeader()
{
    const int titles = header_->sizeHint().height();
    const int row = workingCopy_->isWanted() ? rowPainter_.rowHeight() : 0;
    workingCopy_->setVisible(row > 0);
    if (viewportMargins().top() != titles + row)
        setViewportMargins(0, titles + row, 0, 0);
    const int top = frameWidth();
    header_->setGeometry(viewport()->x(), top, viewport()->width(), titles);
    workingCopy_->setGeometry(viewport()->x(), top + titles, viewport()->width(), row);
    showColumns();
}

/// Returns where a place of the viewport would be if rows were read from left to right.
double HistoryList::logicalX(double x) const { return isRightToLeft() ? viewport()->width() - x : x; }

void HistoryList::showColumns()
{
    const HistoryColumns shown = columns();
    header_->setColumns(shown);
    workingCopy_->setTextLeft(shown.subjectLeft);
    viewport()->update();
}

/// Widens the graph when rows come into sight that have more lanes. It gets no narrower while the list is the same, so
/// that the subjects do not move to and fro.
void HistoryList::lookAtLanes()
{
    int lanes = seenLanes_;
    for (int row = std::max(0, rowAt(0)); row <= lastVisibleRow(); ++row) {
        if (const std::optional<HistoryRow> shown = model_->row(row))
            lanes = std::max(lanes, lanesOf(shown->graph));
    }
    lanes = (lanes + laneStep - 1) / laneStep * laneStep;
    lanes = std::min(lanes, std::max(seenLanes_, store_.history().graphLanes.value()));
    if (std::exchange(seenLanes_, lanes) != lanes)
        showColumns();
}

void HistoryList::takeColumnChoices(const QString& key)
{
    if (!key.startsWith(QLatin1StringView("history")))
        return;
    rowPainter_.reset();
    showColumns();
}

// Selection.

void HistoryList::selectionChanged(const QItemSelection& selected, const QItemSelection& deselected)
{
    EqualRowList::selectionChanged(selected, deselected);
    if (isRestoring_)
        return;
    const std::string hash = model_->hash(selectedRow());
    if (!hash.empty() && isByKey_)
        store_.window().selectCommit(hash, WindowState::Step::passing);
    else
        store_.window().selectCommit(hash.empty() ? std::nullopt : std::optional(hash));
}

void HistoryList::followSelectedCommit()
{
    const auto& wanted = store_.window().selectedCommit.value();
    if (model_->hash(selectedRow()) == wanted.value_or(std::string()))
        return;
    const int row = wanted ? model_->rowOf(*wanted) : -1;
    if (row >= 0)
        scrollNear(row);
    select(row);
}

void HistoryList::reveal()
{
    revealsWhenShown_ = !isVisible();
    const int row = selectedRow();
    if (!isVisible() || row < 0)
        return;
    scrollNear(row);
    scrollTo(model_->index(row));
}

void HistoryList::select(int row)
{
    const QScopedValueRollback restoring(isRestoring_, true);
    const QModelIndex index = model_->index(row);
    if (index.isValid())
        selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    else
        selectionModel()->clearSelection();
}

void HistoryList::scrollNear(int row)
{
    const int height = rowPainter_.rowHeight();
    const int y = row * height - verticalOffset();
    if (y < -height || y > viewport()->height())
        scrollTo(model_->index(row), PositionAtCenter);
}

// Keeping the place in a page that changes.

void HistoryList::rememberPlace()
{
    place_.clear();
    const int height = rowPainter_.rowHeight();
    // A list at its top stays there, so that new commits are seen.
    if (verticalOffset() == 0)
        return;
    for (int row = rowAt(0); row <= lastVisibleRow(); ++row) {
        place_.push_back({model_->hash(row), row * height - verticalOffset()});
    }
}

void HistoryList::returnToPlace(const std::vector<Anchor>& place)
{
    for (const Anchor& anchor : place) {
        if (const int row = model_->rowOf(anchor.hash); row >= 0) {
            verticalScrollBar()->setValue(row * rowPainter_.rowHeight() - anchor.y);
            return;
        }
    }
}

void HistoryList::takeNewPage()
{
    const std::vector<Anchor> place = std::exchange(place_, {});
    if (place.empty())
        seenLanes_ = 1;
    setAutoScroll(false);
    if (const auto& commit = store_.window().selectedCommit.value())
        select(model_->rowOf(*commit));
    selectAgain();
    setAutoScroll(true);
    doItemsLayout();
    returnToPlace(place);
    isRestoring_ = false;
    rememberPlace();
    lookAtLanes();
}

void HistoryList::scrollContentsBy(int dx, int dy)
{
    EqualRowList::scrollContentsBy(dx, dy);
    if (!isRestoring_)
        rememberPlace();
    lookAtLanes();
    // Back at the top, nobody waits for the end.
    if (dy > 0 && verticalOffset() == 0 && store_.history().isReadingToEnd.value())
        store_.history().stopReading();
    wantMoreNearEnd();
}

void HistoryList::resizeEvent(QResizeEvent* event)
{
    EqualRowList::resizeEvent(event);
    placeHeader();
    lookAtLanes();
    if (!isRestoring_)
        rememberPlace();
    wantMoreNearEnd();
}

void HistoryList::showEvent(QShowEvent* event)
{
    EqualRowList::showEvent(event);
    store_.rewriting().watch();
    wantMoreNearEnd();
    // Posted, because the list gets its final size only after this event.
    if (revealsWhenShown_)
        QMetaObject::invokeMethod(this, &HistoryList::reveal, Qt::QueuedConnection);
}

// Posted, because the answer can arrive at once while the list is still scrolling.
void HistoryList::wantMoreNearEnd()
{
    if (isAsking_)
        return;
    isAsking_ = true;
    QMetaObject::invokeMethod(this, &HistoryList::askForMore, Qt::QueuedConnection);
}

void HistoryList::askForMore()
{
    isAsking_ = false;
    const int count = model_->rowCount();
    if (!isVisible() || count == 0 || !store_.history().hasMoreHistory.value())
        return;
    const int below = count - 1 - lastVisibleRow();
    if (below == 0 || (verticalOffset() > 0 && below <= std::min(rowsAhead, count / 2)))
        Q_EMIT moreWanted();
}

// Input.

void HistoryList::keyPressEvent(QKeyEvent* event)
{
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (isPlain && event->key() == Qt::Key_Up && selectedRow() == 0 && workingCopy_->isVisible()) {
        workingCopy_->setFocus(Qt::OtherFocusReason);
        return;
    }
    if (isPlain && (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)) {
        store_.history().moveCommitSelection(event->key() == Qt::Key_Up ? -1 : 1);
        event->accept();
        return;
    }
    if (handledAsReading(event) || handledAsPlan(event))
        return;
    const QScopedValueRollback byKey(isByKey_, true);
    EqualRowList::keyPressEvent(event);
}

/// End reads the rest of the history first, and then selects its last commit. Home, Escape and the way back to the top
/// end that.
bool HistoryList::handledAsReading(const QKeyEvent* event)
{
    const bool isReading = store_.history().isReadingToEnd.value();
    const bool isPlain = !(event->modifiers() & ~Qt::KeypadModifier);
    if (isPlain && event->key() == Qt::Key_End && store_.history().hasUnreadRows()) {
        if (!isReading)
            store_.history().readToEnd();
        return true;
    }
    if (isReading && (event->key() == Qt::Key_Home || event->key() == Qt::Key_Escape))
        store_.history().stopReading();
    return isReading && event->key() == Qt::Key_Escape;
}

/// The keys of the plan, which mean something else in other views.
bool HistoryList::isPlanKey(const QKeyEvent& event) const
{
    const QKeyCombination keys(event.modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event.key()));
    const bool isPlanned = store_.rewriting().plan.value().has_value();
    if (keys == applyPlanKeys || keys == cancelPlanKeys)
        return isPlanned;
    return std::ranges::any_of(planKeys, [&keys](CommandId id) { return keys == command(id).keys; });
}

bool HistoryList::handledAsPlan(const QKeyEvent* event)
{
    if (!isPlanKey(*event))
        return false;
    const QKeyCombination keys(event->modifiers() & ~Qt::KeypadModifier, static_cast<Qt::Key>(event->key()));
    if (keys == applyPlanKeys || keys == cancelPlanKeys) {
        const Command& meant = command(keys == applyPlanKeys ? CommandId::applyPlan : CommandId::cancelPlan);
        if (meant.isOffered(store_))
            meant.run(store_);
        return true;
    }
    const std::unique_ptr<QMenu> menu(makeContextMenu());
    for (QAction* const entry : menu ? menu->findChildren<QAction*>() : QList<QAction*>()) {
        const std::optional<CommandId> id = commandOf(*entry);
        if (!id || command(*id).keys != keys)
            continue;
        if (entry->isEnabled())
            entry->trigger();
        else
            store_.window().tell(store_.rewriting().whyNot({model_->hash(selectedRow())}));
        break;
    }
    return true;
}

void HistoryList::contextMenuEvent(QContextMenuEvent* event)
{
    const bool byKeyboard = event->reason() == QContextMenuEvent::Keyboard;
    const int row = byKeyboard ? selectedRow() : rowAt(event->pos().y());
    const std::optional<HistoryRow> shown = model_->row(row);
    if (!shown)
        return;
    QPoint place = event->globalPos();
    if (byKeyboard)
        place = viewport()->mapToGlobal(QPoint(static_cast<int>(logicalX(columns().subjectLeft)),
                                               (row + 1) * rowPainter_.rowHeight() - verticalOffset()));
    QMenu* menu = makeMenuOf(shown->commit);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

QMenu* HistoryList::makeContextMenu()
{
    const std::optional<HistoryRow> selected = model_->row(selectedRow());
    return selected ? makeMenuOf(selected->commit) : nullptr;
}

/// Makes the menu of a commit, or of all that are selected if it is one of several.
QMenu* HistoryList::makeMenuOf(const gitkit::Commit& commit)
{
    const std::vector<gitkit::Commit> selected = selectedCommits();
    const bool isOneOfSeveral =
        selected.size() > 1 && std::ranges::find(selected, commit.hash, &gitkit::Commit::hash) != selected.end();
    return isOneOfSeveral ? makeCommitsMenu(store_, selected, this) : makeCommitMenu(store_, commit, this);
}

bool HistoryList::viewportEvent(QEvent* event)
{
    if (event->type() == QEvent::ToolTip)
        return showToolTip(static_cast<QHelpEvent*>(event));
    if (event->type() == QEvent::Leave)
        hover(-1);
    return EqualRowList::viewportEvent(event);
}

void HistoryList::mouseMoveEvent(QMouseEvent* event)
{
    EqualRowList::mouseMoveEvent(event);
    hover(rowAt(event->position().toPoint().y()));
}

void HistoryList::mouseReleaseEvent(QMouseEvent* event)
{
    EqualRowList::mouseReleaseEvent(event);
    if (event->button() == Qt::LeftButton)
        offerLabels(event->position().toPoint());
}

/// Shows the refs that a "+3" stands for. The chosen one is selected in the sidebar.
void HistoryList::offerLabels(QPoint position)
{
    const std::optional<HistoryRow> row = model_->row(rowAt(position.y()));
    if (!row)
        return;
    const auto labels = rowPainter_.collapsedLabels(*row, columns(), logicalX(position.x()));
    if (labels.empty())
        return;
    QMenu* const menu = makeLabelsMenu(store_, labels, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(viewport()->mapToGlobal(position));
}

/// Drags the label that was pressed, or else the selected commits.
void HistoryList::beginDrag(QPoint pressed)
{
    const std::optional<HistoryRow> row = model_->row(rowAt(pressed.y()));
    if (!row)
        return;
    if (const auto found = rowPainter_.labelAt(*row, columns(), logicalX(pressed.x()))) {
        if (const std::string name = gitkit::fullNameOf(found->label); !name.empty())
            drag(*this, store_, {Dragged::Kind::ref, {name}}, shownLine(found->label.name));
        return;
    }
    Dragged dragged{.kind = Dragged::Kind::commits};
    const std::vector<gitkit::Commit> commits = selectedCommits();
    for (const gitkit::Commit& commit : commits) {
        dragged.names.push_back(commit.hash);
        dragged.hasMerge = dragged.hasMerge || commit.parents.size() > 1;
    }
    if (!commits.empty())
        drag(*this, store_, dragged,
             commits.size() == 1 ? shownLine(commits.front().subject)
                                 : tr("%Ln commit(s)", nullptr, static_cast<int>(commits.size())));
}

/// A label is before its row.
std::vector<DropArea::Place> HistoryList::dropPlaces(QPoint position)
{
    const int number = rowAt(position.y());
    const std::optional<HistoryRow> row = model_->row(number);
    std::vector<DropArea::Place> places;
    if (!row)
        return places;
    const QRect area = visualRect(model_->index(number));
    if (const auto found = rowPainter_.labelAt(*row, columns(), logicalX(position.x()))) {
        const QRect label(static_cast<int>(found->left) - 2, area.top() + 2, static_cast<int>(found->width) + 4,
                          area.height() - 4);
        places.push_back({{DropTarget::Kind::ref, gitkit::fullNameOf(found->label)},
                          QStyle::visualRect(layoutDirection(), viewport()->rect(), label)});
    }
    // Near its edges, what is between it and its neighbours is meant.
    const int near = area.height() / 4;
    const bool isAbove = position.y() < area.top() + near;
    if (isAbove || position.y() > area.bottom() - near) {
        const std::string beneath = isAbove ? row->commit.hash : model_->hash(number + 1);
        const bool isMovable = store_.rewriting().find(beneath) || store_.rewriting().find(row->commit.hash);
        const QRect line(area.left(), (isAbove ? area.top() : area.bottom() + 1) - 2, area.width(), 4);
        if (isMovable)
            places.push_back({{DropTarget::Kind::aboveCommit, store_.rewriting().find(beneath) ? beneath : ""}, line});
    }
    places.push_back({{DropTarget::Kind::commit, row->commit.hash}, area});
    return places;
}

void HistoryList::hover(int row)
{
    if (row == hovered_)
        return;
    hovered_ = row;
    viewport()->update();
}

bool HistoryList::showToolTip(QHelpEvent* event)
{
    const std::optional<HistoryRow> row = model_->row(rowAt(event->pos().y()));
    QString text = row ? rowPainter_.toolTip(*row, columns(), logicalX(event->pos().x())) : QString();
    if (const PlanSign sign = row ? planSignOf(store_.rewriting(), row->commit.hash) : PlanSign();
        !sign.toolTip.isEmpty())
        text = sign.toolTip;
    if (text.isEmpty())
        QToolTip::hideText();
    else
        QToolTip::showText(event->globalPos(), plainToolTip(text), viewport());
    return true;
}

void HistoryList::changeEvent(QEvent* event)
{
    EqualRowList::changeEvent(event);
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::ApplicationFontChange:
    case QEvent::StyleChange:
    case QEvent::LocaleChange:
        rowPainter_.reset();
        placeHeader();
        scheduleDelayedItemsLayout();
        break;
    case QEvent::LayoutDirectionChange:
        // Posted, because the viewport and the titles turn round only after this event.
        QMetaObject::invokeMethod(this, &HistoryList::placeHeader, Qt::QueuedConnection);
        break;
    default:
        break;
    }
}

void HistoryList::paintEvent(QPaintEvent* event)
{
    executeDelayedItemsLayout();
    QPainter painter(viewport());
    HistoryBody::Sight sight;
    sight.scrolled = verticalOffset();
    sight.size = viewport()->size();
    sight.isMirrored = isRightToLeft();
    sight.isOutdated = store_.history().isOutdated.value();
    sight.isSelected = [this](int row) { return selectionModel()->isSelected(model_->index(row)); };
    sight.hovered = hovered_;
    sight.lanes = seenLanes_;
    sight.rewriting = &store_.rewriting();
    sight.matches = marksMatches() ? &store_.matches() : nullptr;
    HistoryBody(*model_, rowPainter_, columns(), sight).paint(painter, event->rect());
}

} // namespace plovik

#include "moc_HistoryList.cpp"

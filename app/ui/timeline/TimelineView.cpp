// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/TimelineView.h"

#include "app/settings/Settings.h"
#include "app/ui/timeline/StepDetailView.h"
#include "app/ui/timeline/StepMenu.h"
#include "app/ui/timeline/TimelineDelegate.h"
#include "app/ui/timeline/TimelineModel.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/RowList.h"
#include "app/ui/widgets/ScrollKeeper.h"
#include "app/ui/widgets/SplitPane.h"

#include <QItemSelectionModel>
#include <QMenu>
#include <QScopedValueRollback>

namespace plovik {

namespace {

constexpr double leastStepHeight = 120;
constexpr double leastTimelineHeight = 90;

} // namespace

TimelineView::TimelineView(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), model_(new TimelineModel(this)), list_(new RowList(tr("Timeline"))),
      detail_(new StepDetailView(store)), diffPlace_(new QStackedWidget), empty_(new EmptyState(this)),
      notifiers_{store.undo().timeline.addNotifier([this] { showTimeline(); }),
                 store.undo().meant.addNotifier([this] { showTimeline(); })}
{
    makeList();
    diffPlace_->addWidget(detail_);
    addWidget(new SplitPane(settings::timelineDetailHeight, Qt::Vertical, SplitPane::Sized::second, leastStepHeight,
                            leastTimelineHeight, list_, diffPlace_));
    addWidget(empty_);
    setFocusProxy(list_);
    showTimeline();
}

/// What other programs do is not followed while nobody looks.
void TimelineView::showEvent(QShowEvent* event)
{
    QStackedWidget::showEvent(event);
    store_.undo().showTimeline();
}

void TimelineView::makeList()
{
    list_->setModel(model_);
    list_->setItemDelegate(new TimelineDelegate(list_));
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    scroll_ = new ScrollKeeper(
        list_, [this](const QModelIndex& index) { return model_->key(index); },
        [this](const std::string& key) { return model_->indexOfKey(key); });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &TimelineView::showCurrent);
    connect(list_, &QWidget::customContextMenuRequested, this, &TimelineView::showMenu);
}

void TimelineView::showTimeline()
{
    const Timeline& timeline = store_.undo().timeline.value();
    {
        const QScopedValueRollback filling(isFilling_, true);
        model_->setTimeline(timeline);
        const QModelIndex kept = model_->indexOfKey(current_);
        list_->setCurrentIndex(kept.isValid() ? kept : model_->index(0, 0));
        scroll_->restore();
        selectMeant();
    }
    showCurrent();
    if (timeline && timeline->empty())
        empty_->setText(tr("No Steps"),
                        tr("Nothing has happened yet. Every step made here can be taken back for 30 days."));
    else
        empty_->setText({}, {});
    setCurrentIndex(timeline && !timeline->empty() ? 0 : 1);
}

/// Selects the step that something else points at, once it is listed.
void TimelineView::selectMeant()
{
    const Undo::Meant meant = store_.undo().meant.value();
    const QModelIndex index = meant.number == meant_ ? QModelIndex() : model_->indexOfKey(meant.id);
    if (!index.isValid())
        return;
    meant_ = meant.number;
    list_->setCurrentIndex(index);
    list_->scrollTo(index);
}

void TimelineView::showCurrent()
{
    if (isFilling_)
        return;
    const QModelIndex current = list_->currentIndex();
    current_ = current.isValid() ? model_->key(current) : std::string();
    detail_->showRow(current.isValid() ? std::optional(model_->row(current)) : std::nullopt);
}

QMenu* TimelineView::makeContextMenu()
{
    const QModelIndex current = list_->currentIndex();
    return current.isValid() ? makeStepMenu(store_, model_->row(current), this) : nullptr;
}

void TimelineView::showMenu(const QPoint& place)
{
    const QModelIndex index = list_->indexAt(place);
    if (!index.isValid())
        return;
    QMenu* const menu = makeStepMenu(store_, model_->row(index), this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(list_->viewport()->mapToGlobal(place));
}

} // namespace plovik

#include "moc_TimelineView.cpp"

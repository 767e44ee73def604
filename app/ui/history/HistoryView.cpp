// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryView.h"

#include "GitKit/records/CommitKind.h"
#include "app/settings/Settings.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/history/HistoryList.h"
#include "app/ui/history/HistorySearchRow.h"
#include "app/ui/history/PlanBar.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/SplitPane.h"

#include <QPushButton>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace plovik {

namespace {

constexpr double leastDetailHeight = 120;
constexpr double leastListHeight = 140;

} // namespace

HistoryView::HistoryView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), searchRow_(new HistorySearchRow(store, this)), list_(new HistoryList(store)),
      detail_(new CommitDetailView(store, gitkit::CommitKind::ordinary)), diffPlace_(new QStackedWidget),
      blank_(new QWidget), empty_(new EmptyState), wayOutButton_(empty_->action(QString())),
      pages_(new QStackedWidget(this))
{
    content_ = new SplitPane(settings::historyDetailHeight, Qt::Vertical, SplitPane::Sized::second, leastDetailHeight,
                             leastListHeight, list_, diffPlace_);
    diffPlace_->addWidget(detail_);
    connect(diffPlace_, &QStackedWidget::currentChanged, this, &HistoryView::showDetail);
    blank_->setAutoFillBackground(true);
    blank_->setBackgroundRole(QPalette::Base);
    for (QWidget* page : {static_cast<QWidget*>(content_), blank_, static_cast<QWidget*>(empty_)})
        pages_->addWidget(page);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(searchRow_);
    column->addWidget(new PlanBar(store, this));
    column->addWidget(pages_, 1);

    connect(searchRow_, &HistorySearchRow::finished, this, &HistoryView::focusList);
    connect(list_, &HistoryList::moreWanted, this, &HistoryView::growPage);
    connect(wayOutButton_, &QPushButton::clicked, this, &HistoryView::takeWayOut);
    setFocusProxy(list_);
    observe();
    showDetail();
    showPage();
}

void HistoryView::observe()
{
    const auto shows = [this] { showPage(); };
    notifiers_.push_back(store_.history().history.addNotifier(shows));
    notifiers_.push_back(store_.snapshot().hasLoaded.addNotifier(shows));
    notifiers_.push_back(store_.snapshot().status.addNotifier(shows));
    notifiers_.push_back(store_.history().historyProblem.addNotifier(shows));
    notifiers_.push_back(store_.snapshot().readProblem.addNotifier(shows));
    notifiers_.push_back(store_.history().isHistoryFiltered.addNotifier(shows));
    notifiers_.push_back(store_.history().isSearching.addNotifier(shows));

    notifiers_.push_back(store_.window().selectedCommit.addNotifier([this] { showDetail(); }));

    const auto grown = [this] { searchRow_->setGrowing(false); };
    notifiers_.push_back(store_.history().history.addNotifier(grown));
    notifiers_.push_back(store_.snapshot().generation.addNotifier(grown));
}

/// Without a selected commit the list has all the room.
void HistoryView::showDetail()
{
    content_->setSizedVisible(store_.window().selectedCommit.value().has_value() ||
                              diffPlace_->currentWidget() != detail_);
}

void HistoryView::focusSearch() { searchRow_->focusSearch(); }

void HistoryView::focusList()
{
    if (pages_->currentWidget() == content_)
        list_->setFocus(Qt::OtherFocusReason);
    else
        searchRow_->focusSearch();
}

void HistoryView::growPage()
{
    searchRow_->setGrowing(true);
    store_.history().loadMoreHistory();
}

HistoryView::Nothing HistoryView::nothing() const
{
    if (store_.history().isSearching.value())
        return {tr("Searching…"), {}};
    if (!store_.history().historyProblem.value().isEmpty())
        return store_.history().isHistoryFiltered.value()
                   ? Nothing{tr("The search could not be made"), {}, WayOut::clearSearch} // the search line says why
                   : Nothing{tr("The history could not be read"), store_.history().historyProblem.value()};
    const bool hasHistory = store_.snapshot().mayHaveCommits();
    if (!hasHistory && !store_.snapshot().readProblem.value().isEmpty())
        return {tr("The repository could not be read"), store_.snapshot().readProblem.value()};
    if (!hasHistory && store_.changes().isReadOnly())
        return {tr("No Commits Yet"), tr("What is pushed to this repository will stand here.")};
    if (!hasHistory)
        return {tr("No Commits Yet"), tr("What you commit in this repository will stand here."), WayOut::workingCopy};
    if (store_.history().isHistoryFiltered.value())
        return {tr("No Matching Commits"), tr("No commit of this history matches the search."), WayOut::clearSearch};
    return {tr("No Commits"), tr("What is selected at the left has no history.")};
}

void HistoryView::takeWayOut()
{
    if (wayOut_ == WayOut::clearSearch) {
        searchRow_->clearSearch();
        return;
    }
    store_.window().select(SidebarItem::workingCopy());
}

void HistoryView::showPage()
{
    if (!store_.history().history.value().empty()) {
        pages_->setCurrentWidget(content_);
        return;
    }
    if (!store_.snapshot().hasLoaded.value()) {
        pages_->setCurrentWidget(blank_);
        return;
    }
    const Nothing told = nothing();
    empty_->setText(told.title, told.description);
    wayOut_ = told.wayOut;
    wayOutButton_->setText(wayOut_ == WayOut::workingCopy ? tr("Show Working Copy") : tr("Clear Search"));
    wayOutButton_->setVisible(wayOut_ != WayOut::none);
    pages_->setCurrentWidget(empty_);
}

} // namespace plovik

#include "moc_HistoryView.cpp"

#include "app/views/stashes/StashesView.h"

#include "app/views/EmptyState.h"
#include "app/views/RowList.h"
#include "app/views/ScrollKeeper.h"
#include "app/views/stashes/StashDelegate.h"
#include "app/views/stashes/StashesModel.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace plovik {

StashesView::StashesView(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), model_(new StashesModel(store, this)), empty_(new EmptyState(this))
{
    makeList();
    addWidget(list_);
    addWidget(empty_);
    observeStore();
    showStoreSelection();
    updateEmptyState();
}

void StashesView::makeList()
{
    list_ = new RowList(u"Stashes"_s, this);
    list_->setModel(model_);
    list_->setItemDelegate(new StashDelegate(list_));
    scroll_ = new ScrollKeeper(
        list_, [this](const QModelIndex& index) { return model_->stash(index).hash; },
        [this](const std::string& hash) { return model_->indexOf(hash); });
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &StashesView::userSelected);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        showStoreSelection();
        scroll_->restore();
    });
}

void StashesView::observeStore()
{
    notifiers_.push_back(store_.stashes.addNotifier([this] {
        model_->rebuild();
        updateEmptyState();
    }));
    notifiers_.push_back(store_.selectedStash.addNotifier([this] {
        if (!isUpdating_)
            showStoreSelection();
    }));
    notifiers_.push_back(store_.hasLoaded.addNotifier([this] { updateEmptyState(); }));
    notifiers_.push_back(store_.readProblem.addNotifier([this] { updateEmptyState(); }));
}

void StashesView::updateEmptyState()
{
    if (!store_.stashes.value().empty()) {
        setCurrentWidget(list_);
        return;
    }
    if (!store_.readProblem.value().isEmpty())
        empty_->setText(u"The Stashes Could Not Be Read"_s, u"Git's own words stand above. Stashed changes are listed "
                                                            u"here as soon as they can be read again."_s);
    else if (!store_.hasLoaded.value())
        empty_->setText({}, {});
    else
        empty_->setText(u"No Stashes"_s, u"Stashed changes are listed here."_s);
    setCurrentWidget(empty_);
}

void StashesView::userSelected()
{
    const QModelIndexList selected = list_->selectionModel()->selectedIndexes();
    if (isUpdating_ || selected.isEmpty())
        return;
    const QScopedValueRollback updating(isUpdating_, true);
    store_.selectedStash = model_->stash(selected.front()).hash;
}

void StashesView::showStoreSelection()
{
    const std::optional<std::string>& hash = store_.selectedStash.value();
    const QScopedValueRollback updating(isUpdating_, true);
    list_->selectionModel()->setCurrentIndex(hash ? model_->indexOf(*hash) : QModelIndex(),
                                             QItemSelectionModel::ClearAndSelect);
}

} // namespace plovik

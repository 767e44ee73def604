#include "app/views/workingcopy/WorkingCopyView.h"

#include "app/views/EmptyState.h"
#include "app/views/RowList.h"
#include "app/views/ScrollKeeper.h"
#include "app/views/workingcopy/ChangedFileDelegate.h"
#include "app/views/workingcopy/ChangedFilesModel.h"

#include <QItemSelectionModel>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace plovik {

WorkingCopyView::WorkingCopyView(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), model_(new ChangedFilesModel(store, this)), empty_(new EmptyState(this))
{
    makeList();
    addWidget(list_);
    addWidget(empty_);
    observeStore();
    showStoreSelection();
    updateEmptyState();
}

void WorkingCopyView::makeList()
{
    list_ = new RowList(u"Changed Files"_s, this);
    list_->setSelectionMode(QAbstractItemView::ExtendedSelection);
    list_->setModel(model_);
    list_->setItemDelegate(new ChangedFileDelegate(list_));
    scroll_ = new ScrollKeeper(
        list_, [this](const QModelIndex& index) { return model_->file(index).path; },
        [this](const std::string& path) { return model_->indexOf(path); });
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &WorkingCopyView::userSelected);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        showStoreSelection();
        scroll_->restore();
    });
}

void WorkingCopyView::observeStore()
{
    notifiers_.push_back(store_.status.addNotifier([this] { statusChanged(); }));
    notifiers_.push_back(store_.selectedPaths.addNotifier([this] {
        if (!isUpdating_)
            showStoreSelection();
    }));
    notifiers_.push_back(store_.hasLoaded.addNotifier([this] { updateEmptyState(); }));
    notifiers_.push_back(store_.readProblem.addNotifier([this] { updateEmptyState(); }));
}

void WorkingCopyView::statusChanged()
{
    model_->rebuild();
    updateEmptyState();
}

void WorkingCopyView::updateEmptyState()
{
    const gitkit::RepoStatus& status = store_.status.value();
    if (!status.files.empty()) {
        setCurrentWidget(list_);
        return;
    }
    if (!store_.readProblem.value().isEmpty())
        empty_->setText(u"The Working Copy Could Not Be Read"_s,
                        u"Git's own words stand above. Changes are listed here "
                        u"as soon as it can be read again."_s);
    else if (!store_.hasLoaded.value())
        empty_->setText({}, {});
    else if (!status.hasCommits())
        empty_->setText(u"No Changes"_s, u"Nothing has been committed yet. New files are listed here."_s);
    else
        empty_->setText(u"No Changes"_s, u"Changed files are listed here."_s);
    setCurrentWidget(empty_);
}

void WorkingCopyView::userSelected()
{
    if (isUpdating_)
        return;
    std::set<std::string> paths;
    for (const QItemSelectionRange& range : list_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            paths.insert(model_->file(model_->index(row)).path);
    }
    const QScopedValueRollback updating(isUpdating_, true);
    store_.selectedPaths = std::move(paths);
}

void WorkingCopyView::showStoreSelection()
{
    const std::set<std::string>& paths = store_.selectedPaths.value();
    QItemSelection selection;
    const int count = paths.empty() ? 0 : model_->rowCount();
    for (int row = 0; row < count; ++row) {
        if (!paths.contains(model_->file(model_->index(row)).path))
            continue;
        const int first = row;
        while (row + 1 < count && paths.contains(model_->file(model_->index(row + 1)).path))
            ++row;
        selection.append(QItemSelectionRange(model_->index(first), model_->index(row)));
    }
    const QScopedValueRollback updating(isUpdating_, true);
    list_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    // The keyboard goes on from the selection, not from the top.
    if (!selection.isEmpty() && !list_->currentIndex().isValid())
        list_->selectionModel()->setCurrentIndex(selection.front().topLeft(), QItemSelectionModel::NoUpdate);
}

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/WorkingCopyView.h"

#include "app/store/ShownText.h"
#include "app/store/actions/DesktopFiles.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/diff/WorkingDiffPane.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/FileListTools.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/ScrollKeeper.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/workingcopy/ChangedFileDelegate.h"
#include "app/ui/workingcopy/ChangedFilesList.h"
#include "app/ui/workingcopy/ChangedFilesMenu.h"
#include "app/ui/workingcopy/ChangedFilesModel.h"
#include "app/ui/workingcopy/CommitBox.h"
#include "app/ui/workingcopy/StagingBar.h"
#include "app/ui/workingcopy/WorkingDetail.h"

#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QLineEdit>
#include <QMenu>
#include <QScopedValueRollback>
#include <QShortcut>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace plovik {

namespace {

constexpr double filesMinWidth = 244;
constexpr int buttonsMinWidth = 205; ///< in a row below the files
constexpr double diffMinWidth = 216;

} // namespace

WorkingCopyView::WorkingCopyView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), model_(new ChangedFilesModel(store, this)), diffPlace_(new QStackedWidget)
{
    auto* const detail = new WorkingDetail(store);
    diffPlace_->addWidget(detail);
    auto* split = new SplitPane(settings::workingCopyListWidth, Qt::Horizontal, SplitPane::Sized::first,
                                std::max<double>(filesMinWidth, Theme::scaled(buttonsMinWidth)), diffMinWidth,
                                makeFilesPane(), diffPlace_, this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(split);
    setFocusProxy(list_);
    commitByKeys(*detail->diff()); // a merge has these keys for itself
    observeStore();
    showStoreSelection();
    updateEmptyState();
}

QListView* WorkingCopyView::list() const { return list_; }

QWidget* WorkingCopyView::makeFilesPane()
{
    auto* pane = new QWidget;
    pane->setAutoFillBackground(true);
    pane->setBackgroundRole(QPalette::Base);
    makeList(pane);
    empty_ = new EmptyState(pane);
    commitBox_ = new CommitBox(store_, pane);
    auto* column = new QVBoxLayout(pane);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    // The sentence lies over the list, since a hidden list would lose the focus.
    auto* files = new QGridLayout;
    files->addWidget(list_, 0, 0);
    files->addWidget(empty_, 0, 0);
    auto* filter = new QHBoxLayout;
    filter->setContentsMargins(12, 6, 8, 0);
    filter->setSpacing(4);
    filter->addWidget(tools_->field(), 1);
    filter->addStretch();
    filter->addWidget(tools_->treeButton());
    filter->addWidget(tools_->filterButton());
    column->addLayout(filter);
    column->addLayout(files, 1);
    column->addWidget(new StagingBar(store_, pane));
    column->addWidget(commitBox_);
    connect(commitBox_, &CommitBox::committed, this, &WorkingCopyView::committed);
    commitByKeys(*pane);
    return pane;
}

/// Lets the keys of a commit, or of what is continued by one, work in a part of the view.
void WorkingCopyView::commitByKeys(QWidget& part)
{
    const QKeySequence onKeypad(Qt::CTRL | Qt::Key_Enter);
    for (const QKeySequence& keys : {command(CommandId::commit).shortcut(), onKeypad}) {
        auto* commit = new QShortcut(keys, &part);
        commit->setContext(Qt::WidgetWithChildrenShortcut);
        commit->setAutoRepeat(false);
        connect(commit, &QShortcut::activated, commitBox_, &CommitBox::commit);
    }
}

void WorkingCopyView::makeList(QWidget* parent)
{
    list_ = new ChangedFilesList(parent);
    list_->setModel(model_);
    scroll_ = new ScrollKeeper(
        list_, [this](const QModelIndex& index) { return model_->keyOf(index); },
        [this](const std::string& path) { return model_->indexOf(path); });
    tools_ = new FileListTools(list_, ChangedFileDelegate::triangleLeft);
    list_->setDragged([this](QPoint) { dragSelected(); });
    connectList();
}

void WorkingCopyView::dragSelected()
{
    Dragged dragged{.kind = Dragged::Kind::files};
    for (const gitkit::FileChange& file : store_.staging().selectedFiles())
        dragged.names.push_back(file.path);
    if (!dragged.names.empty())
        drag(*list_, store_, dragged, namesOfFiles(dragged.names));
}

void WorkingCopyView::connectList()
{
    const auto* selection = list_->selectionModel();
    connect(selection, &QItemSelectionModel::selectionChanged, this, &WorkingCopyView::userSelected);
    connect(selection, &QItemSelectionModel::currentChanged, this, &WorkingCopyView::noteCurrent);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        restoreCurrent();
        showStoreSelection();
        scroll_->restore();
    });
    connect(list_, &ChangedFilesList::checkBoxClicked, this, [this](const QModelIndex& index) { toggle(index); });
    connect(list_, &ChangedFilesList::toggleRequested, this, [this] { store_.staging().toggleStageOfSelection(); });
    connect(list_, &ChangedFilesList::openRequested, this,
            [this] { actions::openInEditor(store_.actors(), store_.staging().selectedFiles()); });
    connect(list_, &ChangedFilesList::discardRequested, this,
            [this] { store_.staging().confirmDiscard(store_.staging().selectedFiles()); });
    connect(list_, &ChangedFilesList::menuRequested, this, &WorkingCopyView::showMenu);
}

void WorkingCopyView::observeStore()
{
    notifiers_.push_back(store_.snapshot().status.addNotifier([this] { statusChanged(); }));
    notifiers_.push_back(store_.staging().stagingGeneration.addNotifier([this] { model_->stagingChanged(); }));
    notifiers_.push_back(store_.window().selectedPaths.addNotifier([this] {
        if (!isUpdating_)
            showStoreSelection();
    }));
    notifiers_.push_back(store_.snapshot().hasLoaded.addNotifier([this] { updateEmptyState(); }));
    notifiers_.push_back(store_.snapshot().readProblem.addNotifier([this] { updateEmptyState(); }));
}

void WorkingCopyView::statusChanged()
{
    model_->rebuild();
    updateEmptyState();
}

void WorkingCopyView::updateEmptyState()
{
    const gitkit::RepoStatus& status = store_.snapshot().status.value();
    empty_->setVisible(status.files.empty());
    if (!store_.snapshot().readProblem.value().isEmpty())
        empty_->setText(tr("The Working Copy Could Not Be Read"),
                        tr("Git's own words stand above. Changes are listed here as soon as it can be read again."));
    else if (!store_.snapshot().hasLoaded.value())
        empty_->setText({}, {});
    else if (!status.hasCommits())
        empty_->setText(tr("No Changes"), tr("Nothing has been committed yet. New files are listed here."));
    else
        empty_->setText(tr("No Changes"), tr("Everything is committed."));
}

void WorkingCopyView::userSelected()
{
    if (isUpdating_)
        return;
    // The order of the rows is nearly that of the set, so most paths belong right behind the one before.
    std::set<std::string> paths;
    auto behind = paths.end();
    for (const QItemSelectionRange& range : list_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            const QModelIndex index = model_->index(row);
            model_->forEachIn(
                index, [&](const gitkit::FileChange& file) { behind = std::next(paths.insert(behind, file.path)); });
        }
    }
    const QScopedValueRollback updating(isUpdating_, true);
    const auto& blamed = store_.window().inspected.value();
    if (blamed && !paths.empty() && !paths.contains(blamed->path))
        store_.window().leaveBlame();
    store_.window().selectPaths(std::move(paths));
}

void WorkingCopyView::showStoreSelection()
{
    const QItemSelection selection = model_->rowsOf(store_.window().selectedPaths.value());
    const QScopedValueRollback updating(isUpdating_, true);
    list_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    // The arrow keys start from the selection.
    if (!selection.isEmpty() && !list_->currentIndex().isValid())
        list_->selectionModel()->setCurrentIndex(selection.front().topLeft(), QItemSelectionModel::NoUpdate);
}

/// Stages or unstages what a check box stands for.
void WorkingCopyView::toggle(const QModelIndex& index)
{
    if (!model_->isFolder(index)) {
        store_.staging().toggleStage(model_->file(index));
        return;
    }
    gitkit::ChangedFiles::List files;
    model_->forEachIn(index, [&](const gitkit::FileChange& file) { files.push_back(file); });
    if (index.data(Qt::CheckStateRole).toInt() == Qt::Checked)
        store_.staging().unstage(std::move(files));
    else
        store_.staging().stage(std::move(files));
}

void WorkingCopyView::noteCurrent()
{
    if (const QModelIndex current = list_->currentIndex(); current.isValid()) {
        currentRow_ = current.row();
        currentPath_ = model_->keyOf(current);
    }
}

void WorkingCopyView::restoreCurrent()
{
    const int count = model_->rowCount();
    if (currentPath_.empty() || count == 0)
        return;
    QModelIndex current = model_->indexOf(currentPath_);
    if (!current.isValid())
        current = model_->index(std::min(currentRow_, count - 1));
    list_->selectionModel()->setCurrentIndex(current, QItemSelectionModel::NoUpdate);
}

void WorkingCopyView::showMenu(const QPoint& globalPosition)
{
    if (QMenu* const menu = makeContextMenu()) {
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(globalPosition);
    }
}

QMenu* WorkingCopyView::makeContextMenu()
{
    const Staging::Files files = store_.staging().selectedFiles();
    if (files.empty())
        return nullptr;
    const QString openTitle = editorTitle_ ? editorTitle_() : tr("Open in Default Editor");
    return makeChangedFilesMenu(store_, files, openTitle, list_);
}

void WorkingCopyView::committed()
{
    // The next commit can start from the keyboard, unless the user has moved the focus to another view.
    const QWidget* focus = window()->focusWidget();
    if (!isVisible() || (focus && !isAncestorOf(focus)))
        return;
    list_->setFocus(Qt::OtherFocusReason);
    if (!list_->currentIndex().isValid() && model_->rowCount() > 0)
        list_->selectionModel()->setCurrentIndex(model_->index(0), QItemSelectionModel::NoUpdate);
}

} // namespace plovik

#include "moc_WorkingCopyView.cpp"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/sidebar/SidebarView.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/store/actions/Submodules.h"
#include "app/store/actions/Worktrees.h"
#include "app/ui/drag/DragData.h"

#include "app/ui/sidebar/RefMenu.h"
#include "app/ui/sidebar/SidebarDelegate.h"
#include "app/ui/sidebar/SubmoduleMenu.h"
#include "app/ui/sidebar/WorktreeMenu.h"
#include "app/ui/widgets/FocusRing.h"
#include "app/ui/widgets/ScrollKeeper.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollBar>
#include <QTreeView>
#include <QVBoxLayout>

#include <utility>

#include <array>
#include <chrono>
#include <functional>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds rowsSettle{20};

struct GroupSetting {
    SidebarModel::Kind kind;
    const Setting<bool>& setting;
};

const std::array<GroupSetting, 5> groupSettings{{
    {SidebarModel::Kind::branches, settings::sidebarBranchesExpanded},
    {SidebarModel::Kind::remotes, settings::sidebarRemotesExpanded},
    {SidebarModel::Kind::tags, settings::sidebarTagsExpanded},
    {SidebarModel::Kind::worktrees, settings::sidebarWorktreesExpanded},
    {SidebarModel::Kind::submodules, settings::sidebarSubmodulesExpanded},
}};

const Setting<bool>* settingOf(SidebarModel::Kind kind)
{
    for (const GroupSetting& group : groupSettings) {
        if (group.kind == kind)
            return &group.setting;
    }
    return nullptr;
}

} // namespace

/// A tree whose groups and folders open at a click. The keyboard can make them current without changing the selection.
class SidebarView::Tree : public QTreeView {
public:
    using QTreeView::QTreeView;

    std::function<void(const QContextMenuEvent&)> menuRequested;
    std::function<void()> renameRequested;
    std::function<void(const QModelIndex&)> openRequested;
    std::function<void(const QModelIndex&)> dragRequested;

    void toggle(const QModelIndex& index)
    {
        if (model()->hasChildren(index))
            setExpanded(index, !isExpanded(index));
    }

    void doItemsLayout() override
    {
        // Asks for the height of every row, each time with the same options.
        QStyleOptionViewItem same;
        QTreeView::initViewItemOption(&same);
        const QScopedValueRollback<const QStyleOptionViewItem*> shared(forLayout_, &same);
        QTreeView::doItemsLayout();
    }

protected:
    void initViewItemOption(QStyleOptionViewItem* option) const override
    {
        if (forLayout_)
            *option = *forLayout_;
        else
            QTreeView::initViewItemOption(option);
    }

    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex& index, const QEvent* event) const override
    {
        if (!index.isValid() || !(index.flags() & Qt::ItemIsSelectable))
            return QItemSelectionModel::NoUpdate;
        // What can be dragged is selected when it is let go: a drag leaves the history as it is.
        const bool isPressed = event && event->type() == QEvent::MouseButtonPress;
        return isPressed && (index.flags() & Qt::ItemIsDragEnabled) ? QItemSelectionModel::NoUpdate
                                                                    : QItemSelectionModel::ClearAndSelect;
    }

    void mousePressEvent(QMouseEvent* event) override
    {
        if (event->button() == Qt::RightButton) {
            // A menu acts on its row without selecting it.
            selectionModel()->setCurrentIndex(indexAt(event->position().toPoint()), QItemSelectionModel::NoUpdate);
            return;
        }
        QTreeView::mousePressEvent(event);
        wasDragged_ = false;
        pressedAt_ = event->position().toPoint();
        pressed_ = event->button() == Qt::LeftButton ? indexAt(event->position().toPoint()) : QModelIndex();
        if (event->button() == Qt::LeftButton)
            toggle(pressed_);
    }

    void mouseReleaseEvent(QMouseEvent* event) override
    {
        // Not every platform keeps the end of a drag to itself.
        if (std::exchange(wasDragged_, false))
            return;
        const QModelIndex released = indexAt(event->position().toPoint());
        QTreeView::mouseReleaseEvent(event);
        if (event->button() == Qt::LeftButton && released.isValid() && pressed_ == released &&
            (released.flags() & Qt::ItemIsDragEnabled))
            selectionModel()->select(released, QItemSelectionModel::ClearAndSelect);
        pressed_ = QModelIndex();
    }

    void mouseMoveEvent(QMouseEvent* event) override
    {
        if (wasDragged_)
            return;
        // The base class drags what is selected, which this is not yet.
        if (!pressed_.isValid() || !(pressed_.flags() & Qt::ItemIsDragEnabled)) {
            QTreeView::mouseMoveEvent(event);
            return;
        }
        const QPoint way = event->position().toPoint() - pressedAt_;
        if (way.manhattanLength() < QApplication::startDragDistance())
            return;
        wasDragged_ = true;
        dragRequested(std::exchange(pressed_, QModelIndex()));
    }

    void contextMenuEvent(QContextMenuEvent* event) override { menuRequested(*event); }

    void keyPressEvent(QKeyEvent* event) override
    {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
            toggle(currentIndex());
        if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && currentIndex().isValid())
            openRequested(currentIndex());
        if (event->key() == Qt::Key_F2)
            renameRequested();
        QTreeView::keyPressEvent(event);
    }

    void drawBranches(QPainter* painter, const QRect& rect, const QModelIndex& index) const override
    {
        Q_UNUSED(painter)
        Q_UNUSED(rect)
        Q_UNUSED(index)
    }

    void drawRow(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        // The base class fills the whole row with the highlight, behind the delegate's own background.
        QStyleOptionViewItem row = option;
        row.palette.setColor(QPalette::Highlight, palette().color(QPalette::Base));
        QTreeView::drawRow(painter, row, index);
    }

private:
    const QStyleOptionViewItem* forLayout_ = nullptr;
    QPersistentModelIndex pressed_;
    QPoint pressedAt_;
    bool wasDragged_ = false; ///< since the mouse was pressed
};

SidebarView::SidebarView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), model_(new SidebarModel(store, this))
{
    makeTree();
    makeFilter();
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 8, 0, 8);
    column->setSpacing(8);
    column->addWidget(tree_, 1);
    auto* filterRow = new QHBoxLayout;
    filterRow->setContentsMargins(8, 0, 8, 0);
    filterRow->addWidget(filter_);
    column->addLayout(filterRow);
    setFocusProxy(tree_);
    observeStore();
    modelWasReset();
}

void SidebarView::makeTree()
{
    auto* tree = new Tree(this);
    tree_ = tree;
    followColor(*tree, QPalette::Base, &Theme::sidebar);
    tree->setAccessibleName(tr("Sidebar"));
    giveFocusRing(*tree);
    tree->setHeaderHidden(true);
    tree->setRootIsDecorated(false);
    tree->setIndentation(0);
    tree->setExpandsOnDoubleClick(false);
    tree->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    tree->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    tree->setTextElideMode(Qt::ElideRight);
    tree->setMouseTracking(false);
    tree->setModel(model_);
    tree->setItemDelegate(new SidebarDelegate(*model_, tree));
    scroll_ = new ScrollKeeper(
        tree, [this](const QModelIndex& index) { return model_->key(index); },
        [this](const std::string& key) { return model_->indexOfKey(key); });
    connect(model_, &QAbstractItemModel::modelReset, this, &SidebarView::modelWasReset);
    connect(tree, &QTreeView::expanded, this, [this](const QModelIndex& index) { noteExpansion(index, true); });
    connect(tree, &QTreeView::collapsed, this, [this](const QModelIndex& index) { noteExpansion(index, false); });
    connect(tree->selectionModel(), &QItemSelectionModel::selectionChanged, this, &SidebarView::userSelected);
    connect(tree, &QTreeView::doubleClicked, this, &SidebarView::checkOut);
    connect(tree, &QTreeView::doubleClicked, this, &SidebarView::open);
    tree->openRequested = [this](const QModelIndex& index) { open(index); };
    tree->menuRequested = [this](const QContextMenuEvent& event) { showMenu(event); };
    tree->renameRequested = [this] { rename(); };
    tree->dragRequested = [this](const QModelIndex& index) {
        if (const gitkit::GitRef* const ref = model_->ref(index))
            drag(*tree_, store_, {Dragged::Kind::ref, {ref->fullName}}, shownText(ref->name));
    };
    new DropArea(store_, *tree->viewport(), [this](QPoint position) { return dropPlaces(position); });
    connect(&Settings::shared(), &Settings::changed, this, &SidebarView::applyGroupSetting);
    settling_ = new QTimer(this);
    settling_->setSingleShot(true);
    settling_->setInterval(rowsSettle);
    connect(settling_, &QTimer::timeout, this, &SidebarView::tellInSight);
    const auto moved = [this] { settling_->start(); };
    connect(tree->verticalScrollBar(), &QScrollBar::valueChanged, this, moved);
    connect(tree->verticalScrollBar(), &QScrollBar::rangeChanged, this, moved);
    connect(model_, &QAbstractItemModel::modelReset, this, moved);
    connect(tree, &QTreeView::expanded, this, moved);
    connect(tree, &QTreeView::collapsed, this, moved);
}

std::vector<DropArea::Place> SidebarView::dropPlaces(QPoint position) const
{
    const QModelIndex index = tree_->indexAt(position);
    if (!index.isValid())
        return {};
    const auto place = [this, &index](DropTarget::Kind kind, std::string name = {}) {
        return std::vector{DropArea::Place{{kind, std::move(name)}, tree_->visualRect(index)}};
    };
    if (const gitkit::GitRef* const ref = model_->ref(index))
        return place(DropTarget::Kind::ref, ref->fullName);
    if (model_->kind(index) == SidebarKind::workingCopy)
        return place(DropTarget::Kind::workingCopy);
    if (model_->kind(index) == SidebarKind::stashes)
        return place(DropTarget::Kind::stashes);
    std::string remote = model_->remote(index);
    return remote.empty() ? std::vector<DropArea::Place>() : place(DropTarget::Kind::remote, std::move(remote));
}

void SidebarView::makeFilter()
{
    filter_ = new QLineEdit(this);
    filter_->setAccessibleName(tr("Filter Refs"));
    filter_->setPlaceholderText(tr("Filter branches and tags"));
    filter_->setToolTip(tr("Filter branches and tags"));
    followFont(*filter_, -0.5);
    filter_->installEventFilter(this);
    connect(filter_, &QLineEdit::textChanged, this, [this](const QString& text) { model_->setFilter(text.trimmed()); });
}

void SidebarView::observeStore()
{
    const auto rebuild = [this] { model_->rebuildIfOld(); };
    notifiers_.push_back(store_.snapshot().branches.addNotifier(rebuild));
    notifiers_.push_back(store_.snapshot().remoteBranches.addNotifier(rebuild));
    notifiers_.push_back(store_.snapshot().tags.addNotifier(rebuild));
    notifiers_.push_back(store_.snapshot().remotes.addNotifier(rebuild));
    notifiers_.push_back(store_.neighbours().worktrees.addNotifier(rebuild));
    notifiers_.push_back(store_.neighbours().submodules.addNotifier(rebuild));
    notifiers_.push_back(store_.counts().changes.addNotifier([this] { tree_->viewport()->update(); }));
    const auto counts = [this] {
        hideWhatIsBare();
        model_->countsChanged();
        tree_->viewport()->update(); // the states of submodules
    };
    notifiers_.push_back(store_.snapshot().status.addNotifier(counts));
    notifiers_.push_back(store_.snapshot().stashes.addNotifier(counts));
    notifiers_.push_back(store_.window().selection.addNotifier([this] {
        if (!isUpdating_)
            showStoreSelection(Reveal::yes);
    }));
}

/// The branches in sight are counted before others.
void SidebarView::tellInSight()
{
    std::vector<std::string> names;
    const int bottom = tree_->viewport()->height();
    for (QModelIndex row = tree_->indexAt(QPoint(0, 0)); row.isValid() && tree_->visualRect(row).top() < bottom;
         row = tree_->indexBelow(row))
    {
        if (const gitkit::GitRef* const ref = model_->ref(row))
            names.push_back(ref->fullName);
    }
    store_.counts().setInSight(std::move(names));
}

/// A bare repository has no files, stashes or steps.
void SidebarView::hideWhatIsBare()
{
    for (int row = 0; row < fixedSidebarItems; ++row) {
        const SidebarKind kind = model_->kind(model_->index(row, 0));
        const bool isOfTree =
            kind == SidebarKind::workingCopy || kind == SidebarKind::stashes || kind == SidebarKind::timeline;
        tree_->setRowHidden(row, {}, isOfTree && store_.changes().isReadOnly());
    }
}

void SidebarView::modelWasReset()
{
    hideWhatIsBare();
    restoreExpansion();
    showStoreSelection(Reveal::no);
    scroll_->restore();
}

void SidebarView::restoreExpansion()
{
    const QScopedValueRollback updating(isUpdating_, true);
    for (const QModelIndex& index : model_->containers()) {
        if (shouldBeOpen(index))
            tree_->expand(index);
    }
}

bool SidebarView::shouldBeOpen(const QModelIndex& index) const
{
    if (model_->isFiltered())
        return true;
    if (const Setting<bool>* setting = settingOf(model_->kind(index)))
        return Settings::shared().value(*setting);
    return !closedFolders_.contains(model_->key(index));
}

void SidebarView::noteExpansion(const QModelIndex& index, bool isOpen)
{
    if (isUpdating_)
        return;
    scroll_->note();
    // A filter opens everything, so closing a row while it is active is not remembered.
    if (model_->isFiltered())
        return;
    const QScopedValueRollback updating(isUpdating_, true);
    if (const Setting<bool>* setting = settingOf(model_->kind(index)))
        Settings::shared().set(*setting, isOpen);
    else if (isOpen)
        closedFolders_.erase(model_->key(index));
    else
        closedFolders_.insert(model_->key(index));
}

void SidebarView::applyGroupSetting(const QString& settingKey)
{
    if (isUpdating_ || model_->isFiltered())
        return;
    const QScopedValueRollback updating(isUpdating_, true);
    for (const QModelIndex& index : model_->containers()) {
        const Setting<bool>* setting = settingOf(model_->kind(index));
        if (setting && settingKey == QLatin1String(setting->key))
            tree_->setExpanded(index, Settings::shared().value(*setting));
    }
}

void SidebarView::userSelected()
{
    const QModelIndexList selected = tree_->selectionModel()->selectedIndexes();
    if (isUpdating_ || selected.isEmpty())
        return;
    const std::optional<SidebarItem> item = model_->item(selected.front());
    if (!item || *item == store_.window().selection.value())
        return;
    const QScopedValueRollback updating(isUpdating_, true);
    store_.window().select(*item);
}

void SidebarView::showStoreSelection(Reveal reveal)
{
    const QModelIndex index = model_->indexOf(store_.window().selection.value());
    for (QModelIndex above = index.parent(); reveal == Reveal::yes && above.isValid(); above = above.parent())
        tree_->expand(above);

    const QScopedValueRollback updating(isUpdating_, true);
    // With automatic scrolling the tree would scroll to its new current row and open the folders around it.
    tree_->setAutoScroll(reveal == Reveal::yes);
    tree_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    tree_->setAutoScroll(true);
}

bool SidebarView::filterKeyPressed(int key)
{
    switch (key) {
    case Qt::Key_Escape:
        if (filter_->text().isEmpty())
            tree_->setFocus();
        filter_->clear();
        return true;
    case Qt::Key_Down:
        if (!model_->isFiltered()) {
            tree_->setFocus();
            return true;
        }
        [[fallthrough]];
    case Qt::Key_Return:
    case Qt::Key_Enter:
        for (QModelIndex row = model_->index(fixedSidebarItems, 0); row.isValid(); row = tree_->indexBelow(row)) {
            if (!model_->ref(row))
                continue;
            tree_->setCurrentIndex(row);
            tree_->setFocus();
            break;
        }
        return true;
    default:
        return false;
    }
}

void SidebarView::checkOut(const QModelIndex& index)
{
    const gitkit::GitRef* ref = model_->ref(index);
    if (ref && !ref->isHead)
        actions::checkout(store_.actors(), *ref);
}

void SidebarView::open(const QModelIndex& index)
{
    if (const gitkit::Worktree* const tree = model_->worktree(index))
        actions::openWorktree(store_.actors(), *tree);
    if (const gitkit::Submodule* const submodule = model_->submodule(index))
        actions::openSubmodule(store_.actors(), *submodule);
}

void SidebarView::rename()
{
    const gitkit::GitRef* const ref = model_->ref(tree_->currentIndex());
    if (ref && ref->kind == gitkit::GitRef::Kind::local && store_.changes().offers(Verb::renameBranch))
        store_.window().showSheet(RenameBranchSheet{ref->name});
}

void SidebarView::showMenu(const QContextMenuEvent& event)
{
    const bool byKeyboard = event.reason() == QContextMenuEvent::Keyboard;
    const QModelIndex index = byKeyboard ? tree_->currentIndex() : tree_->indexAt(event.pos());
    QMenu* const menu = makeMenuOf(index);
    if (!menu)
        return;
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(byKeyboard ? tree_->viewport()->mapToGlobal(tree_->visualRect(index).bottomLeft()) : event.globalPos());
}

QMenu* SidebarView::makeContextMenu() { return makeMenuOf(tree_->currentIndex()); }

/// Returns null for a row that has no menu.
QMenu* SidebarView::makeMenuOf(const QModelIndex& index)
{
    if (!index.isValid())
        return nullptr;
    if (const gitkit::GitRef* const ref = model_->ref(index))
        return makeRefMenu(store_, *ref, this);
    if (const gitkit::Worktree* const tree = model_->worktree(index))
        return makeWorktreeMenu(store_, *tree, this);
    if (const gitkit::Submodule* const submodule = model_->submodule(index))
        return makeSubmoduleMenu(store_, *submodule, this);
    if (model_->kind(index) == SidebarKind::submodules)
        return makeSubmodulesMenu(store_, this);
    if (model_->kind(index) == SidebarKind::worktrees)
        return makeWorktreesMenu(store_, this);
    if (model_->kind(index) == SidebarKind::remotes)
        return makeRemotesMenu(store_, this);
    const std::string remote = model_->remote(index);
    return remote.empty() ? nullptr : makeRemoteMenu(store_, remote, this);
}

bool SidebarView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == filter_ && event->type() == QEvent::KeyPress &&
        filterKeyPressed(static_cast<QKeyEvent*>(event)->key()))
        return true;
    return QWidget::eventFilter(watched, event);
}

void SidebarView::paintEvent(QPaintEvent* event)
{
    Q_UNUSED(event)
    QPainter(this).fillRect(rect(), Theme::current().sidebar);
}

} // namespace plovik

#include "moc_SidebarView.cpp"

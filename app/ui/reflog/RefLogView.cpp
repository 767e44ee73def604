// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/reflog/RefLogView.h"

#include "GitKit/records/CommitKind.h"
#include "app/settings/Settings.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Refs.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/history/CommitMenu.h"
#include "app/ui/reflog/RefLogList.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/SplitPane.h"

#include <QMenu>

#include <algorithm>

namespace plovik {

namespace {

constexpr double leastMoveHeight = 120;
constexpr double leastLogHeight = 90;

} // namespace

RefLogView::RefLogView(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), list_(new RefLogList),
      detail_(new CommitDetailView(store, gitkit::CommitKind::ordinary)), diffPlace_(new QStackedWidget),
      empty_(new EmptyState(this)), reading_(store.git(), &readRefLog, [this] { logRead(); }, Worker::Lane::longRead)
{
    diffPlace_->addWidget(detail_);
    addWidget(new SplitPane(settings::timelineDetailHeight, Qt::Vertical, SplitPane::Sized::second, leastMoveHeight,
                            leastLogHeight, list_, diffPlace_));
    addWidget(empty_);
    setCurrentWidget(empty_);
    setFocusProxy(list_);
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(list_, &RefLogList::currentRowChanged, this, &RefLogView::showCurrent);
    connect(list_, &QWidget::customContextMenuRequested, this, &RefLogView::showMenu);
    const auto again = [this] {
        if (isVisible())
            read();
    };
    notifiers_.push_back(store_.window().selection.addNotifier(again));
    notifiers_.push_back(store_.snapshot().status.addNotifier(again));
    // What leads to a commit may have changed.
    notifiers_.push_back(store_.snapshot().branches.addNotifier([this] {
        if (isVisible() && reading_.asked())
            reading_.askAgain(RefLogRequest(*reading_.asked()));
    }));
}

void RefLogView::showEvent(QShowEvent* event)
{
    QStackedWidget::showEvent(event);
    read();
    showCurrent();
}

void RefLogView::read()
{
    const SidebarItem& item = store_.window().selection.value();
    if (item.kind == SidebarItem::Kind::refLog)
        reading_.ask({item.refName, store_.snapshot().status.value().oid.value_or(std::string())});
}

void RefLogView::logRead()
{
    const bool isFailed = reading_.failure().has_value();
    const bool isEmpty = isFailed || reading_.result()->empty();
    if (isFailed)
        empty_->setText(tr("The log could not be read"), reading_.failure()->message);
    else
        empty_->setText(tr("Nothing Is Known"), tr("Git has written down no move of this ref, or has forgotten it."));
    if (!isFailed)
        list_->setRows(*reading_.result());
    setCurrentIndex(isEmpty ? 1 : 0);
}

void RefLogView::showCurrent()
{
    const RefLogRow* const row = list_->current();
    if (isVisible() && row)
        store_.window().selectCommit(row->move.commit.hash, WindowState::Step::passing);
}

bool RefLogView::isGone(const std::string& branch) const
{
    return !branch.empty() && !store_.snapshot().hasRef("refs/heads/" + branch);
}

QMenu* RefLogView::makeMenu(const RefLogRow& row)
{
    auto* const menu = new QMenu(this);
    markAs(CommandId::showCommit, menu->addAction(tr("Show Commit"), menu, [this, hash = row.move.commit.hash] {
        store_.history().showCommit(hash);
    }));
    if (isGone(row.left)) {
        const QString title = plainMenuText(tr("Bring Back “%1”").arg(shownText(row.left)));
        markAs(CommandId::bringBackBranch, addChange(*menu, store_, Verb::createBranch, title, [this, row] {
                   actions::createBranch(store_.actors(), row.left, row.leftAt, gitkit::AfterCreating::stay);
               }));
    }
    menu->addSeparator();
    fillCommitMenu(*menu, store_, row.move.commit);
    return menu;
}

QMenu* RefLogView::makeContextMenu()
{
    const RefLogRow* const row = list_->current();
    return row && currentIndex() == 0 ? makeMenu(*row) : nullptr;
}

void RefLogView::showMenu(const QPoint& place)
{
    const RefLogRow* const row = list_->rowAt(list_->indexAt(place));
    if (!row)
        return;
    QMenu* const menu = makeMenu(*row);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(list_->viewport()->mapToGlobal(place));
}

} // namespace plovik

#include "moc_RefLogView.cpp"

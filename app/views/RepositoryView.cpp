#include "app/views/RepositoryView.h"

#include "app/views/MessageBar.h"
#include "app/views/SplitPane.h"
#include "app/views/Toolbar.h"
#include "app/views/history/HistoryView.h"
#include "app/views/sidebar/SidebarView.h"
#include "app/views/stashes/StashesView.h"
#include "app/views/workingcopy/WorkingCopyView.h"

#include <QStackedWidget>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// What the sidebar has until the user chooses: the settings know no width of their own for it.
constexpr Setting<double> sidebarWidth{settings::sidebarWidth.key, 216};
constexpr double sidebarMinWidth = 160;
constexpr double detailMinWidth = 320;

} // namespace

RepositoryView::RepositoryView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), toolbar_(new Toolbar(store, this)),
      problem_(new MessageBar(u"Problem"_s, MessageBar::Dismissal::never, this)),
      notice_(new MessageBar(u"Notice"_s, MessageBar::Dismissal::byUser, this)), sidebar_(new SidebarView(store)),
      detail_(new QStackedWidget)
{
    auto* split = new SplitPane(sidebarWidth, Qt::Horizontal, SplitPane::Sized::first, sidebarMinWidth, detailMinWidth,
                                sidebar_, detail_, this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolbar_);
    column->addWidget(problem_);
    column->addWidget(notice_);
    column->addWidget(split, 1);
    setFocusProxy(sidebar_);

    connect(toolbar_, &Toolbar::fetchRequested, this, &RepositoryView::fetchRequested);
    connect(toolbar_, &Toolbar::pullRequested, this, &RepositoryView::pullRequested);
    connect(toolbar_, &Toolbar::pushRequested, this, &RepositoryView::pushRequested);
    connect(toolbar_, &Toolbar::branchRequested, this, &RepositoryView::branchRequested);
    connect(toolbar_, &Toolbar::stashRequested, this, &RepositoryView::stashRequested);

    const auto showProblem = [this] { problem_->setText(store_.readProblem.value()); };
    notifiers_.push_back(store.readProblem.addNotifier(showProblem));
    notifiers_.push_back(store.selection.addNotifier([this] { showSelection(); }));
    showProblem();
    showSelection();
}

void RepositoryView::setActionsAvailable(bool available) { toolbar_->setActionsAvailable(available); }

void RepositoryView::showNotice(const QString& notice) { notice_->setText(notice); }

void RepositoryView::showSelection()
{
    QWidget* view = detailFor(store_.selection.value());
    if (detail_->indexOf(view) < 0)
        detail_->addWidget(view);
    detail_->setCurrentWidget(view);
}

QWidget* RepositoryView::detailFor(const SidebarItem& item)
{
    switch (item.kind) {
    case SidebarItem::Kind::workingCopy:
        return workingCopy_ = workingCopy_ ? workingCopy_ : new WorkingCopyView(store_, detail_);
    case SidebarItem::Kind::stashes:
        return stashes_ = stashes_ ? stashes_ : new StashesView(store_, detail_);
    case SidebarItem::Kind::ref:
    case SidebarItem::Kind::history:
        break;
    }
    return history_ = history_ ? history_ : new HistoryView(store_, detail_);
}

} // namespace plovik

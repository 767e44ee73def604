// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/window/RepositoryView.h"

#include "app/store/actions/Remotes.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/compare/ComparisonView.h"
#include "app/ui/dialogs/StoreDialogs.h"
#include "app/ui/history/HistoryView.h"
#include "app/ui/inspector/InspectorView.h"
#include "app/ui/log/CommandLogPanel.h"
#include "app/ui/patches/PatchEntries.h"
#include "app/ui/reflog/RefLogView.h"
#include "app/ui/sidebar/SidebarView.h"
#include "app/ui/stashes/StashesView.h"
#include "app/ui/timeline/StepDetailView.h"
#include "app/ui/timeline/TimelineView.h"
#include "app/ui/widgets/MessageBar.h"
#include "app/ui/widgets/PaneCycle.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/Theme.h"
#include "app/ui/window/InterruptedBar.h"
#include "app/ui/window/OperationBar.h"
#include "app/ui/window/QuietLine.h"
#include "app/ui/window/SubmoduleBar.h"
#include "app/ui/window/Toolbar.h"
#include "app/ui/window/TrustBar.h"
#include "app/ui/workingcopy/WorkingCopyView.h"

#include <QApplication>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <utility>

namespace plovik {

namespace {

// The width of the sidebar before the user has chosen one.
constexpr int ordinarySidebar = 216;
constexpr double mostOfWindow = 0.3;
constexpr double sidebarMinWidth = 176;
constexpr double detailMinWidth = 462;
constexpr double inspectorMinWidth = 300;
constexpr double besideInspectorMinWidth = 300;
constexpr double logMinHeight = 130;
constexpr double aboveLogMinHeight = 220;

} // namespace

RepositoryView::RepositoryView(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), toolbar_(new Toolbar(store, this)),
      problem_(new MessageBar(tr("Problem"), MessageBar::Dismissal::never, this)),
      notice_(new MessageBar(tr("Notice"), MessageBar::Dismissal::byUser, this)), sidebar_(new SidebarView(store)),
      detail_(new QStackedWidget), inspectorPlace_(new QWidget), logPlace_(new QWidget),
      detailSplit_(new SplitPane(settings::inspectorWidth, Qt::Horizontal, SplitPane::Sized::second, inspectorMinWidth,
                                 besideInspectorMinWidth, detail_, inspectorPlace_))
{
    detailSplit_->setSizedVisible(false);
    auto* beside = new QWidget;
    auto* content = new QVBoxLayout(beside);
    content->setContentsMargins(0, 0, 0, 0);
    content->setSpacing(0);
    content->addWidget(new OperationBar(store, beside));
    content->addWidget(detailSplit_, 1);
    auto* split = new SplitPane(settings::sidebarWidth, Qt::Horizontal, SplitPane::Sized::first, sidebarMinWidth,
                                detailMinWidth, sidebar_, beside, this);
    split->setAutomatic([](double available) {
        return std::max<double>(ordinarySidebar,
                                std::min<double>(Theme::scaled(ordinarySidebar), available * mostOfWindow));
    });
    windowSplit_ = new SplitPane(settings::commandLogHeight, Qt::Vertical, SplitPane::Sized::second, logMinHeight,
                                 aboveLogMinHeight, split, logPlace_, this);
    windowSplit_->setSizedVisible(false);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(toolbar_);
    column->addWidget(problem_);
    column->addWidget(notice_);
    column->addWidget(new TrustBar(store, this));
    column->addWidget(new InterruptedBar(store, this));
    column->addWidget(new SubmoduleBar(store, this));
    column->addWidget(windowSplit_, 1);
    setFocusProxy(sidebar_);

    quietLine_ = new QuietLine(store, beside, this);
    new StoreDialogs(store, this);
    new PaneCycle(*this);

    const auto showProblem = [this] { problem_->setText(store_.snapshot().readProblem.value()); };
    notifiers_.push_back(store.snapshot().readProblem.addNotifier(showProblem));
    notifiers_.push_back(store.window().notice.addNotifier([this] { showNotice(store_.window().notice.value()); }));
    notifiers_.push_back(store.window().selection.addNotifier([this] { showSelection(); }));
    notifiers_.push_back(store.window().compared.addNotifier([this] { showComparison(); }));
    notifiers_.push_back(
        store.window().viewWishes.addNotifier([this] { detail_->currentWidget()->setFocus(Qt::ShortcutFocusReason); }));
    notifiers_.push_back(store.window().inspected.addNotifier([this] { showInspector(); }));
    notifiers_.push_back(store.window().showsCommandLog.addNotifier([this] { showCommandLog(); }));
    showProblem();
    showSelection();
    showInspector();
    showCommandLog();
}

void RepositoryView::setApplication(MenuTarget& application) { toolbar_->setApplication(application); }

void RepositoryView::setEditorTitle(std::function<QString()> title)
{
    editorTitle_ = std::move(title);
    nameEditor();
}

void RepositoryView::nameEditor()
{
    if (!editorTitle_)
        return;
    if (workingCopy_)
        workingCopy_->setEditorTitle(editorTitle_);
    if (history_)
        history_->detail()->setEditorTitle(editorTitle_);
    if (stashes_)
        stashes_->detail()->setEditorTitle(editorTitle_);
    if (timeline_)
        timeline_->detail()->setEditorTitle(editorTitle_);
    if (comparison_)
        comparison_->setEditorTitle(editorTitle_);
    if (refLog_)
        refLog_->detail()->setEditorTitle(editorTitle_);
}

void RepositoryView::showNotice(const QString& notice) { notice_->setText(notice); }

void RepositoryView::applyPatch() { choosePatchToApply(store_, *window()); }

void RepositoryView::showSelection()
{
    QWidget* view = chosenDetail();
    if (detail_->indexOf(view) < 0) {
        detail_->addWidget(view);
        nameEditor();
    }
    // The focus moves from one view to the next, but stays in the sidebar when it is there.
    const QWidget* const focus = QApplication::focusWidget();
    const bool takesFocus = !focus || detail_->isAncestorOf(focus);
    detail_->setCurrentWidget(view);
    quietLine_->setPlace(diffPlace());
    if (inspector_ && store_.window().inspected.value())
        placeInspector();
    if (takesFocus)
        view->setFocus(Qt::OtherFocusReason);
}

void RepositoryView::showInspector()
{
    if (!store_.window().inspected.value()) {
        hideInspector();
        return;
    }
    if (!inspector_) {
        inspector_ = new InspectorView(store_);
        auto* const layout = new QVBoxLayout(inspectorPlace_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(inspector_);
        inspector_->hide();
    }
    QWidget* const focus = QApplication::focusWidget();
    const bool hadFocus = focus && inspector_->isAncestorOf(focus);
    if (!hadFocus)
        focusBeforeInspector_ = focus;
    const QWidget* const before = inspector_->parentWidget();
    placeInspector();
    if (!hadFocus || inspector_->parentWidget() != before)
        inspector_->focusContent();
}

/// Puts a blame in the place of the diffs on display, and the history of a file beside them.
void RepositoryView::placeInspector()
{
    const bool isBlame = store_.window().inspected.value()->tab == InspectedFile::Tab::blame;
    QStackedWidget* const place = diffPlace();
    if (isBlame && inspector_->parentWidget() != place) {
        place->setCurrentIndex(place->addWidget(inspector_));
    } else if (!isBlame && inspector_->parentWidget() != inspectorPlace_) {
        inspectorPlace_->layout()->addWidget(inspector_);
    }
    inspector_->show();
    detailSplit_->setSizedVisible(!isBlame);
}

QStackedWidget* RepositoryView::diffPlace() const
{
    const QWidget* const view = detail_->currentWidget();
    if (view == workingCopy_)
        return workingCopy_->diffPlace();
    if (view == timeline_)
        return timeline_->diffPlace();
    if (view == comparison_)
        return comparison_->diffPlace();
    if (view == refLog_)
        return refLog_->diffPlace();
    return view == stashes_ ? stashes_->diffPlace() : history_->diffPlace();
}

void RepositoryView::hideInspector()
{
    if (!inspector_ || inspector_->isHidden())
        return;
    const QWidget* const focus = QApplication::focusWidget();
    const bool givesFocus = !focus || inspector_->isAncestorOf(focus);
    QWidget* const before = focusBeforeInspector_;
    // The focus moves before the view is hidden, since Qt would move it to the next widget.
    if (givesFocus && before && before->isVisible())
        before->setFocus(Qt::OtherFocusReason);
    else if (givesFocus && detail_->currentWidget())
        detail_->currentWidget()->setFocus(Qt::OtherFocusReason);
    detailSplit_->setSizedVisible(false);
    // Out of the place of the diffs, which then shows them again.
    inspectorPlace_->layout()->addWidget(inspector_);
    inspector_->hide();
}

void RepositoryView::showCommandLog()
{
    const bool shows = store_.window().showsCommandLog.value();
    if (shows == !logPlace_->isHidden())
        return;
    QWidget* const focus = QApplication::focusWidget();
    if (shows) {
        if (!log_) {
            log_ = new CommandLogPanel(store_);
            auto* const layout = new QVBoxLayout(logPlace_);
            layout->setContentsMargins(0, 0, 0, 0);
            layout->addWidget(log_);
        }
        focusBeforeLog_ = focus;
        windowSplit_->setSizedVisible(true);
        log_->setFocus(Qt::OtherFocusReason);
        return;
    }
    // The focus moves first, as for the inspector.
    if (!focus || log_->isAncestorOf(focus)) {
        const bool canReturn = focusBeforeLog_ && focusBeforeLog_->isVisible();
        if (QWidget* const next = canReturn ? focusBeforeLog_.data() : detail_->currentWidget())
            next->setFocus(Qt::OtherFocusReason);
    }
    windowSplit_->setSizedVisible(false);
}

/// Returns the comparison while there is one, and the view of the selected item otherwise.
QWidget* RepositoryView::chosenDetail()
{
    if (!store_.window().compared.value())
        return detailFor(store_.window().selection.value());
    return comparison_ = comparison_ ? comparison_ : new ComparisonView(store_, detail_);
}

void RepositoryView::showComparison()
{
    const bool wasShown = comparison_ && detail_->currentWidget() == comparison_;
    if (store_.window().compared.value())
        store_.window().leaveBlame();
    if (wasShown == store_.window().compared.value().has_value())
        return;
    showSelection();
    if (!wasShown)
        comparison_->setFocus(Qt::OtherFocusReason);
}

QWidget* RepositoryView::detailFor(const SidebarItem& item)
{
    switch (item.kind) {
    case SidebarItem::Kind::workingCopy:
        return workingCopy_ = workingCopy_ ? workingCopy_ : new WorkingCopyView(store_, detail_);
    case SidebarItem::Kind::stashes:
        return stashes_ = stashes_ ? stashes_ : new StashesView(store_, detail_);
    case SidebarItem::Kind::timeline:
        return timeline_ = timeline_ ? timeline_ : new TimelineView(store_, detail_);
    case SidebarItem::Kind::refLog:
        return refLog_ = refLog_ ? refLog_ : new RefLogView(store_, detail_);
    case SidebarItem::Kind::ref:
    case SidebarItem::Kind::history:
        break;
    }
    return history_ = history_ ? history_ : new HistoryView(store_, detail_);
}

} // namespace plovik

#include "moc_RepositoryView.cpp"

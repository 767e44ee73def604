// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/StashesView.h"

#include "GitKit/records/CommitKind.h"
#include "GitKit/records/Stash.h"
#include "app/settings/Settings.h"
#include "app/store/Obstacles.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/commit/CommitDetailView.h"
#include "app/ui/drag/DragData.h"
#include "app/ui/stashes/StashDelegate.h"
#include "app/ui/stashes/StashMenu.h"
#include "app/ui/stashes/StashesModel.h"
#include "app/ui/stashes/Tray.h"
#include "app/ui/widgets/BarButton.h"
#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/RowList.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/widgets/ScrollKeeper.h"
#include "app/ui/widgets/Separator.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QMenu>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <algorithm>
#include <numeric>

namespace plovik {

namespace {

constexpr double leastDetailHeight = 120;
constexpr double leastListHeight = 90;

} // namespace

StashesView::StashesView(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), store_(store), model_(new StashesModel(store, this)), content_(new QWidget(this)),
      detail_(new CommitDetailView(store, gitkit::CommitKind::stash)), empty_(new EmptyState(this)),
      sign_(new TraySign), stashChanges_(empty_->action(command(CommandId::stashChanges).title()))
{
    empty_->setSign(sign_);
    makeList();
    auto* column = new QVBoxLayout(content_);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeSeparator(content_));
    diffPlace_ = new QStackedWidget;
    diffPlace_->addWidget(detail_);
    column->addWidget(new SplitPane(settings::stashesDetailHeight, Qt::Vertical, SplitPane::Sized::second,
                                    leastDetailHeight, leastListHeight, list_, diffPlace_, content_),
                      1);
    addWidget(content_);
    addWidget(empty_);
    connect(stashChanges_, &QPushButton::clicked, this, [this] { command(CommandId::stashChanges).run(store_); });
    setFocusProxy(list_);
    observeStore();
    showStoreSelection();
    updateEmptyState();
    updateHeader();
}

QWidget* StashesView::makeHeader()
{
    auto* header = header_ = new QWidget(content_);
    header->installEventFilter(this);
    header->setAutoFillBackground(true);
    header->setBackgroundRole(QPalette::Base);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(16, 6, 12, 6);
    row->setSpacing(8);
    count_ = new ElidedLabel(header);
    count_->setForegroundRole(QPalette::PlaceholderText);
    followFont(*count_, -0.75);
    row->addWidget(count_, 1);
    for (const StashCommand& command : stashCommands()) {
        auto* button = new BarButton(stashCommandTitle(command.buttonName), header);
        button->setProperty("compact", true);
        connect(button, &QPushButton::clicked, this, [this, &command] {
            if (const gitkit::Stash* stash = selectedStash())
                command.run(store_, gitkit::Stash(*stash));
        });
        row->addWidget(button);
        buttons_.push_back(button);
    }
    more_ = new BarButton(tr("More…"), header);
    more_->setProperty("compact", true);
    connect(more_, &QPushButton::clicked, this,
            [this] { showMenuOf(selectedStash(), more_->mapToGlobal(more_->rect().bottomLeft())); });
    row->addWidget(more_);
    fitHeader();
    return header;
}

bool StashesView::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == header_ && (event->type() == QEvent::Resize || event->type() == QEvent::FontChange))
        fitHeader();
    return QStackedWidget::eventFilter(watched, event);
}

/// Shows as many buttons as fit; a last one opens the menu with all of them.
void StashesView::fitHeader()
{
    const QMargins margins = header_->layout()->contentsMargins();
    const int spacing = header_->layout()->spacing();
    const int room = header_->width() - margins.left() - margins.right();
    const auto wanted = [spacing](int sum, const QPushButton* button) {
        return sum + spacing + button->sizeHint().width();
    };
    const bool all = std::accumulate(buttons_.begin(), buttons_.end(), count_->sizeHint().width(), wanted) <= room;
    int taken = all ? 0 : wanted(0, more_);
    for (QPushButton* button : buttons_) {
        taken = wanted(taken, button);
        button->setVisible(all || taken <= room);
    }
    more_->setVisible(!all);
}

void StashesView::makeList()
{
    auto* const list = new RowList(tr("Stashes"), content_);
    list_ = list;
    list_->setModel(model_);
    list_->setItemDelegate(new StashDelegate(list_));
    list_->setContextMenuPolicy(Qt::CustomContextMenu);
    list->setDragged([this](QPoint pressed) {
        if (const QModelIndex row = list_->indexAt(pressed); row.isValid()) {
            const gitkit::Stash stash = model_->stash(row);
            drag(*list_, store_, {Dragged::Kind::stash, {stash.hash}}, shownMessage(stash));
        }
    });
    scroll_ = new ScrollKeeper(
        list_, [this](const QModelIndex& index) { return model_->stash(index).hash; },
        [this](const std::string& hash) { return model_->indexOf(hash); });
    connect(list_->selectionModel(), &QItemSelectionModel::selectionChanged, this, &StashesView::userSelected);
    connect(list_, &QWidget::customContextMenuRequested, this, &StashesView::showMenu);
    connect(model_, &QAbstractItemModel::modelReset, this, [this] {
        showStoreSelection();
        scroll_->restore();
    });
}

void StashesView::observeStore()
{
    notifiers_.push_back(store_.snapshot().stashes.addNotifier([this] {
        model_->rebuild();
        updateEmptyState();
        updateHeader();
    }));
    notifiers_.push_back(store_.window().selectedStash.addNotifier([this] {
        if (!isUpdating_)
            showStoreSelection();
        updateHeader();
    }));
    notifiers_.push_back(store_.changes().running.addNotifier([this] {
        updateHeader();
        updateEmptyState();
    }));
    const auto updates = [this] { updateEmptyState(); };
    notifiers_.push_back(store_.snapshot().hasLoaded.addNotifier(updates));
    notifiers_.push_back(store_.snapshot().readProblem.addNotifier(updates));
    notifiers_.push_back(store_.snapshot().status.addNotifier([this] {
        updateEmptyState();
        updateHeader();
    }));
}

const gitkit::Stash* StashesView::selectedStash() const
{
    const auto& stashes = store_.snapshot().stashes.value();
    const auto found = std::ranges::find_if(stashes, [selected = store_.window().selectedStash.value()](
                                                         const auto& stash) { return stash.hash == selected; });
    return found == stashes.end() ? nullptr : &*found;
}

void StashesView::updateHeader()
{
    count_->setText(tr("%Ln stash(es)", nullptr, static_cast<int>(store_.snapshot().stashes.value().size())));
    for (std::size_t index = 0; index < buttons_.size(); ++index) {
        const Verb verb = stashCommands()[index].verb;
        const QString whyNot = obstacle(store_.changes(), store_.snapshot(), verb);
        buttons_[index]->setEnabled(selectedStash() && whyNot.isEmpty());
        buttons_[index]->setToolTip(plainToolTip(whyNot));
    }
    more_->setEnabled(selectedStash());
    fitHeader();
}

void StashesView::updateEmptyState()
{
    if (!store_.snapshot().stashes.value().empty()) {
        setCurrentWidget(content_);
        return;
    }
    stashChanges_->setVisible(false);
    sign_->setVisible(false);
    if (!store_.snapshot().readProblem.value().isEmpty()) {
        empty_->setText(tr("The Stashes Could Not Be Read"),
                        tr("Git's own words stand above. Stashed changes are listed here as soon as they can be read "
                           "again."));
    } else if (!store_.snapshot().hasLoaded.value()) {
        empty_->setText({}, {});
    } else {
        empty_->setText(tr("No Stashes"), tr("Stashed changes are listed here."));
        sign_->setVisible(true);
        stashChanges_->setVisible(true);
        stashChanges_->setEnabled(command(CommandId::stashChanges).isOffered(store_));
    }
    setCurrentWidget(empty_);
}

void StashesView::userSelected()
{
    const QModelIndexList selected = list_->selectionModel()->selectedIndexes();
    if (isUpdating_ || selected.isEmpty())
        return;
    const QScopedValueRollback updating(isUpdating_, true);
    store_.window().selectStash(model_->stash(selected.front()).hash);
}

void StashesView::showStoreSelection()
{
    const std::optional<std::string>& hash = store_.window().selectedStash.value();
    const QScopedValueRollback updating(isUpdating_, true);
    list_->selectionModel()->setCurrentIndex(hash ? model_->indexOf(*hash) : QModelIndex(),
                                             QItemSelectionModel::ClearAndSelect);
}

void StashesView::showMenu(const QPoint& place)
{
    const QModelIndex index = list_->indexAt(place);
    if (!index.isValid())
        return;
    showMenuOf(&model_->stash(index), list_->viewport()->mapToGlobal(place));
}

QMenu* StashesView::makeContextMenu()
{
    const gitkit::Stash* const stash = selectedStash();
    return stash ? makeStashMenu(store_, *stash, this) : nullptr;
}

/// Opens the menu of a stash, if there is one, at a place of the screen.
void StashesView::showMenuOf(const gitkit::Stash* stash, const QPoint& place)
{
    if (!stash)
        return;
    QMenu* menu = makeStashMenu(store_, *stash, this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->popup(place);
}

} // namespace plovik

#include "moc_StashesView.cpp"

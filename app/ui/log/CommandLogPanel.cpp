// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/log/CommandLogPanel.h"

#include "app/settings/Settings.h"
#include "app/ui/log/CommandDetail.h"
#include "app/ui/log/CommandList.h"
#include "app/ui/log/CommandLogModel.h"
#include "app/ui/widgets/IconButton.h"
#include "app/ui/widgets/Separator.h"
#include "app/ui/widgets/SplitPane.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QScopedValueRollback>
#include <QVBoxLayout>

#include <chrono>

namespace plovik {

namespace {

constexpr std::chrono::milliseconds updatePause{100};
constexpr double leastListWidth = 260;
constexpr double leastDetailWidth = 260;

} // namespace

CommandLogPanel::CommandLogPanel(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), model_(new CommandLogModel(store.changes().commandLog(), this)),
      list_(new CommandList(*model_, this)), detail_(new CommandDetail(store))
{
    setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(makeHeader());
    column->addWidget(makeSeparator(this));
    column->addWidget(new SplitPane(settings::commandLogListWidth, Qt::Horizontal, SplitPane::Sized::first,
                                    leastListWidth, leastDetailWidth, list_, detail_, this),
                      1);
    setFocusProxy(list_);
    pause_.setSingleShot(true);
    pause_.setInterval(updatePause);
    connect(&pause_, &QTimer::timeout, this, [this] {
        if (isBehind_)
            update();
    });
    connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this, &CommandLogPanel::userSelected);
    connect(list_, &CommandList::outputWanted, detail_, &CommandDetail::copyOutput);
    connect(detail_, &CommandDetail::shellLineWanted, list_, &CommandList::copy);
}

QWidget* CommandLogPanel::makeHeader()
{
    auto* const header = new QWidget(this);
    title_ = new QLabel(tr("Command Log"), header);
    followFont(*title_, 0, QFont::DemiBold);
    count_ = new QLabel(header);
    count_->setForegroundRole(QPalette::PlaceholderText);
    count_->setTextFormat(Qt::PlainText);
    field_ = new QLineEdit(header);
    field_->setAccessibleName(tr("Filter Commands"));
    field_->setPlaceholderText(tr("Filter commands"));
    field_->setClearButtonEnabled(true);
    field_->setMaximumWidth(Theme::scaled(260));
    hidesReads_ = new QCheckBox(tr("Hide Reads"), header);
    hidesReads_->setToolTip(tr("Show only the commands that change something, and those that failed"));
    hidesReads_->setChecked(Settings::shared().value(settings::commandLogHidesReads));
    auto* const close = new IconButton(Icon::close, tr("Close Command Log"), header, tr("Esc"));
    auto* const row = new QHBoxLayout(header);
    row->setContentsMargins(14, 4, 8, 4);
    row->setSpacing(10);
    row->addWidget(title_);
    row->addWidget(count_);
    row->addStretch(1);
    row->addWidget(hidesReads_);
    row->addWidget(field_, 3);
    row->addWidget(close);
    connect(field_, &QLineEdit::textChanged, this, &CommandLogPanel::filter);
    connect(hidesReads_, &QCheckBox::toggled, this, [this](bool hides) {
        Settings::shared().set(settings::commandLogHidesReads, hides);
        filter();
    });
    connect(close, &IconButton::clicked, this, [this] { store_.window().showCommandLog(false); });
    return header;
}

void CommandLogPanel::showEvent(QShowEvent* event)
{
    QWidget::showEvent(event);
    notifiers_.push_back(store_.changes().commandLog().generation.addNotifier([this] { hearOfNews(); }));
    notifiers_.push_back(store_.window().shownCommand.addNotifier([this] { showSelected(); }));
    filter();
    update();
    showSelected();
    // The list gets its height only after this.
    QTimer::singleShot(0, list_, [this] {
        if (list_->currentIndex().row() > 0)
            list_->scrollTo(list_->currentIndex());
    });
}

void CommandLogPanel::hideEvent(QHideEvent* event)
{
    QWidget::hideEvent(event);
    notifiers_.clear();
    pause_.stop();
}

void CommandLogPanel::hearOfNews()
{
    isBehind_ = true;
    if (!pause_.isActive())
        update();
}

void CommandLogPanel::update()
{
    isBehind_ = false;
    {
        // Rows are added and removed, but the selected command stays the same.
        const QScopedValueRollback selecting(isSelecting_, true);
        list_->update();
    }
    showCount();
    showDetail();
    pause_.start();
}

void CommandLogPanel::showCount()
{
    const int rows = model_->rowCount();
    count_->setText(tr("%Ln command(s)", nullptr, rows));
}

void CommandLogPanel::filter()
{
    {
        const QScopedValueRollback selecting(isSelecting_, true);
        model_->setFilter(field_->text(), hidesReads_->isChecked());
    }
    if (const auto shown = store_.window().shownCommand.value(); shown && model_->indexOf(*shown).isValid())
        showSelected();
    showCount();
}

void CommandLogPanel::userSelected()
{
    const QModelIndex current = list_->currentIndex();
    if (isSelecting_ || !current.isValid())
        return;
    const QScopedValueRollback selecting(isSelecting_, true);
    store_.window().showCommand(model_->command(current).number);
    showDetail();
}

/// Selects the command that the store names, or else the newest one.
void CommandLogPanel::showSelected()
{
    if (isSelecting_)
        return;
    const std::optional<CommandLog::Number> shown = store_.window().shownCommand.value();
    if (shown && !model_->indexOf(*shown).isValid()) {
        list_->update(); // the command may be newer than the model
        if (!model_->indexOf(*shown).isValid())
            field_->clear();
    }
    const QModelIndex index = shown ? model_->indexOf(*shown) : model_->index(0);
    const QScopedValueRollback selecting(isSelecting_, true);
    if (index.isValid()) {
        list_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
        list_->scrollTo(index);
        store_.window().showCommand(model_->command(index).number);
    }
    showDetail();
}

void CommandLogPanel::showDetail()
{
    const QModelIndex index = list_->currentIndex();
    detail_->show(index.isValid() ? std::optional(model_->command(index)) : std::nullopt);
}

void CommandLogPanel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() != Qt::Key_Escape) {
        QWidget::keyPressEvent(event);
        return;
    }
    if (!field_->text().isEmpty())
        field_->clear();
    else
        store_.window().showCommandLog(false);
}

} // namespace plovik

#include "moc_CommandLogPanel.cpp"

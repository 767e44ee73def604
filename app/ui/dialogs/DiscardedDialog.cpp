// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/DiscardedDialog.h"

#include "app/store/ShownText.h"
#include "app/ui/dialogs/DialogParts.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/RowPainting.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QShortcut>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int listWidth = 560;
constexpr int listHeight = 220;
/// So many names stand in a row's tooltip.
constexpr std::size_t mostNamed = 30;

struct DiscardedTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::DiscardedDialog)
};

QString allNames(const std::vector<std::string>& paths)
{
    QString names;
    for (std::size_t index = 0; index < std::min(paths.size(), mostNamed); ++index)
        names += shownText(paths[index]) + u'\n';
    if (paths.size() > mostNamed)
        names += DiscardedTexts::tr("and %Ln other(s)", nullptr, static_cast<int>(paths.size() - mostNamed));
    return names.trimmed();
}

constexpr int rowPadding = 10;

void addRow(QListWidget& list, const gitkit::Kept& kept)
{
    auto* const row = new QListWidgetItem(DiscardedTexts::tr("%1: %2", "date and time: names of files")
                                              .arg(absoluteDate(kept.date, QLocale()), namesOfFiles(kept.paths)),
                                          &list);
    row->setToolTip(plainToolTip(allNames(kept.paths)));
    row->setSizeHint({0, list.fontMetrics().height() + rowPadding});
}

} // namespace

DiscardedDialog::DiscardedDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Restore Discarded"), tr("Restore"), parent), list_(new QListWidget(this)),
      empty_(new EmptyState(this)), save_(new QPushButton(tr("Save As…"), this)),
      drop_(new QPushButton(tr("Drop the Copy"), this)), kept_(store.git(), &readKept, [this] { showKept(); }),
      keepingNotifier_(store.discards().generation.addNotifier([this] { kept_.askAgain({}); }))
{
    layOut();
    connect(list_, &QListWidget::currentRowChanged, this, &DiscardedDialog::selectionChanged);
    connect(list_, &QListWidget::itemDoubleClicked, this, [this] {
        if (isComplete() && this->store().changes().offers(Verb::undoDiscard))
            accept();
    });
    connect(save_, &QPushButton::clicked, this, &DiscardedDialog::saveSelected);
    connect(drop_, &QPushButton::clicked, this, &DiscardedDialog::dropSelected);
    auto* const dropKey = new QShortcut(QKeySequence::Delete, list_);
    dropKey->setContext(Qt::WidgetShortcut);
    connect(dropKey, &QShortcut::activated, this, &DiscardedDialog::dropSelected);
    kept_.ask({});
    selectionChanged();
    list_->setFocus();
}

void DiscardedDialog::layOut()
{
    list_->setAccessibleName(tr("Discarded"));
    list_->setMinimumSize(listWidth, listHeight);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setSpacing(2);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    empty_->setText(tr("Nothing Is Kept"), tr("What is discarded here is kept for 30 days."));
    empty_->setMinimumSize(listWidth, listHeight);
    empty_->hide();
    auto* const buttons = new QHBoxLayout;
    for (QPushButton* button : {save_, drop_}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    fields().addWidget(list_);
    fields().addWidget(empty_);
    fields().addLayout(buttons);
}

void DiscardedDialog::showKept()
{
    const std::optional<gitkit::Kept> before = selected();
    rows_ = kept_.result().value_or(Rows());
    {
        const QSignalBlocker blocker(list_);
        list_->clear();
        for (const gitkit::Kept& kept : rows_)
            addRow(*list_, kept);
        const auto same = before ? std::ranges::find(rows_, before->name, &gitkit::Kept::name) : rows_.end();
        list_->setCurrentRow(same == rows_.end() ? 0 : static_cast<int>(same - rows_.begin()));
    }
    const bool isEmpty = kept_.result() && rows_.empty();
    list_->setVisible(!isEmpty);
    empty_->setVisible(isEmpty);
    selectionChanged();
}

std::optional<gitkit::Kept> DiscardedDialog::selected() const
{
    const int row = list_->currentRow();
    return row < 0 ? std::nullopt : std::optional(rows_.at(static_cast<std::size_t>(row)));
}

void DiscardedDialog::selectionChanged()
{
    const std::optional<gitkit::Kept> kept = selected();
    save_->setText(kept && kept->paths.size() > 1 ? tr("Save In…") : tr("Save As…"));
    save_->setEnabled(kept.has_value());
    drop_->setEnabled(kept.has_value());
    validate();
}

QString DiscardedDialog::problem() const { return kept_.failure() ? kept_.failure()->message : QString(); }

QString DiscardedDialog::note() const
{
    if (!kept_.answered())
        return tr("Reading what is kept…");
    return selected() ? tr("What has changed since is merged. Where that makes a conflict the file stays as it is, and "
                           "the copy is kept.")
                      : QString();
}

void DiscardedDialog::saveSelected()
{
    const std::optional<gitkit::Kept> kept = selected();
    if (!kept)
        return;
    const bool isOne = kept->paths.size() == 1;
    dialogParts::askForPlace(
        {.isFolder = !isOne,
         .name = isOne ? QFileInfo(shownText(kept->paths.front())).fileName() : QString(),
         .chosen = [this, kept = *kept](const std::filesystem::path& place) { store().discards().save(kept, place); }},
        this);
}

void DiscardedDialog::dropSelected()
{
    if (const std::optional<gitkit::Kept> kept = selected())
        store().discards().confirmDrop(*kept);
}

void DiscardedDialog::submit()
{
    if (const std::optional<gitkit::Kept> kept = selected())
        store().discards().bringBack(*kept);
}

} // namespace plovik

#include "moc_DiscardedDialog.cpp"

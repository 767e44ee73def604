// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/WorktreesDialog.h"

#include "GitKit/records/Commit.h"
#include "app/store/ShownText.h"
#include "app/store/actions/Worktrees.h"
#include "app/ui/commands/Commands.h"
#include "app/ui/widgets/EmptyState.h"
#include "app/ui/widgets/RowPainting.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr int treesWidth = 560;
constexpr int treesHeight = 180;
constexpr int treePadding = 10;

QString worktreeRow(const gitkit::Worktree& tree)
{
    const QString branch = tree.isBare ? WorktreesDialog::tr("bare")
                           : tree.branch.empty()
                               ? WorktreesDialog::tr("detached at %1").arg(shownText(gitkit::shortHash(tree.head)))
                               : shownText(tree.branchName());
    QString row =
        WorktreesDialog::tr("%1: %2", "folder of a worktree: its branch").arg(actions::worktreeName(tree), branch);
    if (tree.isMissing)
        row = WorktreesDialog::tr("%1, missing").arg(row);
    if (tree.lock)
        row = WorktreesDialog::tr("%1, locked").arg(row);
    return tree.isHere ? WorktreesDialog::tr("%1, this window").arg(row) : row;
}

} // namespace

WorktreesDialog::WorktreesDialog(RepositoryStore& store, QWidget* parent)
    : Sheet(store, tr("Worktrees"), tr("Open"), parent), list_(new QListWidget(this)), empty_(new EmptyState(this)),
      make_(new QPushButton(tr("New Worktree…"), this)), lock_(new QPushButton(tr("Lock…"), this)),
      remove_(new QPushButton(tr("Remove…"), this))
{
    layOut();
    connect(list_, &QListWidget::currentRowChanged, this, &WorktreesDialog::selectionChanged);
    connect(list_, &QListWidget::itemDoubleClicked, this, &WorktreesDialog::confirm);
    connect(make_, &QPushButton::clicked, this, &WorktreesDialog::make);
    connect(lock_, &QPushButton::clicked, this, &WorktreesDialog::lock);
    connect(remove_, &QPushButton::clicked, this, &WorktreesDialog::remove);
    followers_ = followOffers(store, [this] { selectionChanged(); });
    followers_.push_back(store.neighbours().worktrees.addNotifier([this] { show(); }));
    followers_.push_back(store.neighbours().problem.addNotifier([this] { validate(); }));
    show();
    list_->setFocus();
}

void WorktreesDialog::layOut()
{
    list_->setAccessibleName(tr("Worktrees"));
    list_->setMinimumSize(treesWidth, treesHeight);
    list_->setTextElideMode(Qt::ElideMiddle);
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    empty_->setText(tr("No Other Worktrees"),
                    tr("A worktree is a second folder of this repository, with a branch of its own checked out."));
    empty_->setMinimumSize(treesWidth, treesHeight);
    auto* const buttons = new QHBoxLayout;
    for (QPushButton* const button : {make_, lock_, remove_}) {
        button->setAutoDefault(false);
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    fields().addWidget(list_);
    fields().addWidget(empty_);
    fields().addLayout(buttons);
}

void WorktreesDialog::show()
{
    const std::vector<gitkit::Worktree>& trees = store().neighbours().worktrees.value();
    const int row = list_->currentRow();
    {
        const QSignalBlocker blocker(list_);
        list_->clear();
        for (const gitkit::Worktree& tree : trees) {
            auto* const item = new QListWidgetItem(worktreeRow(tree), list_);
            item->setToolTip(plainToolTip(shownText(tree.folder.native())));
            item->setSizeHint({0, list_->fontMetrics().height() + treePadding});
        }
        const auto other = std::ranges::find(trees, false, &gitkit::Worktree::isHere);
        const int first = other == trees.end() ? 0 : static_cast<int>(other - trees.begin());
        list_->setCurrentRow(row >= 0 ? std::min(row, list_->count() - 1) : first);
    }
    list_->setVisible(!trees.empty());
    empty_->setVisible(trees.empty());
    selectionChanged();
}

std::optional<gitkit::Worktree> WorktreesDialog::selected() const
{
    const std::vector<gitkit::Worktree>& trees = store().neighbours().worktrees.value();
    const int row = list_->currentRow();
    return row >= 0 && row < static_cast<int>(trees.size()) ? std::optional(trees[static_cast<std::size_t>(row)])
                                                            : std::nullopt;
}

void WorktreesDialog::selectionChanged()
{
    const std::optional<gitkit::Worktree> tree = selected();
    const bool isOffered = store().changes().offers(Verb::changeWorktree);
    const QString why = !tree ? QString() : actions::whyNotChanged(*tree);
    const Command& making = command(CommandId::newWorktree);
    make_->setEnabled(making.isOffered(store()));
    make_->setToolTip(plainToolTip(making.whyNot(store())));
    lock_->setText(tree && tree->lock ? tr("Unlock") : tr("Lock…"));
    remove_->setText(tree && tree->isMissing ? tr("Forget…") : tr("Remove…"));
    for (QPushButton* const button : {lock_, remove_}) {
        button->setEnabled(tree && why.isEmpty() && isOffered);
        button->setToolTip(plainToolTip(why));
    }
    if (tree && tree->isHere && why.isEmpty()) {
        remove_->setEnabled(false);
        remove_->setToolTip(tr("This window shows it. Remove it in another one."));
    }
    validate();
}

QString WorktreesDialog::problem() const { return store().neighbours().problem.value(); }

QString WorktreesDialog::note() const
{
    const std::optional<gitkit::Worktree> tree = selected();
    if (!tree)
        return {};
    const QString why = actions::whyNotOpened(*tree);
    if (tree->lock && !tree->lock->empty())
        return tr("Locked: %1").arg(shownText(*tree->lock));
    return why.isEmpty() ? shownText(tree->folder.native()) : why;
}

bool WorktreesDialog::isComplete() const { return selected() && actions::whyNotOpened(*selected()).isEmpty(); }

void WorktreesDialog::submit()
{
    if (const std::optional<gitkit::Worktree> tree = selected())
        actions::openWorktree(store().actors(), *tree);
}

void WorktreesDialog::make() { store().window().showSheet(NewWorktreeSheet{}); }

void WorktreesDialog::lock()
{
    const std::optional<gitkit::Worktree> tree = selected();
    if (tree && tree->lock)
        actions::unlockWorktree(store().actors(), *tree);
    else if (tree)
        store().window().showSheet(LockWorktreeSheet{*tree});
}

/// The question comes when the sheet is closed.
void WorktreesDialog::remove()
{
    const std::optional<gitkit::Worktree> tree = selected();
    RepositoryStore& window = store();
    reject();
    if (tree)
        actions::askToRemoveWorktree(window.actors(), *tree);
}

} // namespace plovik

#include "moc_WorktreesDialog.cpp"

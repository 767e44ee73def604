// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/WorkingDetail.h"

#include "app/ui/diff/WorkingDiffPane.h"
#include "app/ui/merge/ConflictCard.h"
#include "app/ui/merge/MergePane.h"

namespace plovik {

WorkingDetail::WorkingDetail(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), diff_(new WorkingDiffPane(store)), merge_(new MergePane(store)),
      card_(new ConflictCard(store))
{
    addWidget(diff_);
    addWidget(merge_);
    addWidget(card_);
    connect(merge_, &MergePane::filledChanged, this, &WorkingDetail::choose);
    connect(card_, &ConflictCard::filledChanged, this, &WorkingDetail::choose);
    choose();
}

void WorkingDetail::choose()
{
    if (merge_->isFilled())
        setCurrentWidget(merge_);
    else if (card_->isFilled())
        setCurrentWidget(card_);
    else
        setCurrentWidget(diff_);
}

} // namespace plovik

#include "moc_WorkingDetail.cpp"

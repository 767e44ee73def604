// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/WorkingDetail.h"

#include "app/ui/diff/WorkingDiffPane.h"
#include "app/ui/merge/MergePane.h"

namespace plovik {

WorkingDetail::WorkingDetail(RepositoryStore& store, QWidget* parent)
    : QStackedWidget(parent), diff_(new WorkingDiffPane(store)), merge_(new MergePane(store))
{
    addWidget(diff_);
    addWidget(merge_);
    connect(merge_, &MergePane::filledChanged, this, &WorkingDetail::choose);
    choose();
}

void WorkingDetail::choose() { setCurrentWidget(merge_->isFilled() ? static_cast<QWidget*>(merge_) : diff_); }

} // namespace plovik

#include "moc_WorkingDetail.cpp"

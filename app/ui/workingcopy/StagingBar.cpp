// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/workingcopy/StagingBar.h"

#include "app/ui/widgets/ElidedLabel.h"
#include "app/ui/widgets/ThemeFollowing.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

namespace plovik {

namespace {

QPushButton* makeButton(const QString& title, QWidget* parent)
{
    auto* button = new QPushButton(title, parent);
    button->setAccessibleName(title);
    button->setProperty("compact", true);
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

} // namespace

StagingBar::StagingBar(RepositoryStore& store, QWidget* parent)
    : QWidget(parent), store_(store), stageAll_(makeButton(tr("Stage All"), this)),
      unstageAll_(makeButton(tr("Unstage All"), this)), count_(new ElidedLabel(this))
{
    count_->setForegroundRole(QPalette::PlaceholderText);
    for (QWidget* widget :
         {static_cast<QWidget*>(stageAll_), static_cast<QWidget*>(unstageAll_), static_cast<QWidget*>(count_)})
        followFont(*widget, -0.75);
    count_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    count_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(12, 6, 12, 8);
    row->setSpacing(8);
    row->addWidget(stageAll_);
    row->addWidget(unstageAll_);
    row->addWidget(count_, 1);
    connect(stageAll_, &QPushButton::clicked, this, [this] { store_.staging().stageAll(); });
    connect(unstageAll_, &QPushButton::clicked, this, [this] { store_.staging().unstageAll(); });
    notifiers_.push_back(store.snapshot().status.addNotifier([this] { showCounts(); }));
    notifiers_.push_back(store.staging().stagingGeneration.addNotifier([this] { showCounts(); }));
    showCounts();
}

void StagingBar::showCounts()
{
    const auto& files = store_.snapshot().status.value().files;
    const Staging::StageCounts counts = store_.staging().shownCounts();
    stageAll_->setEnabled(counts.whole < std::ssize(files.list()));
    unstageAll_->setEnabled(counts.touched > 0);
    count_->setText(files.empty() ? QString() : tr("%L1 of %L2 staged").arg(counts.touched).arg(files.size()));
}

} // namespace plovik

#include "moc_StagingBar.cpp"

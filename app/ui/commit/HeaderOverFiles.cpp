// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/HeaderOverFiles.h"

#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitHeader.h"
#include "app/ui/widgets/Theme.h"

#include <QAbstractItemModel>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr double fairPartOfList = 0.36;
constexpr int mostRowsCounted = 100; ///< more rows never fit
constexpr int leastHeader = 48;
constexpr int leastFiles = 72;

QWidget* filesBelow(QLayout* summary, CommitFilesList* files)
{
    auto* const below = new QWidget;
    below->setBackgroundRole(QPalette::Base);
    below->setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(below);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(summary);
    column->addWidget(files, 1);
    return below;
}

} // namespace

HeaderOverFiles::HeaderOverFiles(gitkit::CommitKind kind, CommitHeader* header, QLayout* summary,
                                 CommitFilesList* files, QWidget* parent)
    : SplitPane(kind == gitkit::CommitKind::stash ? settings::stashHeaderHeight : settings::commitHeaderHeight,
                Qt::Vertical, Sized::first, Theme::scaled(leastHeader), Theme::scaled(leastFiles), header,
                filesBelow(summary, files), parent),
      header_(header), summary_(summary), files_(files)
{
    setAutomatic([this](double available) { return share(available); });
}

double HeaderOverFiles::share(double available) const
{
    const double room =
        available - (summary_->hasHeightForWidth() ? summary_->heightForWidth(width()) : summary_->sizeHint().height());
    const int rows = std::min(files_->model()->rowCount(), mostRowsCounted);
    const int wanted = rows > 0 ? rows * files_->sizeHintForRow(0) + files_->height() - files_->viewport()->height() + 8
                                : files_->minimumSizeHint().height();
    const double list =
        std::max<double>(std::min<double>(wanted, room * fairPartOfList), files_->minimumSizeHint().height());
    return header_->bestHeight(std::max(0, static_cast<int>(room - list)));
}

} // namespace plovik

#include "moc_HeaderOverFiles.cpp"

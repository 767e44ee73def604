// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/HeaderOverFiles.h"

#include "app/ui/commit/CommitFilesList.h"
#include "app/ui/commit/CommitHeader.h"

#include <QAbstractItemModel>
#include <QVBoxLayout>

#include <algorithm>

namespace plovik {

namespace {

constexpr double fairPartOfList = 5.0 / 11;
constexpr int mostRowsCounted = 100; ///< more rows never fit

} // namespace

HeaderOverFiles::HeaderOverFiles(CommitHeader* header, QLayout* summary, CommitFilesList* files, QWidget* parent)
    : QWidget(parent), header_(header), summary_(summary), files_(files)
{
    setBackgroundRole(QPalette::Base);
    setAutoFillBackground(true);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(header);
    column->addLayout(summary);
    column->addWidget(files, 1);
}

void HeaderOverFiles::share()
{
    const int room = height() - summary_->sizeHint().height();
    const int rows = std::min(files_->model()->rowCount(), mostRowsCounted);
    const int wanted = rows > 0 ? rows * files_->sizeHintForRow(0) + files_->height() - files_->viewport()->height() + 8
                                : files_->minimumSizeHint().height();
    const int list = std::min(wanted, static_cast<int>(room * fairPartOfList));
    header_->setFixedHeight(std::clamp(header_->sizeHint().height(), 0, std::max(0, room - list)));
}

void HeaderOverFiles::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    share();
}

} // namespace plovik

#include "moc_HeaderOverFiles.cpp"

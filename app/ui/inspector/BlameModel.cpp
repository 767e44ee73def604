// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/inspector/BlameModel.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/history/RowText.h"

#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

void BlameModel::setDocument(std::shared_ptr<const BlameDocument> document)
{
    beginResetModel();
    document_ = std::move(document);
    endResetModel();
}

int BlameModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !document_ ? 0 : document_->rowCount();
}

QVariant BlameModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || !document_ || index.row() >= document_->rowCount())
        return {};
    const int row = index.row();
    switch (role) {
    case Qt::DisplayRole:
        return shownLine(document_->text(row));
    case Qt::AccessibleTextRole:
        return u"%1: %2"_s.arg(row + 1).arg(shownLine(document_->text(row)));
    case Qt::AccessibleDescriptionRole:
        return about(row);
    default:
        return {};
    }
}

QString BlameModel::about(int row) const
{
    const BlameDocument::Commit& commit = document_->commit(row);
    if (commit.isUncommitted)
        return tr("Not committed yet");
    return commit.subject + u"\n\n"_s + commit.author + u'\n' + absoluteDate(commit.date, QLocale()) + u'\n' +
           shownText(commit.hash);
}

} // namespace plovik

#include "moc_BlameModel.cpp"

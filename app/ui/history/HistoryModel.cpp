// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryModel.h"

#include "app/store/ShownText.h"

#include <algorithm>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

std::size_t extended(std::size_t fingerprint, const HistoryRow& row)
{
    return (fingerprint ^ std::hash<std::string>{}(row.commit.hash)) * 0x9E3779B97F4A7C15U + 1;
}

QString accessibleName(const gitkit::Commit& commit)
{
    return QStringList{shownText(commit.subject), shownText(commit.authorName), shownText(commit.shortHash())}.join(
        u", "_s);
}

QString accessibleDescription(const gitkit::Commit& commit)
{
    QStringList names;
    for (const gitkit::RefLabel& label : commit.refs)
        names << shownText(label.name);
    return names.join(u", "_s);
}

} // namespace

HistoryModel::HistoryModel(RepositoryStore& store, QObject* parent)
    : QAbstractListModel(parent), store_(store), notifier_(store.history().history.addNotifier([this] { applyPage(); }))
{
    applyPage();
}

int HistoryModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : count_; }

const HistoryRow* HistoryModel::row(int number) const
{
    const auto& rows = store_.history().history.value();
    if (number < 0 || static_cast<std::size_t>(number) >= rows.size())
        return nullptr;
    return &rows[static_cast<std::size_t>(number)];
}

int HistoryModel::rowOf(const std::string& hash) const
{
    const auto& rows = store_.history().history.value();
    const auto found = std::ranges::find(rows, hash, &HistoryRow::id);
    return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const
{
    const HistoryRow* found = index.isValid() ? row(index.row()) : nullptr;
    if (!found)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shownText(found->commit.subject);
    case Qt::AccessibleTextRole:
        return accessibleName(found->commit);
    case Qt::AccessibleDescriptionRole:
        return accessibleDescription(found->commit);
    default:
        return {};
    }
}

void HistoryModel::applyPage()
{
    const auto& rows = store_.history().history.value();
    const auto size = static_cast<int>(rows.size());
    const int announced = count_;
    std::size_t fingerprint = 0;
    for (int i = 0; i < std::min(announced, size); ++i)
        fingerprint = extended(fingerprint, rows[static_cast<std::size_t>(i)]);
    const bool continues = size >= announced && fingerprint == fingerprint_;
    for (int i = announced; i < size; ++i)
        fingerprint = extended(fingerprint, rows[static_cast<std::size_t>(i)]);
    fingerprint_ = fingerprint;

    if (!continues) {
        beginResetModel();
        count_ = size;
        endResetModel();
        return;
    }
    if (size > announced) {
        beginInsertRows({}, announced, size - 1);
        count_ = size;
        endInsertRows();
    }
    // The labels and the graph of these commits may have changed.
    if (announced > 0)
        Q_EMIT dataChanged(index(0), index(announced - 1));
}

} // namespace plovik

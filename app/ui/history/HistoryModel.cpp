// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/history/HistoryModel.h"

#include "app/store/ShownText.h"
#include "app/ui/history/PlanSigns.h"

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

QString accessibleName(const gitkit::Commit& commit)
{
    return QStringList{shownText(commit.subject), shownText(commit.authorName), shownText(commit.shortHash())}.join(
        u", "_s);
}

QString accessibleDescription(const gitkit::Commit& commit, bool isMatch, const PlanSign& plan)
{
    QStringList names;
    if (!plan.text.isEmpty())
        names << plan.text;
    if (plan.isPublished)
        names << HistoryModel::tr("published");
    if (isMatch)
        names << HistoryModel::tr("matches the search");
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

int HistoryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(announced_.size());
}

std::optional<HistoryRow> HistoryModel::row(int number) const
{
    if (number < 0 || static_cast<std::size_t>(number) >= announced_.size())
        return std::nullopt;
    return announced_[static_cast<std::size_t>(number)];
}

std::string HistoryModel::hash(int number) const
{
    if (number < 0 || static_cast<std::size_t>(number) >= announced_.size())
        return {};
    return announced_.hashAt(static_cast<std::size_t>(number));
}

int HistoryModel::rowOf(const std::string& hash) const
{
    const std::optional<std::size_t> row = announced_.rowOf(hash);
    return row ? static_cast<int>(*row) : -1;
}

QVariant HistoryModel::data(const QModelIndex& index, int role) const
{
    const std::optional<HistoryRow> found = index.isValid() ? row(index.row()) : std::nullopt;
    if (!found)
        return {};
    switch (role) {
    case Qt::DisplayRole:
        return shownText(found->commit.subject);
    case Qt::AccessibleTextRole:
        return accessibleName(found->commit);
    case Qt::AccessibleDescriptionRole:
        return accessibleDescription(
            found->commit, store_.history().searchesInGraph.value() && store_.matches().contains(found->commit.hash),
            planSignOf(store_.rewriting(), found->commit.hash));
    default:
        return {};
    }
}

void HistoryModel::applyPage()
{
    const HistoryRows& rows = store_.history().history.value();
    const auto announced = static_cast<int>(announced_.size());
    if (!rows.beginsWith(announced_)) {
        beginResetModel();
        announced_ = rows;
        endResetModel();
        return;
    }
    const bool areLabelsNew = !rows.hasLabelsOf(announced_);
    const auto size = static_cast<int>(rows.size());
    if (size > announced) {
        beginInsertRows({}, announced, size - 1);
        announced_ = rows;
        endInsertRows();
    } else {
        announced_ = rows;
    }
    if (areLabelsNew && announced > 0)
        Q_EMIT dataChanged(index(0), index(announced - 1));
}

} // namespace plovik

#include "moc_HistoryModel.cpp"

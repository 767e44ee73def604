// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/dialogs/AbsorbRows.h"

#include "GitKit/records/Commit.h"
#include "app/store/ShownText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QApplication>
#include <QFontMetrics>

#include <algorithm>
#include <set>
#include <utility>

namespace plovik {

using gitkit::AbsorbHunk;
using gitkit::AbsorbProposal;
using gitkit::StaysStaged;

namespace {

constexpr int absorbRowSpace = 10;

bool isSameChange(const AbsorbHunk& one, const AbsorbHunk& other)
{
    return one.path == other.path && one.line == other.line && one.gone == other.gone && one.come == other.come;
}

/// Returns the first line that says something of the change.
QString firstLine(const AbsorbHunk& hunk)
{
    for (const auto* lines : {&hunk.come, &hunk.gone}) {
        for (const std::string& line : *lines) {
            if (const QString shown = shownText(line).trimmed(); !shown.isEmpty())
                return shown;
        }
    }
    return {};
}

} // namespace

void AbsorbRows::show(AbsorbProposal proposal)
{
    if (proposal == proposal_)
        return;
    beginResetModel();
    const AbsorbProposal before = std::exchange(proposal_, std::move(proposal));
    const std::vector<Row> rows = std::exchange(rows_, {});
    std::vector<Row> staying;
    for (std::size_t index = 0; index < proposal_.hunks.size(); ++index) {
        Row row{.hunk = index};
        const auto found = std::ranges::find(proposal_.commits, proposal_.hunks[index].target);
        if (found != proposal_.commits.end())
            row.target = row.lastTarget = static_cast<std::size_t>(found - proposal_.commits.begin());
        (row.target ? rows_ : staying).push_back(row);
    }
    rows_.insert(rows_.end(), staying.begin(), staying.end());
    for (std::size_t index = 0; index < proposal_.others.size(); ++index)
        rows_.push_back({.other = index});
    if (before.commits == proposal_.commits)
        keepChoices(before, rows);
    endResetModel();
}

void AbsorbRows::keepChoices(const AbsorbProposal& before, const std::vector<Row>& rows)
{
    for (Row& row : rows_) {
        const auto same = std::ranges::find_if(rows, [&](const Row& old) {
            return row.hunk && old.hunk && isSameChange(before.hunks[*old.hunk], proposal_.hunks[*row.hunk]);
        });
        if (same == rows.end())
            continue;
        row.target = same->target;
        row.lastTarget = same->lastTarget;
    }
}

AbsorbProposal AbsorbRows::chosen() const
{
    AbsorbProposal chosen = proposal_;
    for (const Row& row : rows_) {
        if (row.hunk)
            chosen.hunks[*row.hunk].target = row.target ? proposal_.commits[*row.target] : std::string();
    }
    return chosen;
}

int AbsorbRows::chosenCount() const
{
    return static_cast<int>(std::ranges::count_if(rows_, [](const Row& row) { return row.target.has_value(); }));
}

int AbsorbRows::chosenCommits() const
{
    std::set<std::size_t> commits;
    for (const Row& row : rows_) {
        if (row.target)
            commits.insert(*row.target);
    }
    return static_cast<int>(commits.size());
}

const AbsorbHunk* AbsorbRows::hunkAt(int row) const
{
    if (row < 0 || row >= rowCount())
        return nullptr;
    const auto& hunk = rows_[static_cast<std::size_t>(row)].hunk;
    return hunk ? &proposal_.hunks[*hunk] : nullptr;
}

std::optional<std::size_t> AbsorbRows::targetAt(int row) const
{
    return row < 0 || row >= rowCount() ? std::nullopt : rows_[static_cast<std::size_t>(row)].target;
}

void AbsorbRows::setTarget(int row, std::optional<std::size_t> commit)
{
    const AbsorbHunk* const hunk = hunkAt(row);
    if (!hunk || (commit && (*commit < hunk->oldest || *commit >= proposal_.commits.size())))
        return;
    Row& changed = rows_[static_cast<std::size_t>(row)];
    changed.target = commit;
    if (commit)
        changed.lastTarget = commit;
    Q_EMIT dataChanged(index(row, 0), index(row, columns - 1));
}

int AbsorbRows::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int AbsorbRows::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : columns; }

Qt::ItemFlags AbsorbRows::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    if (!index.isValid() || index.column() != changeColumn)
        return flags;
    return rows_[static_cast<std::size_t>(index.row())].lastTarget ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant AbsorbRows::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return {};
    const Row& row = rows_[static_cast<std::size_t>(index.row())];
    const bool isChange = index.column() == changeColumn;
    if (role == Qt::CheckStateRole && isChange && row.lastTarget)
        return row.target ? Qt::Checked : Qt::Unchecked;
    if (role == Qt::SizeHintRole)
        return QSize(0, QFontMetrics(QApplication::font("QTreeView")).height() + absorbRowSpace);
    if (role == Qt::DisplayRole)
        return isChange ? shownChange(row) : shownTarget(row);
    if (role == Qt::ToolTipRole)
        return plainToolTip(isChange ? shownChange(row) : shownTarget(row));
    return {};
}

bool AbsorbRows::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole || !(flags(index) & Qt::ItemIsUserCheckable))
        return false;
    setTarget(index.row(),
              value.toInt() == Qt::Checked ? rows_[static_cast<std::size_t>(index.row())].lastTarget : std::nullopt);
    return true;
}

QVariant AbsorbRows::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return section == changeColumn ? tr("Staged Change") : tr("Goes Into");
}

QString AbsorbRows::shownChange(const Row& row) const
{
    if (!row.hunk)
        return shownText(proposal_.others[row.other].path);
    const AbsorbHunk& hunk = proposal_.hunks[*row.hunk];
    return tr("%1, line %L2  %3", "file, its line, the words there")
        .arg(shownText(hunk.path))
        .arg(hunk.gone.empty() ? hunk.line + 1 : hunk.line)
        .arg(firstLine(hunk));
}

QString AbsorbRows::shownTarget(const Row& row) const
{
    if (row.target)
        return tr("%1  %2", "hash, subject")
            .arg(shownText(gitkit::shortHash(proposal_.commits[*row.target])),
                 shownText(proposal_.subjects[*row.target]));
    return shownReason(row.hunk ? proposal_.hunks[*row.hunk].reason : proposal_.others[row.other].reason);
}

QString AbsorbRows::shownReason(StaysStaged reason) const
{
    switch (reason) {
    case StaysStaged::no:
        return tr("Stays staged");
    case StaysStaged::older:
        return proposal_.publishedOn.empty()
                   ? tr("Stays staged: its lines are older than these commits")
                   : tr("Stays staged: its lines are on %1").arg(shownText(proposal_.publishedOn));
    case StaysStaged::misplaced:
        return tr("Stays staged: the commit of its lines does not have them like this");
    case StaysStaged::newFile:
        return tr("Stays staged: a new file");
    case StaysStaged::deletedFile:
        return tr("Stays staged: a deleted file");
    case StaysStaged::binary:
        return tr("Stays staged: a binary file");
    case StaysStaged::notLines:
        break;
    }
    return tr("Stays staged: more than lines has changed");
}

} // namespace plovik

#include "moc_AbsorbRows.cpp"

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/timeline/TimelineModel.h"

#include "app/ui/history/RelativeDate.h"
#include "app/ui/timeline/StepText.h"
#include "app/ui/widgets/RowPainting.h"

#include <QStringList>

#include <algorithm>
#include <utility>

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

std::string keyOfRow(const TimelineRow& row)
{
    if (!row.step.id.empty())
        return row.step.id;
    // Of what other programs did only this is known.
    const std::string after = row.step.after ? row.step.after->head.hash : std::string();
    return std::to_string(row.date.time_since_epoch().count()) + ' ' + row.step.before.head.hash + ' ' + after;
}

} // namespace

void TimelineModel::setTimeline(Timeline timeline)
{
    beginResetModel();
    timeline_ = std::move(timeline);
    endResetModel();
}

std::string TimelineModel::key(const QModelIndex& index) const { return keyOfRow(row(index)); }

QModelIndex TimelineModel::indexOfKey(const std::string& key) const
{
    if (!timeline_)
        return {};
    const auto found = std::ranges::find(*timeline_, key, keyOfRow);
    return found == timeline_->end() ? QModelIndex() : index(static_cast<int>(found - timeline_->begin()));
}

int TimelineModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() || !timeline_ ? 0 : static_cast<int>(timeline_->size());
}

QString TimelineModel::description(const TimelineRow& row)
{
    QStringList parts{RelativeDate::toNow(row.date).text(QLocale()), stepText::state(row), stepText::move(row),
                      stepText::fileCount(row.files)};
    parts.removeAll(QString());
    return parts.join(u", "_s);
}

QString TimelineModel::toolTip(const TimelineRow& row)
{
    QStringList lines{row.title, absoluteDate(row.date, QLocale()), stepText::state(row), stepText::move(row),
                      stepText::fileCount(row.files)};
    lines.removeAll(QString());
    return lines.join(u'\n');
}

QVariant TimelineModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || index.row() >= rowCount())
        return {};
    const TimelineRow& shown = row(index);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shown.title;
    case Qt::AccessibleDescriptionRole:
        return description(shown);
    case Qt::ToolTipRole:
        return plainToolTip(toolTip(shown));
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_TimelineModel.cpp"

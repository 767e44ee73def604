// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/stashes/StashesModel.h"

#include "app/store/ShownText.h"
#include "app/ui/history/RelativeDate.h"
#include "app/ui/widgets/RowPainting.h"

#include <QDateTime>
#include <QLocale>
#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// Returns the locale's long date format with short names of months and without the day of the week.
QString abbreviatedDateFormat(const QLocale& locale)
{
    static const QRegularExpression dayOfWeek(u"^dddd[^dMy]*|[^dMy]*dddd$"_s);
    QString format = locale.dateFormat(QLocale::LongFormat);
    return format.remove(dayOfWeek).replace(u"MMMM"_s, u"MMM"_s);
}

} // namespace

QString shownDate(const gitkit::Stash& stash)
{
    const QDateTime date = QDateTime::fromSecsSinceEpoch(stash.date.time_since_epoch().count());
    const QLocale locale;
    return StashesModel::tr("%1, %2", "date, time")
        .arg(locale.toString(date.date(), abbreviatedDateFormat(locale)),
             locale.toString(date.time(), shortTimeFormat(locale)));
}

QString shownMessage(const gitkit::Stash& stash)
{
    // Git puts the branch before what the user wrote, "On main: …", or before the commit if nothing was written.
    const std::string& message = stash.message;
    const std::size_t colon = message.find(": ");
    if (colon != std::string::npos && message.starts_with("On "))
        return shownText(message.substr(colon + 2));
    if (colon != std::string::npos && message.starts_with("WIP on "))
        return StashesModel::tr("WIP: %1", "commit").arg(shownText(message.substr(colon + 2)));
    return shownText(message);
}

StashesModel::StashesModel(const RepositoryStore& store, QObject* parent)
    : QAbstractListModel(parent), store_(store), rowCount_(static_cast<int>(stashes().size()))
{}

void StashesModel::rebuild()
{
    beginResetModel();
    rowCount_ = static_cast<int>(stashes().size());
    endResetModel();
}

const gitkit::Stash& StashesModel::stash(const QModelIndex& index) const
{
    return stashes().at(static_cast<std::size_t>(index.row()));
}

QModelIndex StashesModel::indexOf(const std::string& hash) const
{
    const auto found = std::ranges::find(stashes(), hash, &gitkit::Stash::hash);
    return found == stashes().end() ? QModelIndex() : index(static_cast<int>(found - stashes().begin()));
}

int StashesModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rowCount_; }

QVariant StashesModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= stashes().size())
        return {};
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return shownMessage(stash(index));
    case Qt::AccessibleDescriptionRole:
        return shownDate(stash(index));
    case Qt::ToolTipRole:
        return plainToolTip(shownText(stash(index).ref));
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_StashesModel.cpp"

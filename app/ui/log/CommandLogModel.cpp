// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/log/CommandLogModel.h"

#include "app/store/CommandLine.h"
#include "app/ui/history/RowText.h"
#include "app/ui/widgets/RowPainting.h"
#include "app/ui/window/ActivityView.h"

#include <QDateTime>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace plovik {

namespace {

/// More characters than a row can show, and enough for the filter.
constexpr std::size_t mostOfLine = 2000;
/// With more new rows than this, the list is rebuilt.
constexpr std::size_t mostSingleRows = 64;

/// Exit status 1 is no failure of a reading command: git uses it for "no" and for "there are differences".
bool isWorthShowing(const CommandLog::Command& read)
{
    return read.end && (!read.end->problem.empty() || (hasFailed(read) && read.end->status > 1));
}

} // namespace

bool hasFailed(const CommandLog::Command& command)
{
    const auto& end = command.end;
    return end && !end->stopped && !end->cut && (end->status != 0 || !end->problem.empty());
}

QString shownEnd(const CommandLog::Command& command)
{
    if (!command.end)
        return CommandLogModel::tr("running");
    if (command.end->stopped)
        return CommandLogModel::tr("cancelled");
    if (!hasFailed(command))
        return {};
    return command.end->problem.empty() ? CommandLogModel::tr("✗ %1").arg(command.end->status)
                                        : CommandLogModel::tr("could not start");
}

QString describedEnd(const CommandLog::Command& command)
{
    if (!command.end || command.end->stopped || !command.end->problem.empty())
        return shownEnd(command);
    if (command.end->cut)
        return CommandLogModel::tr("ended when enough was read");
    return command.end->signalled ? CommandLogModel::tr("ended by signal %1").arg(command.end->status - 128)
                                  : CommandLogModel::tr("exit status %1").arg(command.end->status);
}

QString shownTook(const CommandLog::Command& command)
{
    return command.end ? shownTime(command.end->duration) : QString();
}

QString shownTime(std::chrono::milliseconds took)
{
    if (took >= std::chrono::minutes(1))
        return shownDuration(std::chrono::floor<std::chrono::seconds>(took));
    const double seconds = static_cast<double>(took.count()) / 1000;
    return CommandLogModel::tr("%1 s").arg(seconds, 0, 'f', seconds < 0.1 ? 3 : seconds < 10 ? 2 : 1);
}

QString shownBegin(const CommandLog::Command& command)
{
    const auto began = std::chrono::floor<std::chrono::milliseconds>(command.began).time_since_epoch().count();
    return QDateTime::fromMSecsSinceEpoch(began).toString(u"HH:mm:ss"_s);
}

CommandLogModel::CommandLogModel(const CommandLog& log, QObject* parent) : QAbstractListModel(parent), log_(log) {}

/// Returns the place of a command in rows that are sorted by falling number.
CommandLogModel::Rows::const_iterator CommandLogModel::place(const Rows& rows, CommandLog::Number number)
{
    return std::lower_bound(
        rows.begin(), rows.end(), number,
        [](const std::shared_ptr<Row>& row, CommandLog::Number wanted) { return row->command.number > wanted; });
}

bool CommandLogModel::isShown(const Row& row) const
{
    if (hidesReads_ && row.isRead && !isWorthShowing(row.command))
        return false;
    return std::ranges::all_of(words_,
                               [&row](const QString& word) { return row.line.contains(word, Qt::CaseInsensitive); });
}

void CommandLogModel::update()
{
    CommandLog::Changes changes = log_.changesSince(revision_);
    revision_ = changes.revision;
    const bool isNewList = changes.commands.size() > mostSingleRows;
    for (Command& command : changes.commands) {
        const std::shared_ptr<Row> row = take(std::move(command));
        if (!isNewList)
            showRow(row);
    }
    dropBefore(changes.oldest);
    if (isNewList)
        rebuild();
}

std::shared_ptr<CommandLogModel::Row> CommandLogModel::take(Command command)
{
    const auto found = place(all_, command.number);
    if (found != all_.end() && (*found)->command.number == command.number) {
        (*found)->command = std::move(command);
        return *found;
    }
    const QString line = shownLine(shownCommand(command.arguments, mostOfLine));
    const bool reads = isRead(command.arguments);
    return *all_.insert(found, std::make_shared<Row>(Row{std::move(command), line, reads}));
}

/// Updates a row, or inserts it: a command that was hidden while it ran may be shown since it has failed.
void CommandLogModel::showRow(const std::shared_ptr<Row>& row)
{
    const auto found = place(shown_, row->command.number);
    const int number = static_cast<int>(found - shown_.begin());
    if (found != shown_.end() && *found == row) {
        Q_EMIT dataChanged(index(number), index(number));
        return;
    }
    if (!isShown(*row))
        return;
    beginInsertRows({}, number, number);
    shown_.insert(found, row);
    endInsertRows();
}

void CommandLogModel::dropBefore(CommandLog::Number oldest)
{
    while (!all_.empty() && all_.back()->command.number < oldest)
        all_.pop_back();
    const auto first = std::ranges::find_if(
        shown_, [oldest](const std::shared_ptr<Row>& row) { return row->command.number < oldest; });
    if (first == shown_.end())
        return;
    beginRemoveRows({}, static_cast<int>(first - shown_.begin()), static_cast<int>(shown_.size()) - 1);
    shown_.erase(first, shown_.end());
    endRemoveRows();
}

void CommandLogModel::rebuild()
{
    beginResetModel();
    shown_.clear();
    std::ranges::copy_if(all_, std::back_inserter(shown_),
                         [this](const std::shared_ptr<Row>& row) { return isShown(*row); });
    endResetModel();
}

void CommandLogModel::setFilter(const QString& text, bool hidesReads)
{
    QStringList words = text.split(u' ', Qt::SkipEmptyParts);
    if (words == words_ && hidesReads == hidesReads_)
        return;
    words_ = std::move(words);
    hidesReads_ = hidesReads;
    rebuild();
}

const CommandLog::Command& CommandLogModel::command(const QModelIndex& index) const
{
    return shown_.at(static_cast<std::size_t>(index.row()))->command;
}

QModelIndex CommandLogModel::indexOf(CommandLog::Number number) const
{
    const auto found = place(shown_, number);
    const bool isThere = found != shown_.end() && (*found)->command.number == number;
    return isThere ? index(static_cast<int>(found - shown_.begin())) : QModelIndex();
}

int CommandLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant CommandLogModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || static_cast<std::size_t>(index.row()) >= shown_.size())
        return {};
    const Row& row = *shown_[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return row.line;
    case Qt::AccessibleDescriptionRole:
        return QStringList{shownBegin(row.command), shownTook(row.command), describedEnd(row.command)}.join(u", "_s);
    case Qt::ToolTipRole:
        return plainToolTip(row.line);
    default:
        return {};
    }
}

} // namespace plovik

#include "moc_CommandLogModel.cpp"

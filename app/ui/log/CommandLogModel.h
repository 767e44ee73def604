// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/CommandLog.h"

#include <QAbstractListModel>

#include <chrono>
#include <deque>
#include <memory>

namespace plovik {

/// The commands of a log that pass a filter, the newest first. It takes new commands over in update() only.
/// Main thread.
class CommandLogModel : public QAbstractListModel {
    Q_OBJECT

public:
    using Command = CommandLog::Command;

    /// `log` must outlive the model.
    explicit CommandLogModel(const CommandLog& log, QObject* parent = nullptr);

    /// Takes over what is new since the last call; the cost grows with the number of new commands.
    void update();
    /// Shows the commands that contain every word of `text`. With `hidesReads`, a command that only reads is shown when
    /// it failed.
    void setFilter(const QString& text, bool hidesReads);

    const Command& command(const QModelIndex& index) const;
    /// Returns an invalid index for a command that the filter hides.
    QModelIndex indexOf(CommandLog::Number number) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;

private:
    struct Row {
        Command command;
        QString line;
        bool isRead;
    };
    using Rows = std::deque<std::shared_ptr<Row>>;

    static Rows::const_iterator place(const Rows& rows, CommandLog::Number number);
    bool isShown(const Row& row) const;
    std::shared_ptr<Row> take(Command command);
    void showRow(const std::shared_ptr<Row>& row);
    void dropBefore(CommandLog::Number oldest);
    void rebuild();

    const CommandLog& log_;
    std::uint64_t revision_ = 0;
    Rows all_;
    Rows shown_;
    QStringList words_;
    bool hidesReads_ = false;
};

/// Says how a command ended, for a row: "✗ 128", "cancelled", "running", and an empty string for success.
QString shownEnd(const CommandLog::Command& command);
/// Says the same in more words: "exit status 128".
QString describedEnd(const CommandLog::Command& command);
/// Returns how long a command took: "0.12 s"; empty while it runs.
QString shownTook(const CommandLog::Command& command);
/// Returns how long something took: "0.12 s".
QString shownTime(std::chrono::milliseconds took);
/// Returns the local time at which a command began: "14:03:12".
QString shownBegin(const CommandLog::Command& command);
bool hasFailed(const CommandLog::Command& command);

} // namespace plovik

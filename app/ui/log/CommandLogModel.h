// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/CommandLog.h"

#include <QAbstractListModel>

#include <deque>
#include <memory>

namespace plovik {

/// The commands of a log, the newest first, as far as a filter lets them through. Knows nothing new until update().
/// Main thread.
class CommandLogModel : public QAbstractListModel {
    Q_OBJECT

public:
    using Command = CommandLog::Command;

    /// `log` outlives the model.
    explicit CommandLogModel(const CommandLog& log, QObject* parent = nullptr);

    /// Takes over what is new, at a cost that follows that.
    void update();
    /// Shows commands that contain all of a text's words; of those that only look, when `hidesReads`, none but failed.
    void setFilter(const QString& text, bool hidesReads);

    const Command& command(const QModelIndex& index) const;
    /// An invalid index where the filter holds it back.
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

/// How a command ended, for a row: nothing when all went well, "✗ 128", "cancelled", "running".
QString shownEnd(const CommandLog::Command& command);
/// The same in a sentence's words: "exit status 128".
QString describedEnd(const CommandLog::Command& command);
/// How long it took: "0.12 s"; nothing while it runs.
QString shownTook(const CommandLog::Command& command);
/// The local time at which it began: "14:03:12".
QString shownBegin(const CommandLog::Command& command);
bool hasFailed(const CommandLog::Command& command);

} // namespace plovik

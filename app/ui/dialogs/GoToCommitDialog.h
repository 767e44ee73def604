// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

#include <QCoroTask>
#include <QPointer>

#include <string>

class QLineEdit;

namespace plovik {

/// Asks for a commit by its hash or by a name, and stays open with git's reason when there is no such commit. Main
/// thread.
class GoToCommitDialog : public Sheet {
    Q_OBJECT

public:
    GoToCommitDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;
    /// Closes the sheet once git has told which commit is meant.
    void accept() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    bool isAction() const override { return false; }

private:
    void edited();
    QString typed() const;
    std::string revision() const;
    static QCoro::Task<> resolving(QPointer<GoToCommitDialog> dialog, qint64 request);
    void take(const std::string& resolved);
    void refuse(const QString& reason);

    QLineEdit* name_;
    QString refusal_;    ///< why what was typed is no commit
    qint64 request_ = 0; ///< what is edited meanwhile is not what was asked
    std::string commit_; ///< full hash
};

} // namespace plovik

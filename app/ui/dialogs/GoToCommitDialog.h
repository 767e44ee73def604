// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/CommitReaders.h"
#include "app/store/readers/Latest.h"
#include "app/ui/dialogs/Sheet.h"

#include <QCoroTask>
#include <QPointer>

#include <string>

class QLineEdit;

namespace plovik {

/// Asks for a commit by its hash or by a name. Where there is no such commit, the sheet stays open and shows git's
/// reason. Main thread.
class GoToCommitDialog : public Sheet {
    Q_OBJECT

public:
    GoToCommitDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;
    /// Closes the sheet after git has found the commit.
    void accept() override;

protected:
    QString problem() const override;
    QString note() const override;
    bool isComplete() const override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void edited();
    QString typed() const;
    std::string revision() const;
    void resolved();
    void take(const std::string& resolved);
    void refuse(const QString& reason);

    QLineEdit* name_;
    QString refusal_; ///< why the typed name is no commit
    Latest<std::string, std::string> commits_;
    std::string commit_; ///< full hash
};

} // namespace plovik

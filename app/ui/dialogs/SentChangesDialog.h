// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

#include <QPointer>

class QLabel;
class QPlainTextEdit;

namespace plovik {

/// Shows, before anything is sent, what is sent to have a commit message written: where to, and every word of it.
/// Confirming has the message written. Main thread.
class SentChangesDialog : public Sheet {
    Q_OBJECT

public:
    SentChangesDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override { return problem_; }
    QString note() const override { return note_; }
    bool isComplete() const override;
    bool isAction() const override { return false; }

private:
    static QCoro::Task<> reading(QPointer<SentChangesDialog> dialog);
    void show(const MessageRequest& request);

    QLabel* receiver_;
    QPlainTextEdit* text_;
    QString problem_;
    QString note_;
};

} // namespace plovik

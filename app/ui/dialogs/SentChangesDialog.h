// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/Sheet.h"

#include <QPointer>

class QLabel;
class QPlainTextEdit;

namespace plovik {

/// Shows the request for a commit message before it is sent: the receiver and every word of the text. Confirming sends
/// it. Main thread.
class SentChangesDialog : public Sheet {
    Q_OBJECT

public:
    SentChangesDialog(RepositoryStore& store, QWidget* parent);

    void submit() override;

protected:
    QString problem() const override { return problem_; }
    QString note() const override { return note_; }
    bool isComplete() const override;

private:
    static QCoro::Task<> reading(QPointer<SentChangesDialog> dialog);
    void show(const MessageRequest& request);

    QLabel* receiver_;
    QPlainTextEdit* text_;
    QString problem_;
    QString note_;
};

} // namespace plovik

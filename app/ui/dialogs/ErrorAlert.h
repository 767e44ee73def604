// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Failure.h"

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

/// Says what went wrong, and in whose words: git's, a hook's or our own. One sentence is shown as a label, a longer text in the code font with
/// scroll bars, and a very long one without its middle. The text can be selected. A changed host key gets a warning of
/// its own. Deletes itself when it closes. Main thread.
class ErrorAlert : public QDialog {
    Q_OBJECT

public:
    ErrorAlert(const Failure& failure, QWidget* parent);

    void setFailure(const Failure& failure);
    /// Returns the text as it is shown.
    QString message() const;

Q_SIGNALS:
    void logRequested();

private:
    void fitText();

    QLabel* title_;
    QLabel* danger_;
    QLabel* sentence_;
    QPlainTextEdit* lines_;
    QPushButton* showLog_;
};

} // namespace plovik

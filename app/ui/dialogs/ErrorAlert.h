// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

/// Says what went wrong, in git's own words. One sentence is shown as a label, a longer text in the code font with
/// scroll bars, and a very long one without its middle. The text can be selected. A changed host key gets a warning of
/// its own. Deletes itself when it closes. Main thread.
class ErrorAlert : public QDialog {
    Q_OBJECT

public:
    ErrorAlert(const QString& message, QWidget* parent);

    void setMessage(const QString& message);
    /// Returns the text as it is shown.
    QString message() const;
    /// Shows or hides the button that leads to the command in the log.
    void setOffersLog(bool offers);

Q_SIGNALS:
    void logRequested();

private:
    void fitText();

    QLabel* danger_;
    QLabel* sentence_;
    QPlainTextEdit* lines_;
    QPushButton* showLog_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

/// Says what went wrong, in git's own words: a sentence as it stands, longer texts in the code font and with scroll
/// bars, and of what nobody reads to the end the beginning and the end. All of it can be selected. A host that is not
/// the one it was is told as the danger it is. Deletes itself when it closes. Main thread.
class ErrorAlert : public QDialog {
    Q_OBJECT

public:
    ErrorAlert(const QString& message, QWidget* parent);

    void setMessage(const QString& message);
    /// The text as it is shown.
    QString message() const;
    /// Whether there is a button that leads to the command in the log.
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

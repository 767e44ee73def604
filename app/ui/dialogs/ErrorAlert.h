// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Confirmation.h"
#include "app/store/Failure.h"

#include <QDialog>

#include <vector>

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
    /// `ways` are further buttons, for going on.
    ErrorAlert(const Failure& failure, const std::vector<Way>& ways, QWidget* parent);

    /// The result when the user takes the first of the ways; the others follow.
    static constexpr int firstWay = 2;

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

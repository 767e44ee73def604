// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QDialog>

class QFrame;
class QLabel;
class QPlainTextEdit;

namespace plovik {

/// Says what went wrong, in git's own words and in full: a sentence as it stands, longer texts in the code font and
/// with scroll bars. All of it can be selected. Deletes itself when it closes. Main thread.
class ErrorAlert : public QDialog {
    Q_OBJECT

public:
    ErrorAlert(const QString& message, QWidget* parent);

    void setMessage(const QString& message);
    /// The text as it is shown.
    QString message() const;

protected:
    void changeEvent(QEvent* event) override;

private:
    void applyTheme();
    void fitText();

    QLabel* sentence_;
    QPlainTextEdit* lines_;
};

/// What a terminal would have left of a text in which programs wrote colours and progress.
QString withoutTerminalCodes(const QString& text);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/PromptText.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace plovik {

/// Puts a question of git or ssh to the user: who asks, for what, and while doing what. Accepted when it is answered.
/// Where trust is given nothing is the default but "Cancel". Deletes itself when it closes. Main thread.
class PromptDialog : public QDialog {
    Q_OBJECT

public:
    PromptDialog(const SignInPrompt& prompt, QWidget* parent);

    /// What was typed, or "yes" or "no"; after the dialog was accepted.
    QString answer() const;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    PromptDialog(const SignInPrompt& prompt, PromptText text, QWidget* parent);

    void addField(QVBoxLayout& column);
    void addHostKey(QVBoxLayout& column);
    void addButtons(QVBoxLayout& column);

    PromptText text_;
    QString yesOrNo_;
    QLineEdit* field_ = nullptr;
};

} // namespace plovik

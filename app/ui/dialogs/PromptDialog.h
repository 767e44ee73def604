// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/dialogs/PromptText.h"

#include <QDialog>

class QLineEdit;
class QPushButton;
class QVBoxLayout;

namespace plovik {

/// Shows a question of git or ssh: who asks, for what, and during which action. It is accepted when the user answers.
/// Where the user would give trust, "Cancel" is the default button. Deletes itself when it closes. Main thread.
class PromptDialog : public QDialog {
    Q_OBJECT

public:
    PromptDialog(const SignInPrompt& prompt, QWidget* parent);

    /// Returns the typed text, or "yes" or "no". To be called after the dialog was accepted.
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

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/platform/SignIn.h"
#include "app/store/RepositoryMaker.h"

#include <QDialog>
#include <QPointer>
#include <QPropertyNotifier>

#include <vector>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace plovik {

class ErrorAlert;
class PromptDialog;
class Spinner;

/// A window that asks for the details of a new repository and makes it. While git runs, it shows the progress in place
/// of the fields' sentence, and the questions of git and ssh above itself; "Cancel" and Escape then end git and leave the
/// fields as they were. Closes and deletes itself once the repository is there. Blocks no other window. Main thread.
class BeginDialog : public QDialog {
    Q_OBJECT

public:
    ~BeginDialog() override;

    /// Confirms the fields as they are, if they are complete.
    void begin();
    bool isRunning() const { return maker_.isRunning.value(); }

    /// Ends git, too.
    void done(int result) override;
    /// While git runs, ends only that.
    void reject() override;

Q_SIGNALS:
    /// Emitted when the repository is there. `problem` says what could not be brought; it is mostly empty.
    void made(const std::filesystem::path& folder, const QString& problem);

protected:
    BeginDialog(const QString& title, const QString& confirmTitle, OpenSignIn signIn, QWidget* parent);

    QVBoxLayout& fields() { return *fields_; }
    RepositoryMaker& maker() { return maker_; }
    /// To be called whenever something was typed or chosen.
    void validate();

    /// Returns a sentence that says why this cannot be made; empty when it can.
    virtual QString problem() const = 0;
    /// Returns the sentence that is shown while there is no problem.
    virtual QString note() const { return {}; }
    /// Returns whether every needed field is filled.
    virtual bool isComplete() const = 0;
    virtual void start(RepositoryMaker& maker, RepositoryMaker::Made made) = 0;

    void closeEvent(QCloseEvent* event) override;

private:
    void say(const QString& sentence);
    void showRun();
    void showFailure();
    void showPrompt();
    void promptClosed(PromptDialog* dialog, quint64 id, int answer);

    RepositoryMaker maker_;
    QWidget* form_;
    QVBoxLayout* fields_;
    QLabel* sentence_;
    Spinner* spinner_;
    QPushButton* cancel_;
    QPushButton* confirm_;
    QPointer<PromptDialog> prompt_;
    std::vector<QPropertyNotifier> notifiers_;
};

} // namespace plovik

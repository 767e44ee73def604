// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/updates/UpdateCheck.h"

#include <QDialog>

#include <stop_token>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

class Spinner;

/// Asks for updates when it opens. Shows a newer version with its notes and its page, or that there is none, or why it
/// could not be found out. Closing the dialog ends the request and deletes the dialog. Main thread.
class UpdateDialog : public QDialog {
    Q_OBJECT

public:
    UpdateDialog(UpdateSource source, QWidget* parent);
    ~UpdateDialog() override;

private:
    void ask();
    QCoro::Task<> check();
    void showFailure(const QString& sentence);
    void offer(const Release& release);
    void say(const QString& heading, const QString& text);

    UpdateSource source_;
    std::stop_source stop_; ///< a stop is requested when the dialog is destroyed
    bool isAsking_ = false;
    QUrl page_;
    QLabel* heading_;
    QLabel* text_;
    Spinner* spinner_;
    QPlainTextEdit* notes_;
    QPushButton* close_;
    QPushButton* retry_;
    QPushButton* open_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/services/updates/ReleaseFeed.h"
#include "app/services/updates/UpdateSource.h"

#include <QDialog>
#include <QPointer>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace plovik {

class Spinner;

/// Asks for updates when it opens, and says what there is: a newer version with its notes and its page, none, or why
/// nobody knows. Closing it ends the asking. Deletes itself when it closes. Main thread.
class UpdateDialog : public QDialog {
    Q_OBJECT

public:
    UpdateDialog(UpdateSource source, QWidget* parent);

private:
    void check();
    void read(const QByteArray& feed);
    void showFailure(const QString& sentence);
    void offer(const Release& release);
    void say(const QString& heading, const QString& text);

    UpdateSource source_;
    QPointer<FeedFetch> fetch_; ///< a child; null while nothing is asked
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

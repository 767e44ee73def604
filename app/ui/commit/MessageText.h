// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commit/MessageParts.h"

#include <QTextBrowser>

namespace plovik {

/// A commit's message, which can be selected and copied: the subject bold, the body as it was written. Web and mail
/// addresses and everything that looks like a commit's hash are links. The widget is as high as its text and does not
/// scroll. Main thread.
class MessageText : public QTextBrowser {
    Q_OBJECT

public:
    explicit MessageText(QWidget* parent = nullptr);

    void setMessage(const MessageParts& message);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {80, 0}; }

Q_SIGNALS:
    /// Emitted when the user follows a link to something that looks like a hash, of 7 digits or more.
    void commitRequested(const QString& hash);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void write();
    void follow(const QUrl& link);

    MessageParts message_;
};

} // namespace plovik

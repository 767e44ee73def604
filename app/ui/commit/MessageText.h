// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/commit/MessageParts.h"
#include "app/ui/web/WebSettings.h"

#include <QTextBrowser>

#include <vector>

namespace plovik {

/// A commit's message, which can be selected and copied: the subject bold, the body as it was written, and below a line
/// the trailers, co-authors with their initials. Web and mail addresses and everything that looks like a commit's hash
/// are links. In a mirrored window all but code begins at the right. Below the subject stays a gap in which another widget may stand. The widget is as high as its text and the
/// gap, and does not scroll. Main thread.
class MessageText : public QTextBrowser {
    Q_OBJECT

public:
    explicit MessageText(QWidget* parent = nullptr);

    void setMessage(const MessageParts& message);
    /// Sets what else is a link, the first that fits counts. The address is shown in a tooltip.
    void setLinks(const std::vector<MessageLink>& links);

    /// Sets the height of the gap below the subject, in pixels.
    void setGap(int height);
    int gap() const { return gap_; }
    /// Returns where the gap begins.
    int gapTop() const;
    /// Returns the line that a cut at the height `y` goes through; null where it goes through none.
    QRect lineAt(int y) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {80, 0}; }

Q_SIGNALS:
    /// Emitted when the user follows a link to something that looks like a hash, of 7 digits or more.
    void commitRequested(const QString& hash);

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void write();
    void writeBody(QTextCursor& cursor);
    void writeTrailers(QTextCursor& cursor);
    void applyGap();
    void follow(const QUrl& link);

    MessageParts message_;
    std::vector<MessageLink> links_;
    int gap_ = 0;
    int firstTrailer_ = -1; ///< the number of its block; -1 without trailers
};

} // namespace plovik

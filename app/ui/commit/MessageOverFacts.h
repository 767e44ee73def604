// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

class MessageText;

/// A commit's message with the facts of the commit between its subject and its body. The message stays one text, so that
/// it is selected, copied and read in one piece. Main thread.
class MessageOverFacts : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of both.
    MessageOverFacts(MessageText* message, QWidget* facts, QMargins margins, QWidget* parent = nullptr);

    /// Returns the greatest height up to `height` at which no line is cut.
    int heightOfWholeLines(int height) const;

Q_SIGNALS:
    /// Lines may stand elsewhere.
    void placed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void place();

    MessageText* message_;
    QWidget* facts_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

namespace plovik {

class CommitFactsBox;
class MessageText;

/// A commit's message with the facts of the commit between its subject and its body. The message stays one text, so that
/// it is selected, copied and read in one piece. Main thread.
class MessageOverFacts : public QWidget {
    Q_OBJECT

public:
    /// Takes ownership of both.
    MessageOverFacts(MessageText* message, CommitFactsBox* facts, QMargins margins, QWidget* parent = nullptr);

    /// Puts both in place, for when the facts have changed their height.
    void place();
    /// Returns the line that a cut at the height `y` goes through; null where it goes through none.
    QRect lineAt(int y) const;
    /// Returns the height of all if the facts had the height `facts`.
    int heightWith(int facts) const;
    int factsTop() const;
    /// Returns the width that the facts get in a viewport of this width.
    int factsWidth(int width) const;

Q_SIGNALS:
    /// Lines may stand elsewhere.
    void placed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    MessageText* message_;
    CommitFactsBox* facts_;
    bool isPlacing_ = false;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFrame>

class QLabel;

namespace plovik {

/// Says beside the pointer what letting go would do. Lies over the window, lets every event through and never has the
/// focus. Main thread.
class DropHint : public QFrame {
    Q_OBJECT

public:
    explicit DropHint(QWidget& window);

    struct Words {
        QString action;       ///< what would be done
        QString preview = {}; ///< what would come of it, in lines
        QString other = {};   ///< what Ctrl would do instead

        bool operator==(const Words&) const = default;
    };
    /// Shows the words near `pointer`, a place of the window.
    void say(const Words& words, QPoint pointer);
    const Words& words() const { return words_; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void place(QPoint pointer);

    Words words_;
    QLabel* action_;
    QLabel* preview_;
    QLabel* other_;
};

/// Draws a ring around what something is held over. As the hint it lies over everything and lets every event through.
class DropRing : public QWidget {
    Q_OBJECT

public:
    explicit DropRing(QWidget& surface);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace plovik

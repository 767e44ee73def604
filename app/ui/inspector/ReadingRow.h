// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTimer>
#include <QWidget>

namespace plovik {

class BarButton;
class ElidedLabel;

/// The line above a list whose rows come while they are read: how many there are so far, and a button that ends the
/// reading, goes on with it or tries again. The button shows up only once the reading takes a moment. Main thread.
class ReadingRow : public QWidget {
    Q_OBJECT

public:
    enum class State {
        reading,
        stopped, ///< can go on
        failed,  ///< can be tried again
        ended    ///< nothing goes on
    };

    explicit ReadingRow(QWidget* parent = nullptr);

    void showState(State state, const QString& text);

Q_SIGNALS:
    void stopRequested();
    void goOnRequested();
    void againRequested();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void press();
    void showButton();

    State state_ = State::ended;
    ElidedLabel* text_;
    BarButton* button_;
    QTimer moment_;
};

} // namespace plovik

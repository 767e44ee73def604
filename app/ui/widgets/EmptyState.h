// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace plovik {

/// Says in the middle of a view what would stand there, and offers at most one action that fills it. Main thread.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    explicit EmptyState(QWidget* parent = nullptr);

    void setText(const QString& title, const QString& description);
    /// Puts a sign above the title, once.
    void setSign(QWidget* sign);
    /// The button under the text; made at the first call, and the caller's to connect and enable.
    QPushButton* action(const QString& title);

private:
    QLabel* title_;
    QLabel* description_;
    QPushButton* action_ = nullptr;
};

} // namespace plovik

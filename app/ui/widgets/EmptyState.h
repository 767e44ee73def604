// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QLabel;
class QPushButton;

namespace plovik {

/// Explains in the middle of an empty view why it is empty, and may offer one action that fills it. Main thread.
class EmptyState : public QWidget {
    Q_OBJECT

public:
    explicit EmptyState(QWidget* parent = nullptr);

    void setText(const QString& title, const QString& description);
    /// Puts a sign above the title. To be called once.
    void setSign(QWidget* sign);
    /// Returns the button below the text, which is made at the first call. The caller connects and enables it.
    QPushButton* action(const QString& title);

private:
    QLabel* title_;
    QLabel* description_;
    QPushButton* action_ = nullptr;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QAbstractButton;
class QLabel;
class QLineEdit;
class QTimer;

namespace plovik {

/// Shows a full hash that can be selected and copied. Main thread.
class HashField : public QWidget {
    Q_OBJECT

public:
    explicit HashField(QWidget* parent = nullptr);

    void setHash(const QString& hash);

private:
    void copy();

    QLineEdit* text_;
    QAbstractButton* button_;
    QLabel* copied_;
    QTimer* fading_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>

class QAbstractButton;
class QLabel;
class QLineEdit;
class QTimer;

namespace plovik {

/// Shows a full hash that can be selected and copied; or its first digits, with the whole in the tooltip. Main thread.
class HashField : public QWidget {
    Q_OBJECT

public:
    explicit HashField(QWidget* parent = nullptr);

    void setHash(const QString& hash);
    /// Shows the first digits alone. The button copies the whole all the same.
    void setBrief(bool brief);
    /// Returns the width that the first digits and the button take, in pixels.
    int briefWidth() const;

private:
    void copy();
    void show();
    int briefTextWidth() const;

    QString hash_;
    bool isBrief_ = false;
    QLineEdit* text_;
    QAbstractButton* button_;
    QLabel* copied_;
    QTimer* fading_;
};

} // namespace plovik

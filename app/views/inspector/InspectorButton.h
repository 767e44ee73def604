// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

namespace plovik {

/// A small button with a drawn sign, quiet until the pointer or the keyboard is on it. Main thread.
class InspectorButton : public QAbstractButton {
    Q_OBJECT

public:
    enum class Sign { close, back };

    /// `name` is the accessible name.
    InspectorButton(Sign sign, const QString& name, QWidget* parent = nullptr);

    QSize sizeHint() const override { return {24, 24}; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Sign sign_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPushButton>

namespace plovik {

/// A push button of a bar, with a small count behind its title. Its accessible name is the title alone.
class BarButton : public QPushButton {
    Q_OBJECT

public:
    explicit BarButton(const QString& title, QWidget* parent = nullptr);

    /// An empty text removes the badge.
    void setBadge(const QString& badge);
    const QString& badge() const { return badge_; }

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString badge_;
};

} // namespace plovik

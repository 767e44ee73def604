// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAbstractButton>

class QPainter;

namespace plovik {

/// The pictures of small buttons.
enum class Icon {
    sideBySide,
    whiteSpace,
    wholeFile,
    wrap,
    find,
    previous,
    next,
    matchCase,
    back,
    close,
    sparkles,
    allFiles,
    tree,
    filter
};

/// A small flat button with a drawn picture. Its title is its accessible name and, with its keys, its tooltip. Main
/// thread.
class IconButton : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int side = 24;

    IconButton(Icon icon, const QString& title, QWidget* parent, const QString& keys = {});

    QSize sizeHint() const override { return {side, side}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Icon icon_;
};

} // namespace plovik

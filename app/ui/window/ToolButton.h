// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/widgets/BarButton.h"

namespace plovik {

/// The pictures of the toolbar, 16 pixels wide and high.
enum class ToolIcon { fetch, pull, push, branch, stash, repository };

/// A button of the toolbar: a picture, a title and a badge. One that opens a list is flat, has a triangle, and cuts its
/// title where the room is short; the others can do without their titles. The accessible name stays. Main thread.
class ToolButton : public BarButton {
    Q_OBJECT

public:
    enum class Kind { command, list };

    /// `name` is the accessible name, and of a command the title.
    ToolButton(ToolIcon icon, const QString& name, Kind kind, QWidget* parent);

    /// Sets the title of one that opens a list, which is what assistive technology reads as its description.
    void setShownTitle(const QString& title);
    /// Shows or hides the title of a command.
    void setShowsTitle(bool shows);

    QSize sizeHint() const override { return {widthFor(showsTitle_ ? titleWidth() : 0), heightHint()}; }
    QSize minimumSizeHint() const override;
    /// Returns the width with the whole title.
    int fullWidth() const { return widthFor(titleWidth()); }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    int titleWidth() const;
    int widthFor(int title) const;
    int heightHint() const { return BarButton::sizeHint().height(); }

    ToolIcon icon_;
    Kind kind_;
    QString title_;
    bool showsTitle_ = true;
};

} // namespace plovik

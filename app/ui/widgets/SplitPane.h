// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/settings/Settings.h"

#include <QSplitter>

#include <functional>

namespace plovik {

/// How long the sized pane of a split may be. Lengths are device-independent pixels along the split's axis.
struct SplitLimits {
    double minSize = 0;      ///< of the sized pane; wins when both do not fit
    double minOtherSize = 0; ///< left to the other pane

    double maxSize(double available) const;
    double clamped(double size, double available) const;
};

/// Two children side by side (horizontal) or one above the other (vertical) with a divider that the user drags. One
/// child has a size that is kept in the settings and shared by every split of the same key; the other takes the rest. A
/// size that does not fit is shown clamped and stays in the settings; a size of zero or less reads as the setting's
/// fallback, or as the automatic size if there is one. Main thread.
class SplitPane : public QSplitter {
    Q_OBJECT

public:
    enum class Sized { first, second };

    /// Takes both children as its own.
    SplitPane(const Setting<double>& size, Qt::Orientation orientation, Sized sized, double minSize,
              double minOtherSize, QWidget* first, QWidget* second, QWidget* parent = nullptr);

    /// Shows or hides the sized pane, which is shown at first. Without it the other pane takes all the room.
    void setSizedVisible(bool visible);

    /// Sets the function that returns the sized pane's length from the split's while no size is kept. A double click on
    /// the divider goes back to it.
    void setAutomatic(std::function<double(double available)> size);
    /// Sizes the panes again. Must be called when what the automatic size depends on has changed.
    void arrange();

    /// Returns the length that the sized pane has now.
    double currentSize() const;

    QSize minimumSizeHint() const override;
    QSize sizeHint() const override;

protected:
    QSplitterHandle* createHandle() override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int sizedIndex() const { return sized_ == Sized::first ? 0 : 1; }
    double available() const;
    void keepDragged();

    Setting<double> size_;
    Sized sized_;
    SplitLimits limits_;
    std::function<double(double available)> automatic_;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QScrollBar>

#include <functional>
#include <optional>
#include <vector>

namespace plovik {

/// A part of what is scrolled that a change map marks. Lengths are in device-independent pixels from the start of it.
struct MapMark {
    enum class Kind { removed, added, found, current };

    Kind kind = Kind::removed;
    int top = 0;
    int height = 0;
};

/// A vertical scroll bar that shows where lines were removed, in its left half, and added, in its right half, and across
/// both where a search has found something, the current match in another colour. A click on a mark goes there. Main thread.
class ChangeMap : public QScrollBar {
    Q_OBJECT

public:
    using Marks = std::function<std::vector<MapMark>()>;
    /// `marks` is asked when the bar is drawn for the first time after forget().
    explicit ChangeMap(Marks marks, QWidget* parent = nullptr);

    /// Must be called when the marks have changed.
    void forget();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    void draw();
    int total() const { return maximum() + pageStep(); }
    std::optional<int> markNear(int y) const;

    Marks marks_;
    bool isKnown_ = false;
    struct Line {
        int top = -1; ///< of the first mark there, in what is scrolled; -1 without one
        bool isRemoved = false, isAdded = false, isFound = false, isCurrent = false;

        bool looksLike(const Line& other) const
        {
            return isRemoved == other.isRemoved && isAdded == other.isAdded && isFound == other.isFound &&
                   isCurrent == other.isCurrent;
        }
    };
    std::vector<Line> lines_; ///< by the bar's pixels
};

} // namespace plovik

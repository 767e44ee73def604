// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/ConflictStrip.h"
#include "app/ui/merge/MergeNames.h"
#include "app/ui/merge/MergePlace.h"
#include "app/ui/merge/MergeResult.h"

#include <QAbstractScrollArea>

#include <memory>
#include <optional>
#include <vector>

class QMenu;

namespace plovik {

class FileSyntax;

/// The two sides of a merge, line beside line, and on demand the version that both come from. Above each conflict is a
/// strip with buttons; beside each clean change one that leaves it out. Painting costs what is in sight. Main thread.
class MergeColumns : public QAbstractScrollArea {
    Q_OBJECT

public:
    explicit MergeColumns(QWidget* parent = nullptr);

    /// Shows a merge. `result` outlives the view, or the next call.
    void setResult(const MergeResult* result, const MergeNames& names);
    /// Must be called when a piece of the result was decided or edited.
    void resultChanged();
    void setBaseShown(bool shown);
    bool isBaseShown() const { return isBaseShown_; }
    void setSyntax(gitkit::MergeSide side, std::shared_ptr<const FileSyntax> syntax);
    void setTabWidth(int columns);

    std::optional<std::size_t> current() const { return current_; }
    /// Makes a segment the current one and brings it into sight.
    void goTo(std::size_t segment);
    void setCurrent(std::optional<std::size_t> segment);

    /// What stands at the top, for other views to follow.
    MergePlace place() const;
    void setPlace(const MergePlace& place);

Q_SIGNALS:
    void chosen(std::size_t segment, gitkit::MergeChoice choice);
    void currentChanged();
    void scrolled();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void mousePressEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    struct Column {
        gitkit::MergeSide side;
        int left = 0, width = 0;
    };

    void measure();
    void layOut();
    void updateBars();
    void placeStrips();
    std::vector<Column> columns() const;
    int headHeight() const;
    std::size_t rowsOf(std::size_t segment) const;
    int stripOf(std::size_t segment) const;
    std::size_t segmentAt(int y) const;
    std::optional<std::size_t> refusedAt(QPoint point) const;
    QRect refusalRect(std::size_t segment) const;
    bool isRefusable(std::size_t segment) const;
    void refuse(std::size_t segment);
    void describe();
    QMenu* makeMenu(std::size_t segment, gitkit::MergeSide side);

    void paintHead(QPainter& painter, const std::vector<Column>& columns) const;
    void paintSegment(QPainter& painter, std::size_t segment, const Column& column) const;
    void paintLine(QPainter& painter, std::size_t segment, const Column& column, std::size_t row, int y) const;
    void paintRefusal(QPainter& painter, std::size_t segment) const;
    QColor backgroundOf(std::size_t segment, gitkit::MergeSide side) const;

    const MergeResult* result_ = nullptr;
    MergeNames names_;
    bool isBaseShown_ = false;
    int tabWidth_ = 8;
    std::optional<std::size_t> current_;
    std::vector<int> tops_{0};    ///< of the segments, and the end of the last one
    std::vector<int> numbers_; ///< of the conflicts, by segment; 0 for no conflict
    std::array<std::shared_ptr<const FileSyntax>, 3> syntax_;
    std::vector<ConflictStrip*> strips_;
    int lineHeight_ = 20;
    double cell_ = 8;
    int numberWidth_ = 30;
    int widestColumns_ = 0; ///< of any line
};

} // namespace plovik

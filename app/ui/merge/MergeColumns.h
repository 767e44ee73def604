// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/merge/MergeGeometry.h"
#include "app/ui/merge/MergeNames.h"
#include "app/ui/merge/MergePainter.h"
#include "app/ui/merge/MergePlace.h"
#include "app/ui/merge/MergeResult.h"
#include "app/ui/widgets/ContextMenuSource.h"

#include <QAbstractScrollArea>

#include <memory>
#include <optional>
#include <vector>

namespace plovik {

class ConflictStrip;
class FileSyntax;

/// The two sides of a merge, line beside line, and on demand the version that both come from. Above each conflict is a
/// strip with buttons; beside each clean change one that leaves it out. Painting costs what is in sight. Main thread.
class MergeColumns : public QAbstractScrollArea, public ContextMenuSource {
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

    std::optional<std::size_t> current() const { return look_.current; }
    void setCurrent(std::optional<std::size_t> segment);
    /// Makes a segment the current one and brings it into sight.
    void goTo(std::size_t segment);

    /// What stands at the top, for other views to follow.
    MergePlace place() const;
    void setPlace(const MergePlace& place);

    /// Returns the menu of the current segment, or null when there is none.
    QMenu* makeContextMenu() override;

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
    void layOut();
    void updateBars();
    void placeStrips();
    ConflictStrip& strip(std::size_t number);
    std::optional<std::size_t> segmentAt(QPoint point) const;
    std::optional<std::size_t> refusalAt(QPoint point) const;
    void refuse(std::size_t segment);
    void describe();
    QMenu* makeMenu(std::size_t segment, gitkit::MergeSide side);

    const MergeResult* result_ = nullptr;
    MergeNames names_;
    MergeGeometry geometry_;
    MergeSyntax syntax_;
    MergePainter::Look look_;
    bool isBaseShown_ = false;
    int widestColumns_ = 0; ///< of any line
    std::vector<ConflictStrip*> strips_;
};

} // namespace plovik

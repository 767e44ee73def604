// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/DiffAction.h"
#include "app/ui/diff/DiffDocument.h"

#include <QRect>

#include <optional>

namespace plovik {

class DiffController;
class DiffGeometry;

/// Keeps what is looked at in place while rows come and go around it. Knows no widget. Main thread.
class DiffAnchor {
public:
    /// What is in sight of the area that shows the diff, in the area's coordinates.
    struct Sight {
        int top = 0; ///< negative when the area begins below the top of what is in sight
        QRect seen;
    };

    /// Both outlive the anchor.
    DiffAnchor(const DiffController& controller, const DiffGeometry& geometry);

    /// Holds a row, or by default one in sight, before the rows are laid out anew.
    void hold(std::optional<int> row, const Sight& sight);
    /// Returns by how much the held row has moved down, and forgets it.
    int release();

    /// Holds what is looked at before another diff comes. A file that is shown whole shrinks to its changes then, until
    /// its text comes as well.
    void holdWholeFile(DiffPlace place, const Sight& sight);
    /// Returns by how much it has moved down, once the text is there, and forgets it. Nullopt when nothing was held.
    std::optional<int> releaseWholeFile(const Sight& sight);

    /// Returns the row that a walk from change to change goes on from: the current one if it is in sight, else one
    /// beside what is in sight.
    int walkStart(int direction, const Sight& sight) const;

private:
    bool isInSight(int row, const Sight& sight) const;
    int rowInSight(const Sight& sight) const;

    const DiffController& controller_;
    const DiffGeometry& geometry_;
    struct Row {
        DiffDocument::Place place;
        int y = 0; ///< where it stood
    };
    std::optional<Row> row_;
    struct Line {
        int number = 0; ///< in the new file
        int y = 0;      ///< where it stood, below the top of what is in sight
    };
    std::optional<Line> line_;
};

} // namespace plovik

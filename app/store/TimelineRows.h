// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"

#include <QString>

#include <memory>
#include <vector>

namespace plovik {

struct HeadLogEntry;

/// One row of the timeline: something that has happened in this working tree.
struct TimelineRow {
    enum class Kind {
        step,     ///< made by this program; it can be taken back as far as it is the newest
        undone,   ///< made by this program and taken back since
        undo,     ///< took back another step
        terminal, ///< made by another program, and read from HEAD's log
    };
    Kind kind = Kind::step;
    QString title;
    gitkit::Date date;
    gitkit::UndoStep step; ///< only its points' heads are set for what another program did
    int files = 0;         ///< how many files it keeps

    bool operator==(const TimelineRow&) const = default;
};
using Timeline = std::shared_ptr<const std::vector<TimelineRow>>;

/// Returns the rows of steps, the newest first, with those of other programs between them.
std::vector<TimelineRow> timelineRows(const std::vector<gitkit::UndoStep>& steps,
                                      const std::vector<TimelineRow>& elsewhere);

/// Returns the rows of what other programs did: the entries of HEAD's log that none of the steps has made.
std::vector<TimelineRow> rowsElsewhere(std::vector<HeadLogEntry> log, const std::vector<gitkit::UndoStep>& steps);

} // namespace plovik

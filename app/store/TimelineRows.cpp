// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/TimelineRows.h"

#include "app/store/ShownText.h"
#include "app/store/readers/StepReaders.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <utility>

namespace plovik {

using gitkit::UndoStep;

namespace {

struct RowTexts {
    Q_DECLARE_TR_FUNCTIONS(plovik::Undo)
};

TimelineRow::Kind kindOf(const std::vector<UndoStep>& steps, const UndoStep& step)
{
    if (!step.undoes.empty())
        return TimelineRow::Kind::undo;
    return gitkit::isTakenBack(steps, step) ? TimelineRow::Kind::undone : TimelineRow::Kind::step;
}

} // namespace

std::vector<TimelineRow> timelineRows(const std::vector<UndoStep>& steps, const std::vector<TimelineRow>& elsewhere)
{
    std::vector<TimelineRow> rows;
    auto other = elsewhere.begin();
    for (const UndoStep& step : steps) {
        other = std::find_if(other, elsewhere.end(), [&](const TimelineRow& row) {
            if (row.date <= step.date)
                return true;
            rows.push_back(row);
            return false;
        });
        const auto files = step.before.modes.size() + step.before.absent.size() + step.aside.size();
        rows.push_back({kindOf(steps, step), shownText(step.title), step.date, step, static_cast<int>(files)});
    }
    rows.insert(rows.end(), other, elsewhere.end());
    return rows;
}

std::vector<TimelineRow> rowsElsewhere(std::vector<HeadLogEntry> log, const std::vector<UndoStep>& steps)
{
    std::vector<TimelineRow> rows;
    for (HeadLogEntry& entry : log) {
        const auto isOurs = [&entry](const UndoStep& step) {
            return step.began - std::chrono::seconds(1) <= entry.date &&
                   entry.date <= step.date + std::chrono::seconds(1);
        };
        if (std::ranges::any_of(steps, isOurs))
            continue;
        TimelineRow row{.kind = TimelineRow::Kind::terminal,
                        .title = RowTexts::tr("in a terminal: %1").arg(shownText(entry.text)),
                        .date = entry.date,
                        .step = {}};
        row.step.before.head.hash = std::move(entry.from);
        row.step.after.emplace().head.hash = std::move(entry.to);
        rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace plovik

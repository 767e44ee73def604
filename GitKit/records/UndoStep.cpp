// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/records/UndoStep.h"

#include <algorithm>
#include <array>
#include <set>
#include <string_view>

namespace gitkit {

namespace {

enum class Nature { action, undo, redo };

/// What takes an undo back is a redo, and what takes that back is an undo again.
Nature natureOf(const std::vector<UndoStep>& steps, const UndoStep& step)
{
    if (step.undoes.empty())
        return Nature::action;
    const auto taken = std::ranges::find(steps, step.undoes, &UndoStep::id);
    // What is older than the log was an action: an undo is taken back soon or never.
    return taken != steps.end() && natureOf(steps, *taken) == Nature::undo ? Nature::redo : Nature::undo;
}

} // namespace

bool isPublished(const UndoStep& step) { return step.kind == "push"; }

bool isPassing(const UndoStep& step)
{
    constexpr std::array<std::string_view, 2> kinds{"stage", "unstage"};
    return std::ranges::find(kinds, step.kind) != kinds.end();
}

const UndoStep& actionOf(const std::vector<UndoStep>& steps, const UndoStep& step)
{
    const auto taken = step.undoes.empty() ? steps.end() : std::ranges::find(steps, step.undoes, &UndoStep::id);
    return taken == steps.end() ? step : actionOf(steps, *taken);
}

const UndoStep* nextUndo(const std::vector<UndoStep>& steps)
{
    std::set<std::string> gone;
    bool isPast = false; // something that is no passing step has happened since
    for (const UndoStep& step : steps) {
        if (!step.after || step.kind == "interrupted")
            continue;
        if (isPublished(step))
            return nullptr;
        const bool isPassed = isPassing(actionOf(steps, step));
        if (!gone.contains(step.id)) {
            if (natureOf(steps, step) != Nature::undo && !(isPast && isPassed))
                return &step;
            gone.insert(step.undoes);
        }
        isPast = isPast || !isPassed;
    }
    return nullptr;
}

const UndoStep* nextRedo(const std::vector<UndoStep>& steps)
{
    std::set<std::string> gone;
    for (const UndoStep& step : steps) {
        if (gone.contains(step.id) || !step.after)
            continue;
        const Nature nature = natureOf(steps, step);
        if (nature != Nature::redo)
            return nature == Nature::undo && !step.isSame() ? &step : nullptr;
        gone.insert(step.undoes);
    }
    return nullptr;
}

bool isTakenBack(const std::vector<UndoStep>& steps, const UndoStep& step)
{
    // Only the newest step that took another one back counts: it may have been taken back itself.
    const auto by = std::ranges::find(steps, step.id, &UndoStep::undoes);
    return by != steps.end() && by->after && !isTakenBack(steps, *by);
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/undo/UndoStep.h"

#include <algorithm>
#include <set>

namespace gitkit {

namespace {

enum class Nature { action, undo, redo };

Nature natureOf(const std::vector<UndoStep>& steps, const UndoStep& step)
{
    if (step.undoes.empty())
        return Nature::action;
    const auto taken = std::ranges::find(steps, step.undoes, &UndoStep::id);
    // What is older than the log was an action: an undo is taken back soon or never.
    return taken == steps.end() || taken->undoes.empty() ? Nature::undo : Nature::redo;
}

} // namespace

const UndoStep* nextUndo(const std::vector<UndoStep>& steps)
{
    std::set<std::string> gone;
    for (const UndoStep& step : steps) {
        if (gone.contains(step.id) || !step.after)
            continue;
        if (step.undoes.empty())
            return &step;
        gone.insert(step.undoes);
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
            return nature == Nature::undo ? &step : nullptr;
        gone.insert(step.undoes);
    }
    return nullptr;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/DiffNotes.h"

#include <QString>

#include <optional>
#include <set>
#include <string>

namespace plovik {

/// What the user asks to do with a part of a diff.
struct DiffAction {
    enum class Verb { stage, unstage, discard };
    enum class Part { hunk, lines, all };

    Verb verb = Verb::stage;
    Part part = Part::hunk;
    std::set<int> lines; ///< ids of the changes it is about

    bool operator==(const DiffAction&) const = default;
};

/// One titled diff, and what may be done with it.
struct DiffContent {
    enum class Use { read, stage, stageAndDiscard, unstage };

    QString name;   ///< for assistive technology
    QString title;  ///< strong; without one there is no bar
    QString detail; ///< quiet, behind the title
    gitkit::ParsedDiff diff;
    std::string path;                       ///< of the new side, as bytes
    std::optional<std::string> workingPath; ///< where the new side may stand when it is no blob; for unstaged changes
    Use use = Use::read;
    DiffState state = DiffState::ordinary;
    FileFacts facts = {};

    bool allows(DiffAction::Verb verb) const
    {
        switch (verb) {
        case DiffAction::Verb::stage:
            return use == Use::stage || use == Use::stageAndDiscard;
        case DiffAction::Verb::unstage:
            return use == Use::unstage;
        case DiffAction::Verb::discard:
            return use == Use::stageAndDiscard;
        }
        return false;
    }

    bool operator==(const DiffContent&) const = default;
};

/// Where a view stands after a new content: a diff that is read again keeps its place.
enum class DiffPlace { start, kept };

/// "Stage Hunk", "Stage 2 Lines", "Discard Lines…" and the like, as shown.
QString actionTitle(DiffAction::Verb verb, DiffAction::Part part, int count = 0);
/// The same for assistive technology: one name, whatever the count.
QString actionName(DiffAction::Verb verb, DiffAction::Part part);

} // namespace plovik

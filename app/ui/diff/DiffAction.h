// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/DiffSection.h"
#include "GitKit/records/OperationInProgress.h"
#include "GitKit/records/ParsedDiff.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/diff/LinesInHead.h"

#include <QString>

#include <optional>
#include <set>
#include <string>

namespace plovik {

/// What the user asks to do with a part of a diff.
struct DiffAction {
    enum class Verb { stage, unstage, discard, stash, toFirst, toSecond, useOurs, useTheirs };
    enum class Part { hunk, lines, all };

    Verb verb = Verb::stage;
    Part part = Part::hunk;
    std::set<int> lines; ///< ids of the changes it is about

    bool operator==(const DiffAction&) const = default;
};

/// Which of a file's diffs is meant. Nullopt stands for the only diff of a file in a commit.
using DiffKind = std::optional<gitkit::DiffSection::Kind>;

/// One titled diff, and what may be done with it. Value.
struct DiffContent {
    enum class Use { read, stage, stageAndDiscard, unstage, split };

    DiffKind kind;  ///< no two diffs that are shown together have the same
    QString name;   ///< for assistive technology
    QString title;  ///< shown in bold; without a title there is no bar
    QString detail; ///< shown behind the title in a quiet colour
    gitkit::ParsedDiff diff;
    std::string path;                       ///< of the new side, as bytes
    std::optional<std::string> workingPath; ///< the file of an unstaged change, whose new side may be no blob yet
    Use use = Use::read;
    std::set<int> inFirst = {}; ///< ids of the changes that go into the first commit of a split
    DiffState state = DiffState::ordinary;
    ConflictNames sides = {}; ///< of a conflict
    FileFacts facts = {};
    std::string revision = {};              ///< hash of the commit that has the new side; empty if there is none
    std::optional<LinesInHead> inHead = {}; ///< for a diff of the working copy whose file the last commit has

    bool allows(DiffAction::Verb verb) const
    {
        switch (verb) {
        case DiffAction::Verb::stage:
            return use == Use::stage || use == Use::stageAndDiscard;
        case DiffAction::Verb::unstage:
            return use == Use::unstage;
        case DiffAction::Verb::discard:
        case DiffAction::Verb::stash:
            return use == Use::stageAndDiscard;
        case DiffAction::Verb::toFirst:
        case DiffAction::Verb::toSecond:
            return use == Use::split;
        case DiffAction::Verb::useOurs:
        case DiffAction::Verb::useTheirs:
            // Parts of text are chosen in an editor.
            return state == DiffState::conflicted && diff.isBinary;
        }
        return false;
    }

    bool operator==(const DiffContent&) const = default;
};

/// Where a view is scrolled to after it got new contents: to the start, or where it was before.
enum class DiffPlace { start, kept };

/// Returns the side of a conflict that a verb takes; nullopt for the other verbs.
std::optional<gitkit::ConflictSide> sideOf(DiffAction::Verb verb);
/// Returns the title of a button or menu entry: "Stage Hunk", "Stage 2 Lines", "Discard Lines…".
/// `verb` takes no side.
QString actionTitle(DiffAction::Verb verb, DiffAction::Part part, int count = 0);
/// Returns the name of the same action for assistive technology. It does not depend on a count. `verb` takes no side.
QString actionName(DiffAction::Verb verb, DiffAction::Part part);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAction.h"

#include <QCoreApplication>

#include <array>

namespace plovik {

namespace {

/// By verb, then by part.
constexpr std::array<std::array<const char*, 3>, 6> names{{
    {QT_TRANSLATE_NOOP("Diff", "Stage Hunk"), QT_TRANSLATE_NOOP("Diff", "Stage Lines"),
     QT_TRANSLATE_NOOP("Diff", "Stage All Hunks")},
    {QT_TRANSLATE_NOOP("Diff", "Unstage Hunk"), QT_TRANSLATE_NOOP("Diff", "Unstage Lines"),
     QT_TRANSLATE_NOOP("Diff", "Unstage All Hunks")},
    {QT_TRANSLATE_NOOP("Diff", "Discard Hunk…"), QT_TRANSLATE_NOOP("Diff", "Discard Lines…"),
     QT_TRANSLATE_NOOP("Diff", "Discard All Hunks…")},
    {QT_TRANSLATE_NOOP("Diff", "Stash Hunk…"), QT_TRANSLATE_NOOP("Diff", "Stash Lines…"),
     QT_TRANSLATE_NOOP("Diff", "Stash All Hunks…")},
    {QT_TRANSLATE_NOOP("Diff", "Hunk into First Commit"), QT_TRANSLATE_NOOP("Diff", "Lines into First Commit"),
     QT_TRANSLATE_NOOP("Diff", "All into First Commit")},
    {QT_TRANSLATE_NOOP("Diff", "Hunk into Second Commit"), QT_TRANSLATE_NOOP("Diff", "Lines into Second Commit"),
     QT_TRANSLATE_NOOP("Diff", "All into Second Commit")},
}};

} // namespace

std::optional<gitkit::ConflictSide> sideOf(DiffAction::Verb verb)
{
    if (verb == DiffAction::Verb::useOurs)
        return gitkit::ConflictSide::ours;
    return verb == DiffAction::Verb::useTheirs ? std::optional(gitkit::ConflictSide::theirs) : std::nullopt;
}

QString actionTitle(DiffAction::Verb verb, DiffAction::Part part, int count)
{
    // Only the first verb of a bar tells the count, so that a bar tells it once.
    if (part != DiffAction::Part::lines || (verb != DiffAction::Verb::stage && verb != DiffAction::Verb::unstage))
        return actionName(verb, part);
    return verb == DiffAction::Verb::stage ? QCoreApplication::translate("Diff", "Stage %Ln Line(s)", nullptr, count)
                                           : QCoreApplication::translate("Diff", "Unstage %Ln Line(s)", nullptr, count);
}

QString actionName(DiffAction::Verb verb, DiffAction::Part part)
{
    return QCoreApplication::translate("Diff", names[static_cast<std::size_t>(verb)][static_cast<std::size_t>(part)]);
}

} // namespace plovik

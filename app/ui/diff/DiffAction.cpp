// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/DiffAction.h"

namespace plovik {

using namespace Qt::StringLiterals;

namespace {

QString word(DiffAction::Verb verb)
{
    if (verb == DiffAction::Verb::stage)
        return u"Stage"_s;
    return verb == DiffAction::Verb::unstage ? u"Unstage"_s : u"Discard"_s;
}

QString ending(DiffAction::Verb verb) { return verb == DiffAction::Verb::discard ? u"…"_s : QString(); }

} // namespace

QString actionTitle(DiffAction::Verb verb, DiffAction::Part part, int count)
{
    // The count stands once in a bar, before the verb that comes first.
    if (part == DiffAction::Part::lines && verb != DiffAction::Verb::discard)
        return word(verb) + u' ' + QString::number(count) + (count == 1 ? u" Line"_s : u" Lines"_s);
    return actionName(verb, part);
}

QString actionName(DiffAction::Verb verb, DiffAction::Part part)
{
    QString object = u" Hunk"_s;
    if (part == DiffAction::Part::lines)
        object = u" Lines"_s;
    else if (part == DiffAction::Part::all)
        object = u" All Hunks"_s;
    return word(verb) + object + ending(verb);
}

} // namespace plovik

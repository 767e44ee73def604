// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Conflict.h"

#include <QString>

#include <string>

/// What is said of conflicts. The sides are called by names that stay the same in every operation. Values in the user's
/// language; safe on every thread.
namespace plovik::conflictWords {

/// Returns what a side is, as the title of its column: "main + 2 commits of topic already moved".
QString title(const gitkit::ConflictName& name);
/// Returns a side's name in a sentence, which is short: "main", "“Fix the parser”".
QString shortName(const gitkit::ConflictName& name);

/// Says what happened: "deleted on main, changed in “Fix the parser”".
QString happened(const gitkit::Conflict& conflict, const gitkit::ConflictNames& names);
/// Returns what gives an answer: "Keep main (deleted)".
QString answerTitle(const gitkit::Conflict& conflict, const gitkit::ConflictNames& names,
                    gitkit::ConflictAnswer answer);
/// Says what an answer does that its title leaves open; empty when that is plain.
QString answerTip(const gitkit::Conflict& conflict, gitkit::ConflictAnswer answer);

/// Returns a word for a side in the name of a file.
std::string label(const gitkit::ConflictName& name);

} // namespace plovik::conflictWords

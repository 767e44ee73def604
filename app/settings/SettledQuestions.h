// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class QString;

/// The kinds of questions that the user has answered for good, in the settings. Main thread.
namespace plovik::settledQuestions {

bool contains(const QString& kind);
/// `kind` has no spaces.
void add(const QString& kind);
bool areThere();
/// Has all of them asked again.
void clear();

} // namespace plovik::settledQuestions

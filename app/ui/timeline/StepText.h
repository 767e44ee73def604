// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/Undo.h"

#include <QString>
#include <QStringList>

#include <string>
#include <vector>

/// What is said of the steps of the timeline. Any thread.
namespace plovik::stepText {

/// Returns from where to where it went: "main 4f336ef → 07968b6". Empty when neither a ref nor HEAD has moved.
QString move(const TimelineRow& row);
/// Returns "3 files", or an empty text for none.
QString fileCount(int files);
/// Returns a word where something else than a step that can be undone stands there: "taken back".
QString state(const TimelineRow& row);

/// Returns a sentence above undoing().
QString undoingTitle(const TimelineRow& row);
// Each of these has a line for one thing besides the contents of files that undoing the step would change. Of many there
// are the first ones, and how many there are besides.

QStringList undoing(const TimelineRow& row);
QStringList comingBack(const std::vector<std::string>& paths);
QStringList staying(const std::vector<std::string>& submodules);
QStringList going(const std::vector<std::string>& paths);

/// Returns the commit that the step has reached or, when it has deleted something, where that was.
std::string hash(const TimelineRow& row);

} // namespace plovik::stepText

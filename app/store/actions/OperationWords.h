// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"

#include <QString>

#include <string>
#include <vector>

/// What is told and asked about an operation that git has begun, in whole sentences for each kind: other languages decline
/// the operation's name. Values in the user's language; safe on every thread.
namespace plovik::operationWords {

using Kind = gitkit::OperationInProgress::Kind;

QString continuing(Kind kind);
QString ending(Kind kind); ///< while it is aborted, or reset
QString abortQuestion(Kind kind);
QString cannotGoBack(Kind kind);
QString canEndHere(Kind kind);

/// Says that `count` steps are undone. At least one.
QString undoneSteps(Kind kind, int count);

/// Names a step in a sentence: “Abort of the Merge”.
QString stepTitle(Kind kind, gitkit::OperationStep step);
/// Says that a step is done.
QString stepDone(Kind kind, gitkit::OperationStep step);

/// Says that what was resolved or changed in these files is lost. At least one path; long lists are cut.
QString lostFiles(const std::vector<std::string>& paths);

} // namespace plovik::operationWords

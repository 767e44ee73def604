// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitKind.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commit/CommitReading.h"

#include <QString>

/// A commit's changes in a line. Main thread.
namespace plovik::commitSummary {

using CommitKind = gitkit::CommitKind;

/// Returns "3 files changed against the first parent" or "2 files changed, 1 untracked".
QString files(const gitkit::CommitDetail& detail, CommitKind kind);
/// Returns "+12 −3" as rich text in the theme's colours; empty while the counts are unknown or when all are 0.
QString totals(const CommitReading& reading);
/// Returns the sentence for a commit without files.
QString nothingChanged(const gitkit::CommitDetail& detail, CommitKind kind);

} // namespace plovik::commitSummary

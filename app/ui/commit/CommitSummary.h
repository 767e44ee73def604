// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitKind.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/commit/CommitReading.h"

#include <QString>

/// A commit's changes in a line. Main thread.
namespace plovik::commitSummary {

using CommitKind = gitkit::CommitKind;

/// "3 files changed against the first parent", "2 files changed, 1 untracked".
QString files(const gitkit::CommitDetail& detail, CommitKind kind);
/// "+12 −3" as rich text in the colours of the theme; empty while the counts are not known, or when there are none.
QString totals(const CommitReading& reading);
/// What to say of a commit without files.
QString nothingChanged(const gitkit::CommitDetail& detail, CommitKind kind);

} // namespace plovik::commitSummary

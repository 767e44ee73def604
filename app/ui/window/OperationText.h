// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "app/store/RepositoryStore.h"

#include <QString>

/// What git stopped in the middle of, in words. `store` is in the middle of something, unless said otherwise. Main
/// thread.
namespace plovik::operationText {

/// "Rebasing feature onto main"
QString title(const RepositoryStore& store);
/// "3 of 7: 1a2b3c4 Subject"; empty where git's files do not tell.
QString detail(const RepositoryStore& store);
/// "2 conflicts left"; empty for none.
QString conflicts(const RepositoryStore& store);
/// "merge", "rebase", ...
QString noun(gitkit::OperationInProgress::Kind kind);
/// Whose version one side of a conflict is. A store that is in the middle of nothing has conflicts from a stash.
QString side(const RepositoryStore& store, gitkit::ConflictSide side);

} // namespace plovik::operationText

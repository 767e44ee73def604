// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/OperationInProgress.h"
#include "app/store/RepositoryStore.h"

#include <QString>

/// Texts about the operation that git has not finished. Those but side() and useSide() require that
/// `store` has one. Main
/// thread.
namespace plovik::operationText {

/// Returns "Rebasing feature onto main".
QString title(const RepositoryStore& store);
/// Returns "3 of 7: 1a2b3c4 Subject", or an empty text when the files of git do not say it.
QString detail(const RepositoryStore& store);
/// Returns "2 conflicts left", or an empty text when there is none.
QString conflicts(const RepositoryStore& store);
/// Return what the buttons that abort and continue an operation of this kind do.
QString abortTip(gitkit::OperationInProgress::Kind kind);
QString continueTip(gitkit::OperationInProgress::Kind kind);
/// Returns whose version one side of a conflict is. Without an unfinished operation the conflict comes from a stash.
QString side(const RepositoryStore& store, gitkit::ConflictSide side);
/// Returns what takes a side of a conflict: "Use Ours: main (checked out)". `name` is what side() returned.
QString useSide(gitkit::ConflictSide side, const QString& name);

} // namespace plovik::operationText

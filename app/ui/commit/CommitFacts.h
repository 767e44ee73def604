// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/RefLabel.h"
#include "GitKit/records/Signature.h"
#include "GitKit/records/Stash.h"

#include <QString>
#include <QStringList>

#include <array>
#include <span>
#include <string>
#include <vector>

/// What is shown of a commit besides its message and its files. The texts are rich text with everything that comes from
/// the commit escaped, and empty when there is nothing to show. Main thread.
namespace plovik::commitFacts {

gitkit::CommitDetail of(const gitkit::Commit& commit);
gitkit::CommitDetail of(const gitkit::Stash& stash);
/// Returns the detail of a commit of which only the hash is known.
gitkit::CommitDetail ofUnknown(const std::string& hash);
gitkit::CommitDetail withoutFiles(const gitkit::CommitDetail& detail);

/// The height of a line of people(), by that of the font.
inline constexpr double lineHeight = 1.3;
/// Returns author and date, and the committer with the commit date when these differ.
QString people(const gitkit::CommitDetail& detail);
/// Returns the same on as few lines as possible: names without addresses, and short dates.
QString peopleInBrief(const gitkit::CommitDetail& detail);
/// Returns the lines of people() as plain text.
QStringList peopleLines(const gitkit::CommitDetail& detail);
QString dateLine(const gitkit::CommitDetail& detail);
/// Returns the parents' short hashes as links to the full ones.
QString parents(const gitkit::CommitDetail& detail);
/// Returns the branch and the commit that a stash was made on; the commit is a link.
QString stashBase(const gitkit::CommitDetail& stash);

/// Returns what is known of a signature, as plain text in one sentence; empty for a commit without one.
QString signature(const gitkit::Signature& signature);

using Refs = std::span<const gitkit::GitRef>;
/// Returns the labels of the refs that point directly at a commit.
std::vector<gitkit::RefLabel> labelsOf(const std::string& hash, const std::array<Refs, 3>& refs);

} // namespace plovik::commitFacts

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/CommitDetail.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/RefLabel.h"
#include "GitKit/records/Stash.h"

#include <QString>

#include <array>
#include <span>
#include <string>
#include <vector>

/// What is told of a commit besides its message and its files. Texts are rich text in which nothing of the commit is
/// markup; empty where nothing is to be told. Main thread.
namespace plovik::commitFacts {

gitkit::CommitDetail of(const gitkit::Commit& commit);
gitkit::CommitDetail of(const gitkit::Stash& stash);
/// Of a commit of which nothing but its hash is known yet.
gitkit::CommitDetail ofUnknown(const std::string& hash);
gitkit::CommitDetail withoutFiles(const gitkit::CommitDetail& detail);

/// Author and date; the committer and the date of the commit too where they differ.
QString people(const gitkit::CommitDetail& detail);
QString dateLine(const gitkit::CommitDetail& detail);
/// The parents' short hashes, as links whose targets are the full ones.
QString parents(const gitkit::CommitDetail& detail);
/// On which branch and commit a stash was made; the commit is a link.
QString stashBase(const gitkit::CommitDetail& stash);

/// The refs that point straight at a commit.
using Refs = std::span<const gitkit::GitRef>;
std::vector<gitkit::RefLabel> labelsOf(const std::string& hash, const std::array<Refs, 3>& refs);

} // namespace plovik::commitFacts

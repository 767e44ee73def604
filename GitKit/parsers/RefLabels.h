// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RefLabel.h"
#include "GitKit/records/RefTips.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace gitkit {

/// The labels of commits by full hash. A commit without labels is not in it.
using RefLabels = std::unordered_map<std::string, std::vector<RefLabel>>;

/// Returns for each commit the labels that LogParser::decorations() reads from the %D of a log with
/// LogParser::decorationArguments, in the same order: HEAD or the checked out branch first, then tags, remote branches
/// and other branches, each from the last name to the first. A history that is read without %D gets its labels from
/// here, and does not wait for all refs before its first row. Pure; skips lines that it cannot read. Any thread.
///
///     const RefLabels labels = refLabels(readRefTips(repo)); // RefListing.h
///     if (const auto found = labels.find(commit.hash); found != labels.end())
///         commit.refs = found->second;
RefLabels refLabels(const RefTips& tips);

} // namespace gitkit

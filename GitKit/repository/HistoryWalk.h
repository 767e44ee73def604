// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/runner/GitRunner.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// Runs a command that walks the history of `scope` and returns what it printed. `command` makes the arguments from
/// those that name where the walk starts; it is called twice when HEAD has no commit yet, for the other branches still
/// have their history. Throws as GitRunner::bytes() does.
std::string walkHistory(const GitRunner& runner, const HistoryScope& scope,
                        const std::function<std::vector<std::string>(const std::vector<std::string>& starts)>& command);

/// Whether a walk of all refs starts at HEAD, too.
enum class HeadStart {
    always, ///< git fails when HEAD has no commit
    never,
    ifBorn
};
/// The arguments of `git log` that name where the walk starts.
std::vector<std::string> walkStarts(const HistoryScope& scope, HeadStart head = HeadStart::always);
/// The arguments that end the command line of such a walk: the filter's options, the starts and the paths. What the
/// filter says of dates and hashes is left to SearchTerms::hold().
std::vector<std::string> walkArguments(const std::vector<std::string>& starts,
                                       const std::optional<HistoryFilter>& filter);
} // namespace gitkit

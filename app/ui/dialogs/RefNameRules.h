// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"

#include <QString>

#include <string_view>
#include <vector>

/// Git's rules for the names of new branches and tags, as sentences to show while a name is typed.
namespace plovik::refNames {

/// Says why git would not make a branch of that name beside `branches`. Returns an empty string for a name that is
/// fine, and for an empty name, which is still to be typed.
QString branchProblem(std::string_view name, const std::vector<gitkit::GitRef>& branches);

/// Says the same about a tag beside `tags`.
QString tagProblem(std::string_view name, const std::vector<gitkit::GitRef>& tags);

/// Says why no remote can have a name: its branches here are named after it.
QString remoteProblem(std::string_view name);

} // namespace plovik::refNames

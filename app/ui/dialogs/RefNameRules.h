// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/GitRef.h"

#include <QString>

#include <string_view>
#include <vector>

/// Git's own rules for the names of new branches and tags, told as sentences while the name is typed.
namespace plovik::refNames {

/// What keeps git from making a branch of that name beside `branches`; empty for a name that is fine. A name that is
/// empty has no problem yet, and no branch either.
QString branchProblem(std::string_view name, const std::vector<gitkit::GitRef>& branches);

/// The same for a tag beside `tags`.
QString tagProblem(std::string_view name, const std::vector<gitkit::GitRef>& tags);

} // namespace plovik::refNames

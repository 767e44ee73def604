// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ErrorKind.h"
#include "GitKit/runner/GitOutput.h"

#include <string_view>

namespace gitkit {

/// What a failed run of `git COMMAND` means. Reads git's own sentences, which every run of git prints in English; this
/// is the only place that knows them.
ErrorKind errorKind(std::string_view command, const GitOutput& output);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Kept.h"

#include <vector>

namespace gitkit {
class GitRepository;
} // namespace gitkit

namespace plovik {

struct KeptRequest {
    bool operator==(const KeptRequest&) const = default;
};
/// Returns what was discarded in this repository and is kept, the newest first. For Latest: any thread; blocks; throws
/// gitkit::GitError.
std::vector<gitkit::Kept> readKept(const gitkit::GitRepository& repo, const KeptRequest& request);

} // namespace plovik

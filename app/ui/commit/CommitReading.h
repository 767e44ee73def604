// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/ChangeCounts.h"
#include "GitKit/records/CommitDetail.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace plovik {

/// What has been read of one commit: its record and, later, how many lines each of its files gains and loses.
struct CommitReading {
    gitkit::CommitDetail detail;
    std::optional<std::vector<gitkit::ChangeCounts>> counts; ///< in the order of the files; nullopt until they are read

    /// Returns the counts of one file, or nullptr while they are unknown.
    const gitkit::ChangeCounts* countsOf(std::size_t file) const
    {
        const bool isKnown = counts && file < counts->size() && (*counts)[file].path == detail.files[file].path;
        return isKnown ? &(*counts)[file] : nullptr;
    }
};

} // namespace plovik

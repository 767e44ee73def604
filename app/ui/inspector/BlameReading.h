// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/FileReaders.h"
#include "app/ui/inspector/BlameDocument.h"

#include <memory>
#include <vector>

namespace plovik {

/// A blame that is asked for.
struct BlameRequest : BlameSource {
    /// The blame on display and rows of it, to be found again in the new one.
    std::shared_ptr<const BlameDocument> shown = {};
    std::vector<int> rows = {};

    bool operator==(const BlameRequest&) const = default;
};

/// The blame of a file as a document, or why there is none.
struct BlameReading {
    BlameLines::State state = BlameLines::State::lines;
    std::shared_ptr<const BlameDocument> document = {}; ///< for `lines`
    std::optional<BlameStamp> stamp = {};               ///< of a file of the working tree
    std::vector<int> rows = {};                         ///< those that were asked for
};

/// Lays lines out as a document. Any thread.
BlameReading blameReading(BlameLines lines, const BlameRequest& request);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/store/readers/FileReaders.h"
#include "app/ui/inspector/BlameDocument.h"

#include <memory>
#include <vector>

namespace plovik {

/// A request for a blame.
struct BlameRequest : BlameSource {
    /// The blame on display, and rows of it to find again in the new one.
    std::shared_ptr<const BlameDocument> shown = {};
    std::vector<int> rows = {};
    int tabWidth = 8; ///< in columns, where the working tree says nothing of it

    bool operator==(const BlameRequest&) const = default;
};

/// The blame of a file as a document, or the reason why there is none.
struct BlameReading {
    BlameLines::State state = BlameLines::State::lines;
    std::shared_ptr<const BlameDocument> document = {}; ///< for `lines`
    std::optional<BlameStamp> stamp = {};               ///< of a file of the working tree
    std::vector<int> rows = {};                         ///< the rows of the request, found in `document`
};

/// Makes a document of the lines. Any thread.
BlameReading blameReading(BlameLines lines, const BlameRequest& request);

} // namespace plovik

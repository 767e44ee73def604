// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/inspector/BlameDocument.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {
class GitRepository;
}

namespace plovik {

/// What a blame of the working tree was made from: while it is the same, so is the blame.
struct BlameStamp {
    std::string head; ///< hash of the commit that is checked out
    std::filesystem::file_time_type changed;
    std::uintmax_t size = 0;

    bool operator==(const BlameStamp&) const = default;
};

/// A blame that is asked for.
struct BlameRequest {
    std::string path;                    ///< as bytes
    std::optional<std::string> revision; ///< the working tree without
    std::string head;                    ///< hash of the commit that is checked out
    std::optional<BlameStamp> known;     ///< of the blame on display, when it is one of the same file
    /// The blame on display and rows of it, to be found again in the new one.
    std::shared_ptr<const BlameDocument> shown;
    std::vector<int> rows;
};

/// The blame of a file, or why there is none.
struct BlameReading {
    enum class State { unchanged, lines, empty, binary, utf16, utf32, missing, untracked, folder, submodule };

    State state = State::lines;
    std::shared_ptr<const BlameDocument> document; ///< for `lines`
    std::optional<BlameStamp> stamp;               ///< of a file of the working tree
    std::vector<int> rows;                         ///< those that were asked for
};

/// Blocks; any thread. Throws what git refuses.
BlameReading readBlame(const gitkit::GitRepository& repository, const BlameRequest& request);

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/LineRange.h"

#include <optional>
#include <string>

namespace plovik {

/// A file whose blame or history is shown.
struct InspectedFile {
    enum class Tab { blame, history };

    std::string path;                    ///< in `revision`, as bytes
    std::optional<std::string> revision; ///< full hash; nullopt for the working tree
    Tab tab = Tab::blame;
    std::optional<gitkit::LineRange> lines = {}; ///< of which the history is shown, in `revision`

    bool operator==(const InspectedFile&) const = default;
};

} // namespace plovik

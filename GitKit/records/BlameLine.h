#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/Date.h"

#include <algorithm>
#include <string>

namespace gitkit {

/// One line of a blamed file.
struct BlameLine {
    int number = 0; ///< in the blamed revision, from 1
    std::string hash;
    std::string authorName;
    Date date;
    std::string summary; ///< the commit's subject
    std::string text;    ///< the line's bytes without the newline

    int id() const { return number; }
    std::string_view shortHash() const { return gitkit::shortHash(hash); }

    /// Git names lines that are not committed yet by a hash of zeros.
    bool isUncommitted() const
    {
        return std::ranges::all_of(hash, [](char digit) { return digit == '0'; });
    }

    bool operator==(const BlameLine&) const = default;
};

} // namespace gitkit

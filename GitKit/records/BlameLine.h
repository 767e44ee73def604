// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/BlameOrigin.h"
#include "GitKit/records/Commit.h"
#include "GitKit/records/Date.h"

#include <algorithm>
#include <memory>
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

    int originalNumber = 0; ///< in the commit that wrote the line, from 1; 0 if unknown
    /// Shared by all lines of one commit and path; null if unknown.
    std::shared_ptr<const BlameOrigin> origin = nullptr;

    int id() const { return number; }
    std::string_view shortHash() const { return gitkit::shortHash(hash); }

    /// Git gives lines that are not committed yet a hash of zeros.
    bool isUncommitted() const
    {
        return std::ranges::all_of(hash, [](char digit) { return digit == '0'; });
    }

    /// Compares origins by value.
    bool operator==(const BlameLine& other) const
    {
        const bool sameOrigin = origin && other.origin ? *origin == *other.origin : origin == other.origin;
        return sameOrigin && number == other.number && originalNumber == other.originalNumber && hash == other.hash &&
               authorName == other.authorName && date == other.date && summary == other.summary && text == other.text;
    }
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/Date.h"
#include "GitKit/records/HistoryFilter.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace gitkit {

/// A span of time, with its first second and without its last.
struct DateRange {
    Date from = Date::min();
    Date to = Date::max();

    bool operator==(const DateRange&) const = default;
};

/// Reads "2024", "2024-03", "2024-03-15", "today" or "yesterday" as the time that it is in the local time zone, and
/// two of them with ".." between them, of which one may be missing, as the time from the first to the end of the second.
/// Returns nullopt for anything else.
std::optional<DateRange> dateRange(std::string_view text, Date now);

/// Returns the time by the clock of this machine.
Date currentSecond();

/// What a search asks for. All of it must hold; of several texts of one kind one must, but of messages all.
struct SearchTerms {
    enum class Fault {
        none,
        date,        ///< what stands for a date is none
        hash,        ///< what stands for a hash has other characters than those of hashes
        twoContents, ///< git looks for one text or one pattern at a time in what changed
    };

    std::vector<std::string> messages, authors, paths;
    std::string content; ///< a text that changes add or remove
    std::string lines;   ///< a regular expression for added or removed lines
    std::vector<DateRange> dates;
    std::vector<std::string> hashes; ///< or beginnings of them, in lower case
    Fault fault = Fault::none;
    std::string faulty = {}; ///< what the fault is about

    bool looksAtChanges() const { return !content.empty() || !lines.empty(); }
    /// Returns whether a commit has the date and the hash that are asked for, which git is not asked to find.
    bool hold(const Commit& commit) const;

    bool operator==(const SearchTerms&) const = default;
};

/// Takes a search apart. The text stands for the filter's field, but for the words that begin with a field's key and a
/// colon, as in `author:ada path:"My Files" crash`. Without such words it is taken as it is.
SearchTerms searchTerms(const HistoryFilter& filter, Date now = currentSecond());

} // namespace gitkit

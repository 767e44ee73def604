// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/CommitFile.h"
#include "GitKit/records/Date.h"

#include <string>
#include <vector>

namespace gitkit {

/// The full record of one commit.
struct CommitDetail {
    std::string hash;
    std::vector<std::string> parents;
    std::string authorName;
    std::string authorEmail;
    Date authorDate;
    std::string committerName;
    Date commitDate;
    std::string message; ///< whole message, surrounding white space removed
    std::vector<CommitFile> files;

    bool operator==(const CommitDetail&) const = default;
};

} // namespace gitkit

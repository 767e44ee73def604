// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// A line for the shell that the user has written, and what it is run for. What is empty is not set.
struct OwnCommand {
    std::string line;   ///< in which {commit}, {branch}, {file} and {files} stand for what follows
    std::string commit; ///< full hash
    std::string branch; ///< full name of a ref
    std::vector<std::string> files;
};

} // namespace gitkit

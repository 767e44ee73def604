// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/Text.h"

#include <cstddef>
#include <string>

namespace gitkit {

/// The most that is wanted of a program's standard output.
struct OutputLimit {
    std::size_t lines = 0;
    std::size_t bytes = 0;
};

/// The raw result of one run of git.
struct GitOutput {
    int status = 0;         ///< exit status; 128 plus the signal's number when a signal ended git
    bool signalled = false; ///< a signal ended git; never an accepted exit
    bool stopped = false;   ///< ended early because the caller asked for it
    bool cut = false;       ///< ended early because the output exceeded its limit
    std::string stdoutBytes;
    std::string stderrBytes;

    /// The streams as text for showing: bytes that are not UTF-8 are replaced by U+FFFD. Only the bytes may go back to
    /// git.
    std::string text() const { return repairedUtf8(stdoutBytes); }
    std::string errorText() const { return repairedUtf8(stderrBytes); }
};

} // namespace gitkit

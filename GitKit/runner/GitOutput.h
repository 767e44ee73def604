// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/Text.h"

#include <cstddef>
#include <string>

namespace gitkit {

/// How much of a program's standard output is wanted at most.
struct OutputLimit {
    std::size_t lines = 0;
    std::size_t bytes = 0;
};

/// The raw result of one run of git.
struct GitOutput {
    int status = 0;         ///< exit status; 128 plus the signal's number when a signal ended git
    bool signalled = false; ///< a signal ended git; never an accepted exit
    bool stopped = false;   ///< the caller asked for the end before git had come to it
    bool cut = false;       ///< the output passed its limit, and git was ended for it
    std::string stdoutBytes;
    std::string stderrBytes;

    /// The streams as text: bytes that are no UTF-8 are replaced by U+FFFD. For showing only; what goes back to git is
    /// taken from the bytes.
    std::string text() const { return repairedUtf8(stdoutBytes); }
    std::string errorText() const { return repairedUtf8(stderrBytes); }
};

} // namespace gitkit

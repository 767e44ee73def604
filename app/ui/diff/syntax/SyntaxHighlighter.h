// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <chrono>
#include <memory>
#include <stop_token>
#include <string>

namespace plovik {

/// A file whose colours are wanted.
struct SyntaxRequest {
    std::shared_ptr<const FileLines> file;
    std::string path; ///< as bytes; its name tells the language

    std::size_t mostBytes = std::size_t{1} << 20; ///< larger files stay plain
    std::size_t longestLine = 5000;               ///< in bytes; longer lines stay plain
    std::chrono::milliseconds budget{2000};       ///< when it is spent, the rest stays plain
    std::string definitions = {};                 ///< the library's folder; empty for the installed one

    bool operator==(const SyntaxRequest&) const = default;
};

/// Works out the colours of a whole file, so that strings and comments are right from their first line to their last.
/// Nothing that goes wrong costs more than colours: the lines behind it stay plain. Takes up to the budget, and waits
/// for another thread's call to end, since the library cannot do two at a time. Any thread; never null; does not throw.
std::shared_ptr<const FileSyntax> highlighted(const SyntaxRequest& request, const std::stop_token& stop = {});

} // namespace plovik

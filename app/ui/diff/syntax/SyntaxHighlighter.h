// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/syntax/FileSyntax.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <string>

namespace gitkit {
class GitRepository;
}

namespace plovik {

/// A file whose colours are wanted.
struct SyntaxRequest {
    std::shared_ptr<const FileLines> file;
    std::string path; ///< as bytes; its name tells the language
    /// Ends the work at the next line when it is set by a caller that no longer needs the result. May be null.
    std::shared_ptr<const std::atomic<bool>> isStale = {};

    std::size_t mostBytes = std::size_t{1} << 20; ///< larger files stay plain
    std::size_t longestLine = 5000;               ///< in bytes; longer lines stay plain
    std::chrono::milliseconds budget{2000};       ///< when it is spent, the rest stays plain
    std::string definitions = {};                 ///< the library's folder; empty for the installed one
};

/// Works out the colours of a whole file, so that strings and comments are right from their first line to their last.
/// Nothing that goes wrong costs more than colours: the lines behind it stay plain. Takes up to the budget, and waits
/// for another thread's call to end, since the library cannot do two at a time. Any thread; never null; does not throw.
///
/// To be awaited by any view through its store, latest request wins:
///     request.isStale = stale;
///     const auto syntax = co_await store.runFunction(&highlightedFile, request);
///     … syntax->line(number) or syntax->line(number, bytes), drawn with appendSyntaxFormats() (SyntaxFormats.h)
std::shared_ptr<const FileSyntax> highlighted(const SyntaxRequest& request);
std::shared_ptr<const FileSyntax> highlightedFile(const gitkit::GitRepository&, const SyntaxRequest& request);

} // namespace plovik

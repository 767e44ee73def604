// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/FileLines.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace plovik {

/// What a piece of code is, if that is shown in a colour. Plain code has no run.
enum class SyntaxStyle : std::uint8_t { keyword, type, string, number, comment, preprocessor, function, name };

/// A coloured piece of a line, in units of textOf() of that line. It is small because a file has a run for every second
/// word. Value.
struct SyntaxRun {
    std::uint16_t first = 0;
    std::uint16_t length = 0;
    SyntaxStyle style = SyntaxStyle::keyword;

    bool operator==(const SyntaxRun&) const = default;
};

/// A whole file and the colours of its lines. Immutable once it is shared; any thread.
class FileSyntax {
public:
    explicit FileSyntax(std::shared_ptr<const FileLines> file) : file_(std::move(file)) {}

    const std::shared_ptr<const FileLines>& file() const { return file_; }
    /// Returns the runs of a line by its number, from 1, in order and without overlap; none if there is no such line.
    std::span<const SyntaxRun> line(int number) const;
    /// Does the same, but returns none if the line has other bytes, apart from a carriage return at its end.
    std::span<const SyntaxRun> line(int number, std::string_view bytes) const;
    /// Returns how many bytes the file and the runs take.
    std::size_t size() const;

    /// Adds the runs of the next line.
    void append(std::span<const SyntaxRun> runs);

private:
    std::shared_ptr<const FileLines> file_;
    std::vector<std::uint32_t> ends_; ///< the index behind the last run, by line
    std::vector<SyntaxRun> runs_;
};

/// The colours of the two files that a diff compares; null while they are not known. Value.
struct SyntaxOf {
    std::shared_ptr<const FileSyntax> before;
    std::shared_ptr<const FileSyntax> after;

    bool operator==(const SyntaxOf&) const = default;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/ui/diff/FileLines.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace plovik {

/// What a piece of code is, as far as it is shown. What is plain has no run.
enum class SyntaxStyle : std::uint8_t { keyword, type, string, number, comment, preprocessor, function, name };

/// A coloured piece of a line, in units of textOf() of that line. Six bytes: a file has a run for every other word.
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
    /// The runs of a line, from 1, in order and apart from each other. None for a line that the file does not have.
    std::span<const SyntaxRun> line(int number) const;
    /// The same, but none when the file's line is not this one; a carriage return at the end does not count.
    std::span<const SyntaxRun> line(int number, std::string_view bytes) const;
    /// What file and runs take, in bytes.
    std::size_t size() const;

    /// Adds the runs of the next line.
    void append(std::span<const SyntaxRun> runs);

private:
    std::shared_ptr<const FileLines> file_;
    std::vector<std::uint32_t> ends_; ///< by line: behind its last run
    std::vector<SyntaxRun> runs_;
};

/// The colours of the two files that a diff compares, as far as they are known.
struct SyntaxOf {
    std::shared_ptr<const FileSyntax> before;
    std::shared_ptr<const FileSyntax> after;

    bool operator==(const SyntaxOf&) const = default;
};

} // namespace plovik

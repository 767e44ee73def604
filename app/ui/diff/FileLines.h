// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A whole file, to be read by its lines. Immutable; any thread.
class FileLines {
public:
    explicit FileLines(std::string bytes);

    const std::string& bytes() const { return bytes_; }
    int count() const { return static_cast<int>(starts_.size()); }
    /// A line, from 1, without its line feed; empty for a number that the file does not have.
    std::string_view line(int number) const;

private:
    std::string bytes_;
    std::vector<std::size_t> starts_;
};

/// The two files that a diff compares, as far as they could be had.
struct DiffTexts {
    std::shared_ptr<const FileLines> before;
    std::shared_ptr<const FileLines> after;

    bool operator==(const DiffTexts&) const = default;
};

} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace plovik {

/// A whole file with an index of its lines. Immutable; any thread.
class FileLines {
public:
    explicit FileLines(std::string bytes);

    const std::string& bytes() const { return bytes_; }
    int count() const { return static_cast<int>(starts_.size()); }
    /// Returns a line by its number, from 1, without the line feed; empty if the file has no such line.
    std::string_view line(int number) const;

private:
    std::string bytes_;
    std::vector<std::size_t> starts_;
};

/// The two files that a diff compares; null for a file that is missing or could not be read. Value.
struct DiffTexts {
    std::shared_ptr<const FileLines> before;
    std::shared_ptr<const FileLines> after;

    bool operator==(const DiffTexts&) const = default;
};

} // namespace plovik

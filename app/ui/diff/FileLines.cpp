// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/diff/FileLines.h"

#include <utility>

namespace plovik {

FileLines::FileLines(std::string bytes) : bytes_(std::move(bytes))
{
    for (std::size_t start = 0; start < bytes_.size();) {
        starts_.push_back(start);
        const std::size_t end = bytes_.find('\n', start);
        start = end == std::string::npos ? bytes_.size() : end + 1;
    }
}

std::string_view FileLines::line(int number) const
{
    if (number < 1 || number > count())
        return {};
    const std::size_t start = starts_[static_cast<std::size_t>(number) - 1];
    const std::size_t end = number == count() ? bytes_.size() : starts_[static_cast<std::size_t>(number)];
    const std::string_view line = std::string_view(bytes_).substr(start, end - start);
    return line.ends_with('\n') ? line.substr(0, line.size() - 1) : line;
}

} // namespace plovik

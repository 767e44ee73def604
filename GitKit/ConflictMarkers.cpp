// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/ConflictMarkers.h"

#include "GitKit/RegularFile.h"

#include <array>
#include <cerrno>
#include <string>
#include <string_view>

namespace gitkit {

namespace {

constexpr std::string_view ours = "\n<<<<<<< ";
constexpr std::string_view theirs = "\n>>>>>>> ";

} // namespace

bool hasConflictMarkers(std::string_view text)
{
    return text.starts_with(ours.substr(1)) || text.starts_with(theirs.substr(1)) ||
           text.find(ours) != std::string_view::npos || text.find(theirs) != std::string_view::npos;
}

bool holdsConflictMarkers(const std::filesystem::path& file)
{
    const UniqueFd opened = openRegularFile(file);
    std::array<char, 64 * 1024> chunk;
    std::string text = "\n";
    while (opened) {
        const ssize_t count = ::read(opened.get(), chunk.data(), chunk.size());
        if (count < 0 && errno == EINTR)
            continue;
        if (count <= 0)
            return false;
        text.append(chunk.data(), static_cast<std::size_t>(count));
        if (text.find(ours) != std::string::npos || text.find(theirs) != std::string::npos)
            return true;
        // A marker may begin in one chunk and end in the next.
        text.erase(0, text.size() - std::min(text.size(), ours.size() - 1));
    }
    return false;
}

} // namespace gitkit

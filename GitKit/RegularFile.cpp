// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/RegularFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace gitkit {

UniqueFd openRegularFile(const std::filesystem::path& file)
{
    UniqueFd opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat found{};
    if (opened && (::fstat(opened.get(), &found) != 0 || !S_ISREG(found.st_mode))) {
        opened.reset();
        errno = EINVAL;
    }
    return opened;
}

std::optional<std::string> regularFileBytes(const std::filesystem::path& file, std::uintmax_t limit)
{
    const UniqueFd opened = openRegularFile(file);
    if (!opened)
        return std::nullopt;
    std::string bytes;
    std::array<char, 64 * 1024> chunk;
    while (bytes.size() < limit) {
        const ssize_t count =
            ::read(opened.get(), chunk.data(), std::min<std::uintmax_t>(chunk.size(), limit - bytes.size()));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        bytes.append(chunk.data(), static_cast<std::size_t>(count));
    }
    return bytes;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/CommitTemplate.h"

#include "GitKit/RegularFile.h"
#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PreparedMessage.h"

#include <algorithm>
#include <string_view>

namespace gitkit {

namespace {

/// Returns whether an empty line stands above the first line that is no comment.
bool leavesSubject(std::string_view raw, std::string_view cleaned)
{
    const std::string_view first = cleaned.substr(0, cleaned.find('\n'));
    while (!raw.empty()) {
        const std::string_view line = trimmed(raw.substr(0, raw.find('\n')));
        if (line.empty())
            return true;
        if (line == trimmed(first))
            return false;
        raw.remove_prefix(std::min(raw.size(), raw.find('\n') + 1));
    }
    return false;
}

} // namespace

std::string commitTemplate(const GitRepository& repo)
{
    // A setting that cannot be read is none: this is not the place to tell of it.
    const std::string path =
        repo.runner().output({"config", "--null", "--type=path", "--get", "commit.template"}).stdoutBytes;
    if (path.empty())
        return {};
    const std::string name = path.substr(0, path.find('\0'));
    const std::string raw = regularFileBytes(repo.root() / name, longestPreparedMessage).value_or(std::string());
    if (raw.empty())
        return {};
    const std::string cleaned = repo.runner().bytes({"stripspace", "--strip-comments"}, {.input = raw});
    return !cleaned.empty() && leavesSubject(raw, cleaned) ? '\n' + cleaned : cleaned;
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileVersions.h"

#include "GitKit/Text.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/repository/PathCommand.h"
#include "GitKit/repository/RefArguments.h"
#include "GitKit/runner/GitError.h"

#include <filesystem>
#include <optional>
#include <system_error>

namespace gitkit {

std::string fileBytes(const GitRepository& repo, const FileVersion& version)
{
    return repo.runner().bytes(
        {"cat-file", "--filters", revisionArgument("cat-file", version.revision) + ':' + version.path});
}

void takeFile(const GitRepository& repo, const FileVersion& version)
{
    const std::optional<std::string> standing = standingInPlaceOf(repo.root(), version.path);
    std::error_code ignored;
    const bool isFolder =
        std::filesystem::is_directory(std::filesystem::symlink_status(repo.root() / version.path, ignored));
    // Git would delete what is there.
    if (standing && (*standing != version.path || isFolder))
        throw GitError("restore", 1, inQuotes(*standing) + " stands in its place. Nothing was done.");
    repo.runner().run({"restore", "--worktree", "--source=" + revisionArgument("restore", version.revision), "--",
                       literalPathspec(version.path)});
}

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ThrowawayObjects.h"

#include "GitKit/repository/CommitGraphCache.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace gitkit {

namespace fs = std::filesystem;

ThrowawayObjects::ThrowawayObjects(const GitRepository& repo)
    : alternates_(alternatesOf(gitDirectories(repo).common / "objects"))
{
    std::string name = (fs::temp_directory_path() / "plovik-objects-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), "mkdtemp");
    folder_ = name;
}

ThrowawayObjects::~ThrowawayObjects()
{
    std::error_code ignored;
    fs::remove_all(folder_, ignored);
}

RunOptions ThrowawayObjects::options() const
{
    RunOptions options;
    options.environment = {{"GIT_OBJECT_DIRECTORY", folder_.string()},
                           {"GIT_ALTERNATE_OBJECT_DIRECTORIES", alternates_}};
    return options;
}

} // namespace gitkit

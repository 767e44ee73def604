// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/ConflictMarkers.h"

#include "GitKit/repository/GitRepository.h"

#include <fstream>

namespace plovik {

namespace {

bool holdsMarkers(const std::filesystem::path& file)
{
    std::ifstream stream(file, std::ios::binary);
    std::string line;
    while (std::getline(stream, line)) {
        if (line.starts_with("<<<<<<< ") || line.starts_with(">>>>>>> "))
            return true;
    }
    return false;
}

} // namespace

std::vector<std::string> filesWithConflictMarkers(const gitkit::GitRepository& repo,
                                                  const std::vector<gitkit::FileChange>& files)
{
    std::vector<std::string> found;
    for (const gitkit::FileChange& file : files) {
        if (file.isConflicted && holdsMarkers(repo.root() / file.path))
            found.push_back(file.path);
    }
    return found;
}

} // namespace plovik

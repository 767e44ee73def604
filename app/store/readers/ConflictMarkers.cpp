// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/store/readers/ConflictMarkers.h"

#include "GitKit/ConflictMarkers.h"
#include "GitKit/repository/GitRepository.h"

namespace plovik {

std::vector<std::string> filesWithConflictMarkers(const gitkit::GitRepository& repo,
                                                  const std::vector<gitkit::FileChange>& files)
{
    std::vector<std::string> found;
    for (const gitkit::FileChange& file : files) {
        if (file.isConflicted && gitkit::holdsConflictMarkers(repo.root() / file.path))
            found.push_back(file.path);
    }
    return found;
}

bool holdsConflictMarkers(const std::string& text) { return gitkit::hasConflictMarkers(text); }

} // namespace plovik

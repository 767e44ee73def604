// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/GitRunner.h"

#include <filesystem>
#include <string>

namespace gitkit {

class GitRepository;

/// A folder for objects that nobody needs afterwards, which goes with this. Runs with its options see the repository's
/// objects, too, and leave nothing there. One thread at a time; the constructor blocks, and throws as the methods of
/// GitRepository do, or std::system_error.
class ThrowawayObjects {
public:
    explicit ThrowawayObjects(const GitRepository& repo);
    ~ThrowawayObjects();
    ThrowawayObjects(const ThrowawayObjects&) = delete;
    ThrowawayObjects& operator=(const ThrowawayObjects&) = delete;

    RunOptions options() const;

private:
    std::filesystem::path folder_;
    std::string alternates_;
};

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/RepositoryGlance.h"
#include "app/store/readers/Latest.h"

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace plovik {

/// Looks at other repositories, one after another: only at those that are asked for, the one that was asked for last
/// first. Programs that their configurations name do not run. Owned by the list that shows them; main thread.
class Glances {
public:
    /// `git` outlives this. `changed` is called when one has been looked at.
    Glances(const GitAccess& git, std::function<void()> changed);

    /// Returns what is known of the repository, by the bytes of its root, and looks at it soon when that is nothing yet.
    /// A repository that could not be read stays unknown.
    std::optional<gitkit::RepositoryGlance> of(const std::string& root);

private:
    void lookAtNext();
    void looked();

    std::function<void()> changed_;
    std::map<std::string, std::optional<gitkit::RepositoryGlance>> known_;
    std::vector<std::string> wanted_; ///< the next one last
    Latest<std::string, gitkit::RepositoryGlance> looking_;
};

} // namespace plovik

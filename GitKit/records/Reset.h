// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <string>
#include <vector>

namespace gitkit {

/// What becomes of changes when the current branch is moved to another commit.
enum class ResetKind {
    keep,  ///< files follow the commits; what is changed and staged stays
    soft,  ///< index and files stay
    mixed, ///< files stay, and nothing is staged
    hard,  ///< index and files become those of the commit
};

/// What moving the current branch to another commit would leave, overwrite or refuse.
struct ResetLoss {
    std::string head;                  ///< full hash of the commit that HEAD stands on
    int left = 0;                      ///< commits that HEAD has and the target does not
    int gained = 0;                    ///< commits that the target has and HEAD does not
    int onlyHere = 0;                  ///< those of `left` that no other branch and no tag leads to
    std::vector<std::string> changed;  ///< files that git knows and that are not as HEAD has them
    std::vector<std::string> refused;  ///< those among them that the commits change, too
    std::vector<std::string> inTheWay; ///< files that git does not know and that others would replace
    bool hasConflicts = false;

    bool operator==(const ResetLoss&) const = default;
};

} // namespace gitkit

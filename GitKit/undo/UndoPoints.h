// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/records/UndoStep.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

class GitRepository;

// Keeping one moment of a repository. Blocking; throws as the methods of GitRepository do. `gitDirectory` is what
// gitDirectories() calls the working tree's own.

/// What an action is going to touch.
struct UndoScope {
    std::string kind = {};
    std::string title = {};
    std::string message = {}; ///< that the user has typed for it
    bool movesFiles = false;  ///< the files of the working tree go from one tree to another
    bool movesIndex = false;  ///< what is staged changes, too
    /// Files whose bytes are taken: those that git knows, and absolute paths of files in git's own folder.
    std::vector<std::string> overwrites = {};
    /// Files that have changes of the user's. Their bytes are kept, too, as far as that is no great matter.
    std::vector<std::string> changed = {};
    /// Files that the action changes without a word in the index are looked for when it has ended.
    bool changesMore = false;
    std::vector<std::string> removes = {}; ///< files that git does not know and that go; they are kept by other means
    std::vector<std::string> refs = {};    ///< full names of refs that may move, besides the branch of HEAD
    std::vector<std::string> refFolders = {}; ///< of which any ref may move, as refs/remotes/origin
    bool movesAnyRef = false;                 ///< any branch may move
    bool touchesStashes = false;
    bool touchesSettings = false;        ///< of branches or remotes
    std::vector<std::string> aside = {}; ///< files that were moved out of the way for it
    std::string target = {};             ///< tree to which the files go, where that is known
    std::string undoes = {};             ///< id of the step that it takes back
};

/// Returns the state as it is now, as far as an action with this scope can change it. Throws GitError where files whose
/// bytes are to be kept are too many or too large: see UndoTooLarge.
UndoPoint pointNow(const GitRepository& repo, const std::filesystem::path& gitDirectory, const UndoScope& scope);

/// Returns the files that git knows and that are not as they are staged, those in conflict included.
std::vector<std::string> changedFiles(const GitRepository& repo);

/// The names and hashes of refs.
using RefValues = std::vector<std::pair<std::string, std::string>>;
/// Returns the refs that an action with this scope can move, but for the branch of HEAD. Symbolic refs move with others.
RefValues refsNow(const GitRepository& repo, const UndoScope& scope);

/// Returns the stashes, the newest first.
std::vector<KeptStash> stashesNow(const GitRepository& repo);

/// Returns the settings of branches and remotes in the repository's own configuration, and which branch of each remote its
/// HEAD names: that is a ref which has no hash of its own, under a key that git does not know.
std::vector<Setting> settingsNow(const GitRepository& repo);
/// The key of the latter is this with the remote's name in between.
inline constexpr std::string_view remoteHeadKey = "remote-head.";
inline constexpr std::string_view remoteHeadKeyEnd = ".target";

} // namespace gitkit

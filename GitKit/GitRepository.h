#pragma once

#include "GitKit/records/Commit.h"
#include "GitKit/records/GitRef.h"
#include "GitKit/records/HistoryFilter.h"
#include "GitKit/records/HistoryScope.h"
#include "GitKit/records/RepoStatus.h"
#include "GitKit/records/Stash.h"
#include "GitKit/runner/GitRunner.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace gitkit {

/// The one door to a repository: a working tree's root, and every git operation on it.
///
/// An immutable value. Every method blocks until its git process has ended and may run on any thread, any number at
/// once; callers keep writing operations apart. Throws GitError when git refuses, LaunchError when git cannot be
/// started. Paths and ref names are the bytes that git printed.
class GitRepository {
public:
    /// `root` is a working tree's top level as topLevel() returns it.
    explicit GitRepository(std::filesystem::path root);

    const std::filesystem::path& root() const { return root_; }

    /// The top level of the working tree that holds `folder`.
    static std::filesystem::path topLevel(const std::filesystem::path& folder);

    /// Runs git with any arguments and returns what it printed, repaired for showing.
    std::string git(const std::vector<std::string>& arguments) const;

    /// Fails when the current branch's ref is damaged, which git shows as a branch without commits.
    RepoStatus status() const;
    std::vector<GitRef> refs() const;
    std::vector<std::string> remotes() const;
    std::vector<Stash> stashes() const;
    /// The newest `limit` commits of `scope`, only those that match `filter` when there is one.
    std::vector<Commit> log(const HistoryScope& scope, int limit, const std::optional<HistoryFilter>& filter) const;

    /// The directories that hold this working tree's own git data and the data it shares with other working trees, as
    /// absolute paths; the same path twice in an ordinary repository.
    struct GitDirectories {
        std::filesystem::path own;
        std::filesystem::path common;
    };
    GitDirectories gitDirectories() const;

    /// Folders, relative to the root and without a final slash, whose whole content git ignores. Folders inside them
    /// are not listed.
    std::vector<std::string> ignoredFolders() const;

    /// Those of `folders` (relative to the root) that git ignores. Folders inside submodules never are.
    std::vector<std::string> ignoredAmong(const std::vector<std::string>& folders) const;

    /// The full message of one commit, repaired for showing.
    std::string commitMessage(const std::string& hash) const;

private:
    bool resolvesHead() const;
    void requireReadableHead() const;

    std::filesystem::path root_;
    GitRunner runner_;
};

} // namespace gitkit

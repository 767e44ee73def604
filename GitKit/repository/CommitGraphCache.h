// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/runner/RunContext.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace gitkit {

class GitRepository;

/// A commit-graph of one repository that is kept in the cache folder of the user and not in the repository. With it git
/// walks a long history several times faster. Only runs that read see it, as another object directory that holds
/// nothing else.
///
/// Git would read objects from that directory. So it is used only while it belongs to the user, nobody else can write to
/// it, and its files are those that were written here: a seal over their contents is compared before the first use, and
/// their stamps before each one. What does not fit is removed, and git reads without it.
///
/// Shared by the runs of one repository. Any thread.
class CommitGraphCache {
public:
    /// What is known about the repository when the refs have been listed.
    struct Repository {
        std::filesystem::path commonDirectory; ///< as gitDirectories() has it
        std::string replacements;              ///< as RefListing has them
    };

    /// `root` holds a folder for each repository. An empty path means that nothing is kept.
    explicit CommitGraphCache(std::filesystem::path root);

    /// Looks for what an earlier run has kept, and uses it from now on if it is sound. Reads all of it; blocks.
    void open(const Repository& repository);
    /// Uses none until it is opened or written again. Waits for nothing.
    void close();

    /// Whether a graph is in use.
    bool isOpen() const { return alternates().has_value(); }

    /// Writes the graph of all refs, or adds to it what is new, at the lowest priority, and uses it from now on. Then
    /// removes those of other repositories that were used least recently, beyond `mostBytes` of all. Does nothing where
    /// git would not read it or the repository has one of its own, and while another process writes it. Returns whether
    /// the graph is in use. Throws RunStopped when the context of `repo` requests it; other failures only mean that there
    /// is none.
    bool write(const GitRepository& repo, const Repository& repository, std::uintmax_t mostBytes = limitOfAll);

    /// Returns the value of GIT_ALTERNATE_OBJECT_DIRECTORIES that makes git see the graph, or nullopt without one.
    /// Looks only at the stamps of its files.
    std::optional<std::string> alternates() const;

    static constexpr std::uintmax_t limitOfAll = std::uintmax_t{1} << 30;

private:
    struct Stamp {
        std::uint64_t inode = 0;
        std::int64_t size = 0;
        std::int64_t modified = 0; ///< in nanoseconds since 1970, as the next
        std::int64_t changed = 0;

        bool operator==(const Stamp&) const = default;
    };
    using Stamps = std::map<std::string, Stamp>; ///< by the file's name

    static std::optional<Stamps> stampsIn(const std::filesystem::path& folder);
    static bool isSound(const std::filesystem::path& folder, std::string_view owner);
    bool use(const std::filesystem::path& folder, std::string_view owner);
    std::filesystem::path folderOf(const Repository& repository) const;

    const std::filesystem::path root_;
    mutable std::mutex mutex_;
    std::filesystem::path folder_; ///< of the graph in use; guarded by mutex_, as is the next
    Stamps stamps_;
};

/// How much room the graphs of all repositories take in `root`, in bytes. Blocks.
std::uintmax_t commitGraphBytes(const std::filesystem::path& root);
/// Removes the graphs of all repositories. Runs that read them go on. Blocks.
void removeCommitGraphs(const std::filesystem::path& root);

/// Returns a value of GIT_ALTERNATE_OBJECT_DIRECTORIES that names `folder`, whatever is in its name.
std::string alternatesOf(const std::filesystem::path& folder);

/// Lets the runs that walk history see the graph. It adds to what another guard says.
class CommitGraphGuard : public RunGuard {
public:
    CommitGraphGuard(std::shared_ptr<RunGuard> programs, std::shared_ptr<const CommitGraphCache> graph)
        : programs_(std::move(programs)), graph_(std::move(graph))
    {}

    Restriction before(const std::string& command, const RunContext& context) override;

private:
    const std::shared_ptr<RunGuard> programs_;
    const std::shared_ptr<const CommitGraphCache> graph_;
};

/// Whether a command of git walks history: only those are faster with a graph.
bool walksHistory(std::string_view command);

} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/repository/ConfiguredPrograms.h"
#include "GitKit/runner/RunContext.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace gitkit {

/// Keeps the programs that a repository's configuration names from running before the user trusts them. As the guard
/// of a RunContext it looks through the configuration of the repository and of its submodules before the first run
/// that could start one, and again once a file that it was read from has changed.
///
/// Shared by the contexts of one repository. Any thread; runs of git wait for a look that is under way.
class ProgramGuard : public RunGuard {
public:
    using Programs = std::vector<ConfiguredProgram>; ///< sorted
    /// Called on any thread, one call at a time.
    using IsTrusted = std::function<bool(const Programs&)>;

    /// `root` is a working tree's top level. Without `isTrusted` nothing is trusted.
    explicit ProgramGuard(std::filesystem::path root, IsTrusted isTrusted = {});

    /// Replaces the user's decision.
    void setTrusted(IsTrusted isTrusted);

    /// Returns the programs that are kept off, as the last look found them. Waits for no look.
    Programs keptOff() const;

    /// Looks if necessary, and throws GitError when programs are found that are not trusted. Throws as GitRunner does.
    void requireTrusted(const RunContext& context);

    /// Throws as GitRunner does, since nothing may run when the configuration cannot be read.
    Restriction before(const std::string& command, const RunContext& context) override;

private:
    /// The identity of a file's content; all zero when there is none.
    struct Stamp {
        std::uint64_t inode = 0;
        std::int64_t size = 0;
        std::int64_t modified = 0; ///< in nanoseconds since 1970, as the next one
        std::int64_t changed = 0;

        bool operator==(const Stamp&) const = default;
    };
    /// What is known of one repository: that of the root, or a submodule.
    struct Look {
        std::map<std::filesystem::path, Stamp> files; ///< those that the configuration was read from
        bool hasInclude = false;                      ///< then other files may decide, too
        Programs programs;
        std::filesystem::path workTree; ///< where its submodules are
        Stamp index;
        std::vector<std::string> submodules; ///< paths from `workTree`
    };
    using Looks = std::map<std::filesystem::path, Look>; ///< by the folder, without links
    /// A repository to look at.
    struct Place {
        std::filesystem::path folder;
        std::string submodule = {}; ///< the path that is shown for it; empty for the root
    };

    static Stamp stampOf(const std::filesystem::path& file);
    static bool isCurrent(const Look& look);
    static void readConfiguration(const Place& place, const RunContext& context, Look& look);
    static void readSubmodules(const Place& place, const RunContext& context, Look& look);
    void look(const RunContext& context);
    void lookAt(const Place& place, const RunContext& context, Looks& looks) const;
    Look lookedAt(const Place& place, const std::filesystem::path& folder, const RunContext& context) const;

    const std::filesystem::path root_;
    std::mutex looking_;        ///< held while git reads the configuration
    Looks looks_;               ///< guarded by looking_
    mutable std::mutex result_; ///< guards the following
    IsTrusted isTrusted_;
    bool hasLooked_ = false;
    Programs found_;
    bool areTrusted_ = true;
};

} // namespace gitkit

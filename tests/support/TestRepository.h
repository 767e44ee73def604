// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "GitKit/repository/GitRepository.h"
#include "tests/support/TemporaryFolder.h"

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

/// A real repository in a temporary folder, told like a story: repo.write("a", "1").commit("one").
///
/// Runs the same git as the application does, in the configuration and with the names that OwnEnvironment gives. Every
/// commit is one minute younger than the one before.
class TestRepository {
public:
    /// Made with `git init` and `initArguments`; the branch is main.
    explicit TestRepository(const std::vector<std::string>& initArguments = {});

    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    gitkit::GitRepository repository() const { return gitkit::GitRepository(path_); }

    TestRepository& write(std::string_view name, std::string_view bytes);
    TestRepository& remove(std::string_view name);
    /// Stages everything and commits it, even when there is nothing to commit.
    TestRepository& commit(const std::string& message);
    /// Runs git, which must succeed, and forgets what it printed.
    TestRepository& git(const std::vector<std::string>& arguments, std::string_view input = {});

    /// What git printed, without the last line end; a failure of git fails the test.
    std::string read(const std::vector<std::string>& arguments, std::string_view input = {}) const;
    std::string head() const { return read({"rev-parse", "HEAD"}); }
    /// Stores a commit object with exactly these bytes and returns its hash.
    std::string storeCommit(std::string_view bytes) const;

private:
    TemporaryFolder folder_;
    std::filesystem::path path_;
    int minutes_ = 0;
};

/// Runs git in any folder the way TestRepository does; returns what it printed on both streams and leaves the exit
/// status in `status`.
std::string runPlainGit(const std::filesystem::path& folder, const std::vector<std::string>& arguments, int& status,
                        std::string_view input = {}, const std::vector<std::string>& environment = {});

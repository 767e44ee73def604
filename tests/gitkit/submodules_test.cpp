// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Submodules.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

/// A repository with two submodules, one of which has an odd name; the other one's has two commits.
struct Submodules : testing::Test {
    Submodules()
    {
        inner.write("i", "1\n").commit("inner one").write("i", "2\n").commit("inner two");
        repo.git({"config", "protocol.file.allow", "always"});
        for (const char* const path : {"lib", "[a]"})
            repo.git({"-c", "protocol.file.allow=always", "submodule", "add", "-q", inner.path().string(), path});
        repo.commit("with submodules");
    }

    std::string in(const std::string& path, const std::vector<std::string>& arguments) const
    {
        int status = 0;
        return runPlainGit(repo / path, arguments, status);
    }
    SubmoduleState state(const std::string& path) const
    {
        for (const Submodule& each : submodules(door)) {
            if (each.path == path)
                return stateOf(each, door.status());
        }
        ADD_FAILURE() << "no submodule " << path;
        return SubmoduleState::conflicted;
    }
    std::string head(const std::string& path) const { return in(path, {"rev-parse", "HEAD"}).substr(0, 40); }

    TestRepository inner;
    TestRepository repo;
    GitRepository door = repo.repository();
};

TEST_F(Submodules, AreListedWithTheirStates)
{
    EXPECT_FALSE(mayHaveSubmodules(inner.path()));
    const std::vector<Submodule> all = submodules(door);
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[1], (Submodule{.path = "lib",
                                 .name = "lib",
                                 .url = inner.path().string(),
                                 .recorded = inner.head(),
                                 .isInitialised = true}));
    EXPECT_EQ(state("lib"), SubmoduleState::atRecorded);
    std::ofstream(repo / "lib/i") << "changed";
    EXPECT_EQ(state("lib"), SubmoduleState::changedInside);
    in("lib", {"checkout", "-q", "-f", "HEAD~"});
    EXPECT_EQ(state("lib"), SubmoduleState::otherCommit);
    repo.git({"submodule", "deinit", "-q", "-f", ":(literal)[a]"});
    EXPECT_EQ(state("[a]"), SubmoduleState::notInitialised);
}

TEST_F(Submodules, UpdatingGoesToTheRecordedCommitOfThoseAlone)
{
    const std::string recorded = head("lib");
    in("lib", {"checkout", "-q", "HEAD~"});
    in("[a]", {"checkout", "-q", "HEAD~"});
    const std::string other = head("[a]");
    updateSubmodules(door, {"lib"});
    EXPECT_EQ(head("lib"), recorded);
    EXPECT_EQ(head("[a]"), other) << "a path is no pattern, and the others stay";
    updateSubmodules(door, {"[a]"});
    EXPECT_EQ(head("[a]"), recorded);
    repo.git({"submodule", "deinit", "-q", "-f", "lib"});
    updateSubmodules(door, {"lib"});
    EXPECT_EQ(head("lib"), recorded);

    in("lib", {"checkout", "-q", "HEAD~"});
    std::ofstream(repo / "lib/i") << "changed";
    EXPECT_THROW(updateSubmodules(door, {"lib"}), GitError);
    std::ifstream file(repo / "lib/i");
    std::string text;
    file >> text;
    EXPECT_EQ(text, "changed") << "never by force";
}

TEST_F(Submodules, UpdatingRunsNoCommandOfTheConfiguration)
{
    const fs::path mark = repo / "ran";
    repo.git({"config", "submodule.lib.update", "!touch " + mark.string() + " #"});
    in("lib", {"checkout", "-q", "HEAD~"});
    EXPECT_THROW(updateSubmodules(door, {"lib"}), GitError);
    EXPECT_FALSE(fs::exists(mark));
}

TEST_F(Submodules, CommitsOnNoBranchAreFoundAndKept)
{
    in("lib", {"checkout", "-q", "--detach"});
    in("lib", {"commit", "-q", "--allow-empty", "-m", "mine"});
    in("lib", {"commit", "-q", "--allow-empty", "-m", "mine, too"});
    const std::string mine = head("lib");
    const std::vector<StrayCommits> stray = strayCommits(door, submodules(door));
    EXPECT_EQ(stray, (std::vector<StrayCommits>{{.path = "lib", .head = mine, .count = 2}}));
    keepStrayCommits(door, stray);
    EXPECT_TRUE(strayCommits(door, submodules(door)).empty());
    updateSubmodules(door, {"lib"});
    EXPECT_EQ(in("lib", {"rev-parse", stray[0].branch()}).substr(0, 40), mine);

    in("lib", {"checkout", "-q", mine});
    repo.git({"add", "lib"}).git({"submodule", "deinit", "-q", "-f", "lib"});
    EXPECT_TRUE(strayCommits(door, submodules(door)).empty())
        << "one that is not here asks the outer repository nothing";
}

TEST_F(Submodules, TheDiffIsAListOfCommits)
{
    const std::string two = inner.head();
    const std::string one = inner.read({"rev-parse", "HEAD~"});
    SubmoduleLog log = submoduleLog(door, "lib", one, two);
    EXPECT_EQ(log, (SubmoduleLog{.rows = {{.hash = two, .subject = "inner two"}}, .ahead = 1}));
    log = submoduleLog(door, "lib", two, one);
    EXPECT_EQ(log.behind, 1);
    EXPECT_TRUE(log.rows.at(0).isRemoved);
    inner.write("i", "3\n").commit("not here");
    EXPECT_EQ(submoduleLog(door, "lib", two, inner.head()).missing, SubmoduleLog::Missing::commits);
    repo.git({"submodule", "deinit", "-q", "-f", "lib"});
    EXPECT_EQ(submoduleLog(door, "lib", one, two).missing, SubmoduleLog::Missing::repository);
}

} // namespace
} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/ConfiguredPrograms.h"
#include "GitKit/repository/ProgramGuard.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <set>

namespace gitkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct ConfiguredProgramsTest : testing::Test {
    TestRepository repo;
    TemporaryFolder outside;
    std::shared_ptr<ProgramGuard> guard = std::make_shared<ProgramGuard>(repo.path());

    GitRepository guarded() const { return GitRepository(repo.path(), {.guard = guard}); }
    /// A command that leaves a file of this name behind and passes on what it reads.
    std::string leaving(const std::string& name) const { return "touch " + (outside / name).string() + "; cat"; }
    std::set<std::string> ran() const
    {
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(outside.path()))
            names.insert(entry.path().filename().string());
        return names;
    }

    /// Makes git run programs when it compares a file that has changed.
    void addFilter(TestRepository& to, const std::string& mark)
    {
        to.write(".gitattributes", "f filter=a=b.C\ng filter=process\n").write("f", "1\n").write("g", "1\n");
        to.commit("filtered").write("f", "2\n").write("g", "2\n");
        to.git({"config", "filter.a=b.C.clean", leaving(mark + "clean")});
        to.git({"config", "filter.a=b.C.required", "true"});
        to.git({"config", "filter.process.process", leaving(mark + "process")});
    }
    void readEverything() const
    {
        const RepoStatus status = guarded().status();
        for (const FileChange& file : status.files)
            guarded().workingDiff(file);
        guarded().blame("f", std::nullopt);
    }
    /// The keys of what is kept off, each behind the path of its submodule.
    std::vector<std::string> found()
    {
        guarded().status();
        std::vector<std::string> keys;
        for (const ConfiguredProgram& program : guard->keptOff())
            keys.push_back(program.submodule + ":" + program.key);
        return keys;
    }
};

TEST_F(ConfiguredProgramsTest, ReadsRunNoFilterOfTheRepositoryOrItsSubmodulesUntilTheyAreTrusted)
{
    TestRepository inner;
    TestRepository module;
    inner.write("f", "1\n").commit("inner");
    module.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", inner.path().string(), "inner"});
    module.write("f", "1\n").commit("module");
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", module.path().string(), "module"});
    repo.git({"-C", "module", "-c", "protocol.file.allow=always", "submodule", "--quiet", "update", "--init"});
    addFilter(repo, "");
    repo.write("module/f", "2\n").write("module/inner/f", "2\n");
    for (const std::string folder : {"module", "module/inner"}) {
        const std::string data = repo.read({"-C", folder, "rev-parse", "--absolute-git-dir"});
        repo.git({"-C", folder, "config", "filter.deep.clean", leaving(folder == "module" ? "module" : "inner")});
        std::filesystem::create_directories(data + "/info");
        writeFile(data + "/info/attributes", "* filter=deep\n");
    }

    readEverything();
    EXPECT_THAT(ran(), IsEmpty());
    EXPECT_THAT(found(), ElementsAre(":filter.a=b.C.clean", ":filter.process.process", "module:filter.deep.clean",
                                     "module/inner:filter.deep.clean"));
    EXPECT_THROW(guard->requireTrusted({}), GitError);

    repo.git({"config", "--unset", "filter.process.process"});
    guard->setTrusted([](const auto& programs) { return programs.size() == 3; });
    guarded().status();
    EXPECT_THAT(ran(), ElementsAre("clean", "inner", "module")) << "otherwise nothing was shown above";
    guard->requireTrusted({});

    // Trust is given to what was found, and not to what comes later.
    repo.git({"-C", "module/inner", "config", "filter.other.clean", "false"});
    EXPECT_THROW(guard->requireTrusted({}), GitError);
    EXPECT_EQ(guard->keptOff().size(), 4u);
}

TEST_F(ConfiguredProgramsTest, SubmodulesAreFoundWhereTheConfigurationPutsTheirFiles)
{
    TestRepository inner;
    TestRepository module;
    inner.write("f", "1\n").commit("inner");
    module.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", inner.path().string(), "inner"});
    module.commit("module");
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", module.path().string(), "module"});
    repo.commit("one");
    repo.git({"-C", module.path().string(), "config", "filter.x.clean", "cat"});
    repo.git({"-C", module.path().string() + "/inner", "config", "filter.x.clean", "cat"});
    // The link leads to another repository, whose files are elsewhere again.
    writeFile(repo / "module/.git", "gitdir: " + module.path().string() + "/.git\n\n");
    module.git({"config", "core.worktree", module.path().string()});
    EXPECT_THAT(found(), ElementsAre("module:filter.x.clean", "module/inner:filter.x.clean"));
}

TEST_F(ConfiguredProgramsTest, NoReadFetchesWithAProgramOfTheRepository)
{
    TestRepository origin;
    origin.write("f", "1\n").commit("one").write("f", "2\n").commit("two");
    origin.git({"config", "uploadpack.allowFilter", "true"}).git({"config", "uploadpack.allowAnySHA1InWant", "true"});
    repo.git({"remote", "add", "origin", "file://" + origin.path().string()});
    repo.git({"config", "remote.origin.uploadpack", leaving("uploadpack") + " | git-upload-pack"});
    EXPECT_THAT(found(), IsEmpty()) << "git fetches nothing unasked";

    repo.git({"fetch", "-q", "--upload-pack", "git-upload-pack", "--filter=blob:none", "origin"});
    repo.git({"update-ref", "refs/heads/main", origin.head()});
    EXPECT_EQ(guarded().log({}, 9, {}).size(), 2u);
    EXPECT_THROW(guarded().git({"show", origin.head()}), GitError);
    EXPECT_THROW(guarded().git({"log", "-p", origin.head()}), GitError);
    EXPECT_THAT(ran(), IsEmpty());
    EXPECT_THAT(found(), ElementsAre(":remote.origin.uploadpack", ":remote.origin.url"));

    guard->setTrusted([](const auto&) { return true; });
    guarded().git({"show", origin.head()});
    EXPECT_THAT(ran(), ElementsAre("uploadpack")) << "otherwise nothing was shown above";
}

TEST_F(ConfiguredProgramsTest, LogsWaitForNoLookAndFetchNothingBefore)
{
    repo.write("f", "1\n").commit("one").git({"config", "filter.x.clean", "cat"});
    EXPECT_EQ(guarded().log({}, 9, {}).size(), 1u);
    guarded().refs();
    EXPECT_THAT(guard->keptOff(), IsEmpty());
    EXPECT_EQ(guard->before("log", {}).environment, withoutFetching().environment);
    EXPECT_THAT(found(), ElementsAre(":filter.x.clean"));
}

TEST_F(ConfiguredProgramsTest, AllFilesOfTheRepositorysConfigurationCountAndNoneOfTheUsers)
{
    repo.write("f", "1\n").commit("one");
    repo.git({"config", "extensions.worktreeConfig", "true"}).git({"config", "--worktree", "filter.w.clean", "w"});
    repo.git({"config", "include.path", "../included"});
    EXPECT_THAT(found(), ElementsAre(":filter.w.clean"));
    repo.write("included", "[filter \"i\"]\n\tsmudge = i\n");
    EXPECT_THAT(found(), ElementsAre(":filter.i.smudge", ":filter.w.clean"));

    const auto listed = [](std::string_view scope, std::string_view key, std::string_view value) {
        return std::string(scope) + '\0' + std::string(key) + '\n' + std::string(value) + '\0';
    };
    EXPECT_THAT(programsIn(listed("global", "filter.lfs.clean", "git-lfs clean") +
                           listed("local", "filter.lfs.clean", "git-lfs clean")),
                IsEmpty());
    EXPECT_THAT(programsIn(listed("global", "filter.lfs.clean", "git-lfs clean") +
                           listed("local", "filter.lfs.clean", "sh clean")),
                ElementsAre(ConfiguredProgram{{}, "filter.lfs.clean", "sh clean"}));
    for (const ProgramKey& row : programKeys()) {
        std::string key(row.pattern);
        if (const std::size_t star = key.find('*'); star != std::string::npos)
            key.replace(star, 1, key.starts_with("url.") ? "../evil" : "x");
        const std::string setting = listed("local", key, "../evil");
        EXPECT_EQ(programsIn(setting).size(), row.runs == ProgramKey::Runs::withFiles ? 1u : 0u) << key;
        const std::string partial = listed("local", "remote.o.promisor", "true");
        const auto programs = programsIn(setting + partial);
        ASSERT_EQ(programs.size(), 1u) << key;
        EXPECT_EQ(runsWhenFetching(programs[0]), row.runs != ProgramKey::Runs::withFiles) << key;
    }
    for (const char* address : {"https://example.org/a", "git@example.org:a/b", "ssh://example.org/a"})
        EXPECT_THAT(programsIn(listed("local", "remote.o.promisor", "true") + listed("local", "remote.o.url", address)),
                    IsEmpty());
}

} // namespace
} // namespace gitkit

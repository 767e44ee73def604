// SPDX-License-Identifier: GPL-3.0-or-later
// How repositories come to be, and what stays behind where they do not.

#include "GitKit/repository/Cloning.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/PartialClone.h"
#include "GitKit/repository/TreeChanges.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/Progress.h"
#include "tests/support/ProcessesIn.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <random>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

/// Requests a stop as soon as git has received a tenth.
class StopAtATenth : public RunListener {
public:
    void began(Run, const std::vector<std::string>&, const fs::path&) override {}
    void printed(Run, Stream, std::string_view bytes) override
    {
        const auto line = lastProgress(bytes);
        if (line && line->starts_with("Receiving objects:  1"))
            stop.request_stop();
    }
    void ended(Run, const RunEnd&) override {}

    std::stop_source stop;
};

class CloningTest : public testing::Test {
protected:
    CloneRequest request(const std::string& address) const
    {
        return {.address = address, .folder = place / "new/copy"};
    }
    CloneRequest request() const { return request("file://" + origin.path().string()); }
    static std::string printed(const fs::path& folder, const std::vector<std::string>& arguments)
    {
        int status = 0;
        return runPlainGit(folder, arguments, status);
    }
    bool isNothingLeft() const { return fs::is_empty(place.path()); }
    /// A command in place of ssh. `lines` run with the repository's server as $serve.
    RunContext overSsh(const std::string& lines)
    {
        writeFile(tools / "ssh", "serve=\"git upload-pack '" + origin.path().string() + "'\"\n" + lines + "\n");
        return {.environment = {{"GIT_SSH_COMMAND", "sh '" + (tools / "ssh").string() + "'"},
                                {"GIT_SSH_VARIANT", "simple"}}};
    }
    template <typename Run>
    static ErrorKind refusal(Run run)
    {
        try {
            run();
        } catch (const GitError& error) {
            return error.kind();
        }
        ADD_FAILURE() << "it was done";
        return ErrorKind::other;
    }

    TestRepository origin;
    TemporaryFolder place;
    TemporaryFolder tools;
};

TEST_F(CloningTest, BringsWhatWasChosen)
{
    origin.write("a", "1").commit("one").write("a", "2").commit("two").git({"branch", "-q", "topic", "HEAD~1"});
    CloneRequest asked = request();
    asked.branch = "topic";
    EXPECT_EQ(cloneRepository(asked, {}).problem, "");
    EXPECT_EQ(GitRepository::topLevel(asked.folder), asked.folder);
    EXPECT_EQ(readFile(asked.folder / "a"), "1");
    EXPECT_EQ(printed(asked.folder, {"rev-parse", "--abbrev-ref", "@{upstream}"}), "origin/topic\n");

    asked = request();
    asked.folder = place / "newest";
    asked.depth = CloneDepth::newestOnly;
    cloneRepository(asked, {});
    EXPECT_EQ(printed(asked.folder, {"rev-list", "--count", "HEAD"}), "1\n");
    EXPECT_NE(printed(asked.folder, {"branch", "-r"}).find("origin/topic"), std::string::npos) << "all branches";

    asked.folder = place / "partly";
    asked.depth = CloneDepth::filesWhenNeeded;
    origin.git({"config", "uploadpack.allowFilter", "true"});
    cloneRepository(asked, {});
    EXPECT_EQ(printed(asked.folder, {"rev-list", "--count", "HEAD"}), "2\n");
    EXPECT_NE(printed(asked.folder, {"rev-list", "--objects", "--missing=print", "HEAD"}).find('?'), std::string::npos);
}

TEST_F(CloningTest, AFolderThatIsNotEmptyIsNotTouched)
{
    origin.commit("one");
    CloneRequest asked = request();
    fs::create_directories(asked.folder);
    writeFile(asked.folder / "mine", "kept");
    const auto refuses = [&asked] { return refusal([&asked] { cloneRepository(asked, {}); }); };
    EXPECT_EQ(refuses(), ErrorKind::alreadyExists);
    EXPECT_EQ(readFile(asked.folder / "mine"), "kept");
    asked.folder = asked.folder / "mine";
    EXPECT_EQ(refuses(), ErrorKind::alreadyExists);
    asked.folder = asked.folder / "below";
    EXPECT_EQ(refuses(), ErrorKind::other) << "a file cannot hold a folder";
    EXPECT_EQ(readFile(place / "new/copy/mine"), "kept");

    // An empty one is used, and stays when nothing comes.
    asked = request((place / "nowhere").string());
    asked.folder = place / "empty";
    fs::create_directory(asked.folder);
    refusal([&asked] { cloneRepository(asked, {}); });
    EXPECT_TRUE(fs::exists(asked.folder));
    asked.address = request().address;
    cloneRepository(asked, {});
    EXPECT_EQ(GitRepository::topLevel(asked.folder), asked.folder);
}

TEST_F(CloningTest, CancelledAtATenthItLeavesNothingBehind)
{
    std::string noise(40'000, '\0');
    std::mt19937 random(7); // NOLINT(*-msc51-cpp): the same on every run
    for (int file = 0; file < 100; ++file) {
        for (char& byte : noise)
            byte = static_cast<char>(random());
        origin.write("file" + std::to_string(file), noise);
    }
    origin.commit("much");
    const auto listener = std::make_shared<StopAtATenth>();
    RunContext context = overSsh("eval $serve | { dd bs=4096 count=600 2>/dev/null; sleep 60; }");
    context.listener = listener;
    context.stop = listener->stop.get_token();
    EXPECT_THROW(cloneRepository(request("ssh://host/x"), context), RunStopped);
    EXPECT_TRUE(listener->stop.stop_requested());
    EXPECT_TRUE(isNothingLeft()) << "neither the folder nor its parent";
    EXPECT_TRUE(haveAllEndedIn(place.path(), std::chrono::seconds(5)));

    // A folder that was there is git's own to empty.
    const auto again = std::make_shared<StopAtATenth>();
    context.listener = again;
    context.stop = again->stop.get_token();
    CloneRequest asked = request("ssh://host/x");
    fs::create_directories(asked.folder);
    EXPECT_THROW(cloneRepository(asked, context), RunStopped);
    EXPECT_TRUE(fs::exists(asked.folder));
    EXPECT_TRUE(fs::is_empty(asked.folder));
}

TEST_F(CloningTest, CancelledWhenAllHasComeItLeavesNothingBehindEither)
{
    origin.write("a", "1").commit("one");
    fs::create_directories(tools / "template/hooks");
    writeFile(tools / "template/hooks/post-checkout",
              "#!/bin/sh\ntrap '' TERM\necho 'Receiving objects:  10% (1/10), done.' >&2\n"
              "sleep 60\n");
    fs::permissions(tools / "template/hooks/post-checkout", fs::perms::owner_all);
    const auto listener = std::make_shared<StopAtATenth>();
    RunContext context{.listener = listener, .stop = listener->stop.get_token()};
    context.environment = {{"GIT_TEMPLATE_DIR", (tools / "template").string()}};
    EXPECT_THROW(cloneRepository(request(), context), RunStopped);
    EXPECT_TRUE(isNothingLeft());
}

TEST_F(CloningTest, AfterAKillOnlyAFolderThatWeMadeIsRemoved)
{
    origin.commit("one");
    // The fourth field after the name in brackets is the session, which git leads.
    const RunContext context = overSsh("read -r line </proc/$$/stat; set -- ${line##*) }; kill -KILL $4; sleep 5");
    CloneRequest asked = request("ssh://host/x");
    EXPECT_THROW(cloneRepository(asked, context), GitError);
    EXPECT_TRUE(isNothingLeft());

    fs::create_directories(asked.folder);
    EXPECT_THROW(cloneRepository(asked, context), GitError);
    EXPECT_TRUE(fs::exists(asked.folder / ".git")) << "it may hold what somebody has put there";
}

TEST_F(CloningTest, NoAddressRunsACommandOrIsReadAsAnOption)
{
    const std::string witness = (tools / "witness").string();
    for (const std::string& address :
         {"ext::sh -c touch% " + witness, "--upload-pack=touch " + witness,
          "ssh://-oProxyCommand=touch " + witness + "/x", "-u" + witness, std::string("--template=/")})
    {
        EXPECT_THROW(cloneRepository(request(address), {}), GitError) << address;
        EXPECT_FALSE(fs::exists(witness)) << address;
        EXPECT_TRUE(isNothingLeft()) << address;
    }
    CloneRequest asked = request();
    asked.branch = "--upload-pack=touch " + witness;
    EXPECT_THROW(cloneRepository(asked, {}), GitError);
    EXPECT_FALSE(fs::exists(witness));
}

TEST_F(CloningTest, AFailedSubmoduleLeavesTheCloneAndSaysWhatIsMissing)
{
    TestRepository part;
    part.commit("one");
    origin.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", "--", part.path().string(), "lib"})
        .write("a", "1")
        .commit("one");
    CloneRequest asked = request();
    asked.withSubmodules = true;
    fs::rename(part.path() / ".git", part.path() / "gone");
    const Cloned cloned = cloneRepository(asked, {});
    EXPECT_NE(cloned.problem.find("'lib'"), std::string::npos) << cloned.problem;
    EXPECT_EQ(cloned.problem.find("Receiving"), std::string::npos) << "no progress among it";
    EXPECT_EQ(readFile(asked.folder / "a"), "1");
}

TEST_F(CloningTest, APartialCloneReadsWithoutItsRemoteAndDownloadsWhenAsked)
{
    const std::string text(400, 'x');
    origin.write("old", text + "1\n").commit("one").git({"mv", "old", "new"}).write("new", text + "2\n").commit("two");
    origin.write("new", "3").commit("three").git({"config", "uploadpack.allowFilter", "true"});
    CloneRequest asked = request();
    asked.depth = CloneDepth::filesWhenNeeded;
    cloneRepository(asked, {});
    const std::string moved = origin.read({"rev-parse", "HEAD~1"});
    const fs::path away = origin.path().parent_path() / "away";
    const GitRepository plain(asked.folder);
    const GitRepository guarded = plain.in({.guard = std::make_shared<PartialCloneGuard>(nullptr, asked.folder)});

    // With its remote there, reading fetches nothing; without it, the lists are the same.
    const std::string before = printed(asked.folder, {"count-objects", "-v"});
    for (const bool isThere : {true, false}) {
        if (!isThere)
            fs::rename(origin.path(), away);
        const CommitDetail detail = guarded.commitDetail(moved, CommitKind::ordinary);
        ASSERT_EQ(detail.files.size(), 2U) << "the rename needs contents";
        EXPECT_EQ(changedFiles(guarded, {moved + "^", moved}, Renames::paired).size(), 2U);
        EXPECT_EQ(refusal([&] { guarded.commitDiff(moved, detail.files.front()); }), ErrorKind::contentsNotHere);
        EXPECT_EQ(guarded.status().files.size(), 0U);
        EXPECT_EQ(printed(asked.folder, {"count-objects", "-v"}), before);
    }
    EXPECT_THROW(downloadContents(plain, moved), GitError);
    fs::rename(away, origin.path());
    downloadContents(plain, moved);
    fs::rename(origin.path(), away);
    const CommitFile file = guarded.commitDetail(moved, CommitKind::ordinary).files.front();
    EXPECT_FALSE(guarded.commitDiff(moved, file).lines.empty());
}

TEST_F(CloningTest, ANewRepositoryBeginsOnItsBranchAndKeepsWhatIsThere)
{
    createRepository(place / "deep/new", "trunk/one", {});
    EXPECT_EQ(printed(place / "deep/new", {"symbolic-ref", "HEAD"}), "refs/heads/trunk/one\n");
    fs::create_directory(place / "full");
    writeFile(place / "full/mine", "kept");
    createRepository(place / "full", "main", {});
    EXPECT_EQ(printed(place / "full", {"status", "--porcelain"}), "?? mine\n");
    EXPECT_EQ(refusal([this] { createRepository(place / "full", "main", {}); }), ErrorKind::alreadyExists);

    EXPECT_THROW(createRepository(place / "odd/new", "no..branch", {}), GitError);
    EXPECT_FALSE(fs::exists(place / "odd"));

    writeFile(tools / "config", "[init]\n\tdefaultBranch = trunk\n");
    const ScopedVariable config("GIT_CONFIG_GLOBAL", (tools / "config").string());
    EXPECT_EQ(firstBranchName({}), "trunk");
    const ScopedVariable none("GIT_CONFIG_GLOBAL", "/dev/null");
    EXPECT_EQ(firstBranchName({}), "main");
}

TEST(CloneFolder, IsNamedAsGitNamesIt)
{
    for (const auto& [address, name] :
         std::vector<std::pair<std::string, std::string>>{{"https://example.org/ada/engine.git", "engine"},
                                                          {"https://example.org/ada/engine.git/", "engine"},
                                                          {"git@example.org:engine.git", "engine"},
                                                          {"example.org:ada/engine", "engine"},
                                                          {"ssh://git@example.org:2222/~ada/engine", "engine"},
                                                          {"/srv/git/engine/.git", "engine"},
                                                          {"../engine.bundle", "engine"},
                                                          {" https://example.org/a%20b\tc \n", "a%20b c"},
                                                          {"https://example.org/ada/..", ""},
                                                          {"https://", ""},
                                                          {"git@example.org:", ""},
                                                          {"", ""}})
        EXPECT_EQ(folderNameOf(address), name) << address;
}

} // namespace
} // namespace gitkit

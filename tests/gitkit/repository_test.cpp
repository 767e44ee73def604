// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/CommitGraph.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace gitkit {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;
using Strings = std::vector<std::string>;
using Field = HistoryFilter::Field;

Strings subjects(const std::vector<Commit>& commits)
{
    Strings result;
    for (const Commit& commit : commits)
        result.push_back(commit.subject);
    return result;
}

Strings history(const GitRepository& repository, const HistoryScope& scope = {},
                const std::optional<HistoryFilter>& filter = {})
{
    return subjects(repository.log(scope, 100, filter));
}

Strings paths(const RepoStatus& status)
{
    Strings result;
    for (const FileChange& file : status.files)
        result.push_back(file.path);
    return result;
}

Strings labels(const Commit& commit)
{
    Strings result;
    for (const RefLabel& label : commit.refs)
        result.push_back((label.isHead ? "*" : "") + label.name);
    return result;
}

TEST(GitRepository, ReadsAWholeRepository)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").git({"tag", "-a", "v1", "-m", "first release"});
    repo.git({"checkout", "-q", "-b", "side"}).write("b", "1").commit("side work").git({"checkout", "-q", "main"});
    repo.write("a", "2").commit("two").git({"merge", "-q", "--no-ff", "-m", "join", "side"});
    repo.git({"remote", "add", "origin", repo.path().string()}).git({"fetch", "-q", "origin"});
    repo.git({"branch", "-q", "-u", "origin/side", "main"});
    repo.write("a", "3")
        .git({"stash", "push", "-q", "-m", "later"})
        .write("dir/new", "x")
        .write("a", "4")
        .git({"add", "a"});
    repo.write("a", "5");

    const GitRepository repository(GitRepository::topLevel(repo / "dir"));
    EXPECT_EQ(repository.root(), repo.path());
    const RepoStatus status = repository.status();
    EXPECT_EQ(status.branch, "main");
    EXPECT_EQ(status.oid, repo.head());
    EXPECT_EQ(status.upstream, "origin/side");
    const std::vector<FileChange> changes{{"a", {}, 'M', 'M', false}, {"dir/new", {}, '?', '?', false}};
    EXPECT_EQ(status.files, changes);
    EXPECT_EQ(status.warnings, "");

    const auto refs = repository.refs();
    ASSERT_EQ(refs.size(), 5u);
    EXPECT_EQ(refs[0].id(), "refs/heads/main");
    EXPECT_TRUE(refs[0].isHead);
    EXPECT_EQ(refs[0].upstream, "origin/side");
    EXPECT_EQ(refs[0].ahead, 2);
    EXPECT_EQ(refs[4].hash, repo.read({"rev-parse", "v1"}));
    EXPECT_THAT(repository.remotes(), ElementsAre("origin"));
    const auto stashes = repository.stashes();
    ASSERT_EQ(stashes.size(), 1u);
    EXPECT_EQ(stashes[0].ref, "stash@{0}");
    EXPECT_EQ(stashes[0].hash, repo.read({"rev-parse", "stash"}));
    EXPECT_EQ(stashes[0].message, "On main: later");

    const auto commits = repository.log({}, 100, {});
    EXPECT_THAT(subjects(commits), ElementsAre("join", "two", "side work", "one"));
    EXPECT_THAT(labels(commits[0]), UnorderedElementsAre("*main", "origin/main"));
    EXPECT_THAT(labels(commits[3]), ElementsAre("v1"));
    EXPECT_EQ(commits[0].parents, (Strings{commits[1].hash, commits[2].hash}));
    EXPECT_EQ(commits[3].authorName, "Ada");
    EXPECT_EQ(commits[3].date, Date{std::chrono::seconds{1'600'000'060}});
    EXPECT_EQ(CommitGraph::layout(commits).laneCount, 2);
    EXPECT_EQ(repository.log({}, 2, {}).size(), 2u);
    EXPECT_THAT(history(repository, HistoryScope::of("refs/heads/side")), ElementsAre("side work", "one"));
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(position(repository, {}, commits[static_cast<std::size_t>(row)].hash), row);
    EXPECT_EQ(position(repository, HistoryScope::of("refs/heads/side"), commits[3].hash), 1);
    EXPECT_EQ(position(repository, HistoryScope::of("refs/heads/side"), commits[0].hash), std::nullopt);
    EXPECT_EQ(repository.commitMessage(refs[4].hash), "one");
    EXPECT_EQ(repository.git({"rev-parse", "HEAD"}), repo.head() + "\n");
}

TEST(GitRepository, SearchesTextAsTextAndPathsAsPatterns)
{
    TestRepository repo;
    repo.write("Docs/guide.md", "1").commit("Fix [a-z]* in --all of it");
    repo.write("src/main.c", "1")
        .commit("fix abc")
        .git({"commit", "-q", "--allow-empty", "--author=Eve <eve@x>", "-m", "by eve"});
    const GitRepository repository = repo.repository();
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::message, "FIX [A-Z]*"}),
                ElementsAre("Fix [a-z]* in --all of it"));
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::message, "--all"}),
                ElementsAre("Fix [a-z]* in --all of it"));
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::author, "EVE@"}), ElementsAre("by eve"));
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::path, "docs/*.MD"}),
                ElementsAre("Fix [a-z]* in --all of it"));
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::path, ""}), testing::SizeIs(3));
    EXPECT_THAT(history(repository, {}, HistoryFilter{Field::message, "nowhere"}), IsEmpty());
}

TEST(GitRepository, KeepsEveryBytesOfNames)
{
    const Strings names{"*",       "-f",       ":!a",  "[ab]", "line\nfeed", "Latin-1 \xE4", "quote\"\\tab\t",
                        " blank ", "\x1e\x1f", "new\n"};
    TestRepository repo;
    repo.commit("root");
    for (const std::string& name : names)
        repo.write(name, "1");
    EXPECT_THAT(paths(repo.repository().status()), testing::UnorderedElementsAreArray(names));
    repo.commit("all").git({"mv", "Latin-1 \xE4", "Latin-1 \xF6"});
    const RepoStatus status = repo.repository().status();
    ASSERT_EQ(status.files.size(), 1u);
    EXPECT_EQ(status.files[0].path, "Latin-1 \xF6");
    EXPECT_EQ(status.files[0].originalPath, "Latin-1 \xE4");

    const std::string head = repo.head();
    for (const char* name :
         {"refs/heads/\xE4", "refs/heads/a,b", "refs/tags/-f", "refs/heads/refs/heads/main", "refs/tags/main"})
        repo.git({"update-ref", name, head});
    const auto commits = repo.repository().log(HistoryScope::of("refs/heads/\xE4"), 9, {});
    ASSERT_EQ(commits.size(), 2u);
    EXPECT_THAT(labels(commits[0]), UnorderedElementsAre("*main", "\xE4", "a,b", "-f", "refs/heads/main", "main"));
    EXPECT_EQ(repo.repository().refs().size(), 6u);
    EXPECT_THROW(repo.repository().log(HistoryScope::of("--all"), 9, {}), GitError);
}

TEST(GitRepository, LetsNoTextMakeACommit)
{
    TestRepository repo;
    repo.commit("root");
    const std::string fake = "\x1e" + std::string(40, 'f') +
                             "\x1f\x1fMallory\x1fm@x\x1f"
                             "1\x1fHEAD -> refs/heads/main\x1f"
                             "forged\x1e";
    repo.commit("honest" + fake + "\n\nbody" + fake);
    const std::string tree = repo.read({"rev-parse", "HEAD^{tree}"});
    const std::string odd =
        repo.storeCommit("tree " + tree + "\nparent " + repo.head() +
                         "\nauthor A\x1f"
                         "da\x1f <a\x1e> 5 +0000\ncommitter \xC4 <> x\nencoding ISO-8859-1\n\nsm\xF6rg\xE5s\n");
    const std::string broken =
        repo.storeCommit("tree " + tree + "\nparent " + odd + "\nauthor\ncommitter\n\n\xFF raw\rbytes");
    repo.git({"update-ref", "refs/heads/main", broken});
    const auto commits = repo.repository().log({}, 100, {});
    ASSERT_EQ(commits.size(), 4u);
    EXPECT_EQ(commits[0].subject, "\xEF\xBF\xBD raw\rbytes");
    EXPECT_EQ(commits[0].date, Date{});
    EXPECT_EQ(commits[1].subject, "sm\xC3\xB6rg\xC3\xA5s");
    EXPECT_EQ(commits[1].authorName, "A\x1f"
                                     "da\x1f");
    EXPECT_THAT(commits[1].refs, IsEmpty());
    EXPECT_TRUE(commits[2].subject.starts_with("honest\x1e"));
    EXPECT_EQ(commits[3].subject, "root");
}

TEST(GitRepository, SaysWhereTheFilesAreWhenTheyAreElsewhere)
{
    TestRepository repo;
    TemporaryFolder elsewhere;
    repo.commit("one").git({"config", "core.worktree", elsewhere.path().string()});
    try {
        GitRepository::topLevel(repo.path());
        ADD_FAILURE() << "opened a folder where git finds no repository";
    } catch (const GitError& error) {
        EXPECT_THAT(error.message(), testing::HasSubstr(elsewhere.path().string()));
    }
}

TEST(GitRepository, HidesNoBranchThatCannotBeReadAndNamesTheCurrentOne)
{
    TestRepository repo;
    repo.commit("one").git({"branch", "good"});
    writeFile(repo / ".git/refs/heads/empty", "");
    std::string names;
    for (const GitRef& ref : repo.repository().refs())
        names += ref.name + (ref.hash.empty() ? "! " : " ");
    EXPECT_EQ(names, "empty! good main ");
    writeFile(repo / ".git/HEAD", "ref: refs/heads/empty\n");
    try {
        repo.repository().status();
        ADD_FAILURE() << "shown as a branch without commits";
    } catch (const GitError& error) {
        EXPECT_THAT(error.message(), testing::HasSubstr("“refs/heads/empty”"));
    }
}

TEST(GitRepository, OrdersRefsByVersionWithTheNewestTagFirst)
{
    TestRepository repo;
    repo.commit("one");
    for (const char* name : {"v2.4.2", "v2.4.10", "v2.4", "v2.4-rc1", "v10.0"})
        repo.git({"tag", name});
    for (const char* name : {"fix-10", "fix-9", "Fix-8"})
        repo.git({"branch", name});
    Strings names;
    for (const GitRef& ref : repo.repository().refs())
        names.push_back(ref.name);
    EXPECT_THAT(names,
                ElementsAre("Fix-8", "fix-9", "fix-10", "main", "v10.0", "v2.4.10", "v2.4.2", "v2.4", "v2.4-rc1"));
}

TEST(GitRepository, ShowsAllHistoryOnABranchWithoutCommits)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    EXPECT_FALSE(repository.status().hasCommits());
    EXPECT_EQ(repository.status().branch, "main");
    EXPECT_THAT(history(repository), IsEmpty());
    EXPECT_THAT(repository.refs(), IsEmpty());
    EXPECT_THAT(repository.stashes(), IsEmpty());
    repo.commit("one").git({"checkout", "-q", "--orphan", "fresh"});
    EXPECT_EQ(repository.status().branch, "fresh");
    EXPECT_THAT(history(repository), ElementsAre("one"));
    repo.git({"checkout", "-q", "--detach", "main"}).commit("loose");
    EXPECT_TRUE(repository.status().isDetached());
    EXPECT_THAT(history(repository), ElementsAre("loose", "one"));
    EXPECT_EQ(repository.log({}, 1, {})[0].refs[0].kind, RefLabel::Kind::head);
}

TEST(GitRepository, FailsWhereItCannotRead)
{
    TestRepository repo;
    repo.commit("one").git({"branch", "other"});
    const GitRepository repository = repo.repository();
    writeFile(repo / ".git/refs/heads/lost", std::string(40, '1') + "\n");
    EXPECT_THROW(history(repository), GitError);
    std::filesystem::remove(repo / ".git/refs/heads/lost");

    writeFile(repo / ".git/refs/heads/main", "");
    EXPECT_THROW(repository.status(), GitError);
    EXPECT_THROW(history(repository), GitError);
    repo.git({"symbolic-ref", "HEAD", "refs/heads/(unknown)"});
    EXPECT_EQ(repository.status().branch, "(unknown)");
    repo.git({"symbolic-ref", "HEAD", "refs/heads/other"});
    EXPECT_TRUE(repository.status().hasCommits());

    writeFile(repo / ".git/index", "no index");
    EXPECT_THROW(repository.status(), GitError);
    const TemporaryFolder outside;
    EXPECT_THROW(GitRepository::topLevel(outside.path()), GitError);
    EXPECT_THROW(GitRepository::topLevel(outside / "gone"), LaunchError);
    EXPECT_THROW(GitRepository::topLevel(repo / ".git"), GitError);
    EXPECT_THROW(GitRepository(outside / "gone").status(), LaunchError);
}

TEST(GitRepository, NeverTakesTheRepositoryAroundItsOwn)
{
    for (const char* name : {"inner", "with:colon/inner"}) {
        TestRepository outer;
        outer.write("o", "1").commit("outer").write("o", "2").write(std::string(name) + "/f", "1");
        int status = 0;
        runPlainGit(outer / name, {"init", "-q"}, status);
        const GitRepository inner(GitRepository::topLevel(outer / name));
        EXPECT_EQ(inner.status().files.size(), 1U);
        std::filesystem::rename(outer / (std::string(name) + "/.git"), outer / "moved");
        for (const auto& change : std::vector<std::function<void()>>{[&] { inner.status(); }, [&] { inner.stageAll(); },
                                                                     [&] { inner.commit("mine", CommitMode::create); }})
        {
            try {
                change();
                ADD_FAILURE() << name;
            } catch (const GitError& error) {
                EXPECT_EQ(error.kind(), ErrorKind::notARepository) << error.what();
            }
        }
        EXPECT_EQ(outer.read({"log", "--format=%s"}), "outer");
        EXPECT_EQ(outer.read({"diff", "--cached", "--name-only"}), "");
    }
}

TEST(GitRepository, KeepsWhatGitComplainsOfWhileItSucceeds)
{
    TestRepository repo;
    repo.write("dir/a", "1").commit("one");
    std::filesystem::create_symlink(".gitignore", repo / "dir/.gitignore");
    EXPECT_THAT(repo.repository().status().warnings, testing::HasSubstr("dir/.gitignore"));
}

TEST(GitRepository, ReadsLongHashesAndManyParents)
{
    TestRepository repo({"--object-format=sha256"});
    repo.write("a", "1").commit("root");
    Strings arguments{"commit-tree", "-m", "octopus", "HEAD^{tree}"};
    for (int index = 0; index < 40; ++index) {
        const std::string parent = repo.read({"commit-tree", "-m", std::to_string(index), "-p", "HEAD", "HEAD^{tree}"});
        arguments.insert(arguments.end(), {"-p", parent});
    }
    repo.git({"reset", "-q", "--hard", repo.read(arguments)}).write("a", "2").git({"stash", "-q"});
    const GitRepository repository = repo.repository();
    const auto commits = repository.log({}, 100, {});
    ASSERT_EQ(commits.size(), 42u);
    EXPECT_EQ(commits[0].hash.size(), 64u);
    EXPECT_EQ(commits[0].parents.size(), 40u);
    EXPECT_EQ(CommitGraph::layout(commits).laneCount, 40);
    EXPECT_EQ(repository.status().oid, commits[0].hash);
    EXPECT_EQ(repository.stashes()[0].hash.size(), 64u);
}

TEST(GitRepository, KnowsItsGitDirectories)
{
    TestRepository library;
    library.write("l", "1").commit("library");
    TestRepository repo;
    repo.write("a", "1").commit("one");
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), "module"})
        .commit("two");
    const TemporaryFolder elsewhere;
    const auto linked = elsewhere / "linked\ntree";
    repo.git({"worktree", "add", "-q", linked.string(), "-b", "linked"});

    const auto expectDirectories = [](const std::filesystem::path& root, const std::filesystem::path& own,
                                      const std::filesystem::path& common) {
        EXPECT_EQ(GitRepository::topLevel(root), root);
        const auto found = gitDirectories(GitRepository(root));
        EXPECT_EQ(found.own, own);
        EXPECT_EQ(found.common, common);
    };
    expectDirectories(repo.path(), repo / ".git", repo / ".git");
    expectDirectories(repo / "module", repo / ".git/modules/module", repo / ".git/modules/module");
    const auto own = std::filesystem::directory_iterator(repo / ".git/worktrees")->path();
    expectDirectories(linked, own, repo / ".git");
    EXPECT_EQ(GitRepository(linked).status().branch, "linked");
}

TEST(GitRepository, KnowsWhichFoldersAreIgnored)
{
    TestRepository library;
    library.write("l", "1").commit("library");
    TestRepository repo;
    repo.write(".gitignore", "build/\n*.o\nout/*\n!out/keep\n/deep/nested/\n").write("src/.gitignore", "vendor\n");
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), "module"})
        .commit("one");
    // Holding nothing but ignored files does not make a folder ignored: the next file in it may be no such file.
    repo.write("objects/a.o", "").write("out/z", "").write("build/sub/x", "").write("deep/nested/q/x", "");
    repo.write("src/vendor/x", "").write("src/\xE4/build/\nx", "").write("module/build/x", "").write("new/x", "");
    repo.git({"init", "-q", (repo / "build/repo").string()}).git({"init", "-q", (repo / "nested").string()});
    const GitRepository repository = repo.repository();
    EXPECT_THAT(ignoredFolders(repository),
                UnorderedElementsAre("build", "deep/nested", "src/vendor", "src/\xE4/build"));
    EXPECT_THAT(
        ignoredAmong(repository, {"src", "module/build", "build/sub", "", "module", "out", "module/x", "build/\n"}),
        UnorderedElementsAre("build/sub", "build/\n"));
    EXPECT_THAT(ignoredAmong(repository, {"src", "new"}), IsEmpty());
    EXPECT_THAT(ignoredAmong(repository, {}), IsEmpty());
}

} // namespace
} // namespace gitkit

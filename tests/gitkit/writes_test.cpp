// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/PartialPatch.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/Picking.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <functional>
#include <future>
#include <memory>

namespace gitkit {
namespace {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using Strings = std::vector<std::string>;
using After = AfterCreating;
using Mode = CommitMode;
using Untracked = UntrackedFiles;
using Use = StashUse;

/// What the operation fails with, empty when it does not.
template <typename Operation>
std::string failure(const Operation& operation)
{
    try {
        operation();
    } catch (const GitError& error) {
        return error.what();
    }
    return {};
}

FileChange changeOf(const TestRepository& repo, std::string_view path)
{
    for (const FileChange& file : repo.repository().status().files) {
        if (file.path == path)
            return file;
    }
    ADD_FAILURE() << path << " is not changed";
    return {};
}

/// The letters of every changed file, as "MM a".
Strings letters(const TestRepository& repo)
{
    Strings result;
    for (const FileChange& file : repo.repository().status().files)
        result.push_back(std::string{file.index, file.worktree, ' '} + file.path);
    return result;
}

std::string branch(const TestRepository& repo) { return repo.read({"symbolic-ref", "-q", "HEAD"}); }

void writeHook(const TestRepository& repo, std::string_view name, const std::string& script)
{
    const auto file = repo / (".git/hooks/" + std::string(name));
    writeFile(file, "#!/bin/sh\n" + script);
    std::filesystem::permissions(file, std::filesystem::perms::owner_all);
}

/// main and topic have changed the same line.
struct ConflictRepository : TestRepository {
    ConflictRepository()
    {
        write("a", "1\n").write("b", "1\n").commit("one").git({"branch", "topic"});
        write("a", "2\n").commit("two").git({"checkout", "-q", "topic"});
        write("a", "3\n").commit("three").git({"checkout", "-q", "main"});
    }
};

struct RemoteRepository : TestRepository {
    RemoteRepository()
    {
        git({"init", "-q", "--bare", "-b", "main", bare.path().string()});
        write("a", "1\n").commit("one").git({"remote", "add", "origin", bare.path().string()});
        git({"push", "-q", "-u", "origin", "main"});
    }

    std::string atRemote(const std::string& ref) const
    {
        int status = 0;
        const std::string hash = runPlainGit(bare.path(), {"rev-parse", "-q", "--verify", ref}, status);
        return hash.substr(0, hash.find('\n'));
    }

    TemporaryFolder bare;
};

TEST(Staging, TakesNamesAsTheyAreAndOnlyWhatTheSideKnows)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    for (const char* name : {"*", "[ab]", ":!a", ":x", "-A", "a", "\xE4"})
        repo.write(name, "1\n");
    const auto staged = [&] { return repo.read({"ls-files", "-z"}); };
    for (const char* name : {"*", "[ab]", ":!a", ":x", "-A", "\xE4"}) {
        repository.stage({changeOf(repo, name)});
        EXPECT_EQ(staged(), std::string(name) + std::string(1, 0)) << name;
        repository.unstage({changeOf(repo, name)}); // without any commit yet
        EXPECT_EQ(repo.read({"ls-files"}), "") << name;
    }
    repo.write("moved", "1\n2\n3\n4\n").write("gone", "x\n").commit("one");
    repo.git({"mv", "moved", "moved here"}).git({"rm", "-q", "gone"}).write("moved here", "1\n2\n3\n4\n5\n");
    repo.write("a", "2\n");
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("RM moved here", "D. gone", ".M a"));
    repository.stage(repository.status().files);
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("R. moved here", "D. gone", "M. a"));
    repository.unstage({changeOf(repo, "moved here"), changeOf(repo, "gone")});
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("M. a", ".D moved", "?? moved here", ".D gone"));
    repository.stage({});
    EXPECT_THAT(letters(repo), testing::Contains("?? moved here"));

    repo.git({"add", "-N", "moved here"});
    EXPECT_THAT(letters(repo), testing::Contains(".R moved here"));
    repository.stage({changeOf(repo, "moved here")});
    EXPECT_THAT(letters(repo), testing::Contains("R. moved here"));

    repository.stageAll();
    EXPECT_THAT(letters(repo), Not(testing::Contains(".D gone")));
    const FileChange stale{.path = "never there", .originalPath = {}, .index = '?', .worktree = '?'};
    repo.write("a", "3\n");
    EXPECT_THAT(failure([&] { repository.stage({changeOf(repo, "a"), stale}); }), HasSubstr("never there"));
    EXPECT_THAT(letters(repo), testing::Contains("MM a")) << "all or nothing";
}

// A path means one file, and not what is in a folder that has the name of a deleted file.
TEST(Staging, LeavesAloneWhatIsInAFolderOfTheSameName)
{
    TestRepository repo;
    repo.write("a", "1\n").write("other", "1\n").commit("one").remove("a").write("a/b", "2\n").write("a/c", "3\n");
    const GitRepository repository = repo.repository();
    repository.stage({changeOf(repo, "a")});
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("D. a", "?? a/b", "?? a/c"));
    repository.stage({changeOf(repo, "a/b")});
    EXPECT_THAT(failure([&] { repository.unstage({changeOf(repo, "a")}); }), HasSubstr("because “a/b” is staged"));
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("D. a", "A. a/b", "?? a/c"));
    for (const DiffSection& section : repository.workingDiff(changeOf(repo, "a")))
        EXPECT_EQ(section.diff.additions, 0) << "the diff of a deleted file shows no other file";
    repository.unstage({changeOf(repo, "a"), changeOf(repo, "a/b")});
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre(".D a", "?? a/b", "?? a/c"));
    // The other way round, and behind a link.
    repo.git({"reset", "-q", "--hard"}).write("d/x", "1\n").write("e/y", "1\n").commit("two");
    repo.remove("d").write("d", "file\n").remove("e");
    std::filesystem::create_directory_symlink("real", repo / "e");
    repo.write("real/y", "2\n");
    repository.stage({changeOf(repo, "d/x"), changeOf(repo, "e/y"), changeOf(repo, "d")});
    EXPECT_THAT(letters(repo), testing::IsSupersetOf(Strings{"D. d/x", "A. d", "D. e/y", "?? e", "?? real/y"}));
}

TEST(Staging, TakesTrackedFilesOfIgnoredFoldersAndNoRepositories)
{
    TestRepository repo;
    repo.write("build/kept", "1\n").git({"add", "."}).write(".gitignore", "build/\n").commit("one");
    repo.write("build/kept", "2\n").write("a", "1\n");
    const GitRepository repository = repo.repository();
    repository.stage(repository.status().files);
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("A. a", "M. build/kept"));

    repo.git({"init", "-q", (repo / "inner").string()}).write("inner/f", "1").write("b", "1");
    int status = 0;
    runPlainGit(repo / "inner", {"add", "f"}, status);
    runPlainGit(repo / "inner", {"commit", "-q", "-m", "inner"}, status);
    for (const std::function<void()>& stage : std::vector<std::function<void()>>{
             [&] { repository.stage({changeOf(repo, "inner/")}); }, [&] { repository.stageAll(); }})
    {
        EXPECT_THAT(failure(stage), HasSubstr("“inner” is a repository of its own"));
        EXPECT_THAT(letters(repo), testing::Contains("?? inner/"));
    }
    EXPECT_THAT(letters(repo), testing::Contains("A. b")) << "everything else is staged";
}

TEST(Staging, SaysThatASubmoduleHasNothingToStage)
{
    TestRepository library;
    library.write("l", "1").commit("library");
    TestRepository repo;
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), "lib"});
    repo.commit("one").write("lib/l", "edited").write("a", "1");
    const GitRepository repository = repo.repository();
    const FileChange lib = changeOf(repo, "lib");
    EXPECT_THAT(failure([&] { repository.stage({lib}); }), HasSubstr("“lib” is a submodule whose own files"));
    const ParsedDiff diff = repository.workingDiff(lib).at(0).diff;
    const auto change = partialChange("lib", diff, {1, 2}, PatchDirection::forward);
    EXPECT_THAT(failure([&] { repository.applyToIndex(change.value()); }), HasSubstr("“lib” is a submodule"));
    EXPECT_EQ(failure([&] { repository.stage(repository.status().files); }), "") << "the others are staged";
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("A. a", ".M lib"));
    repo.git({"-C", "lib", "commit", "-q", "-a", "-m", "more"});
    repository.stage({changeOf(repo, "lib")});
    EXPECT_THAT(letters(repo), testing::UnorderedElementsAre("A. a", "M. lib"));
}

TEST(Staging, SendsLongListsWhole)
{
    TestRepository repo;
    for (int number = 0; number < 1200; ++number)
        repo.write(std::string(200, 'n') + std::to_string(number), "1");
    repo.write("*", "1").write("left", "1");
    const GitRepository repository = repo.repository();
    std::vector<FileChange> files = repository.status().files;
    std::erase_if(files, [](const FileChange& file) { return file.path == "left"; });
    repository.stage(files);
    EXPECT_EQ(std::ranges::count_if(repository.status().files, &FileChange::hasStaged), 1201);
    EXPECT_EQ(changeOf(repo, "left").index, '?');
    repository.unstage(repository.status().files);
    EXPECT_EQ(repo.read({"ls-files"}), "");
}

TEST(Staging, KeepsAnOperationInProgressAndSoDoesLeaving)
{
    ConflictRepository repo;
    const GitRepository repository = repo.repository();
    EXPECT_THAT(failure([&] { repository.merge("refs/heads/topic"); }), HasSubstr("CONFLICT (content)"));
    repo.write("b", "2\n").git({"add", "b"});
    repository.unstageAll();
    EXPECT_TRUE(changeOf(repo, "a").isConflicted);
    EXPECT_EQ(changeOf(repo, "b").index, '.');
    repo.write("a", "4\n").git({"add", "a"});
    repository.unstageAll();
    EXPECT_THAT(letters(repo), ElementsAre(".M a", ".M b"));
    repository.stageAll();
    for (const std::function<void()>& leaving :
         std::vector<std::function<void()>>{[&] { repository.checkout("refs/heads/main"); },
                                            [&] { repository.createBranch("new", std::nullopt, After::checkOut); },
                                            [&] { repository.stashSave("", Untracked::leave); }})
        EXPECT_THAT(failure(leaving), HasSubstr("is in progress, and this would end it"));
    repository.commit("merged", Mode::create);
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^2"}), repo.read({"rev-parse", "topic"}));
}

TEST(Committing, RecordsWhatWasTyped)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    writeFile(repo / ".git/template", "#12 fix\n\n");
    for (const char* setting :
         {"commit.template=.git/template", "commit.verbose=true", "commit.status=true", "commit.cleanup=scissors"})
    {
        const std::string text(setting);
        const std::size_t middle = text.find('=');
        repo.git({"config", text.substr(0, middle), text.substr(middle + 1)});
    }
    repo.write("a", "1\n").git({"add", "a"});
    const auto recorded = [&] { return repo.read({"cat-file", "commit", "HEAD"}); };
    const Strings messages{"-F\n\nsecond paragraph\n", "#12 fix\n\n# a heading\n", "#12 fix\n\n",
                           "   indented\n\n\n\n\ttext  \n  \n\n",
                           "; \xC3\xA4\n# ------------------------ >8 ------------------------\nafter\n"};
    for (const std::string& message : messages) {
        repository.commit(message, Mode::create);
        EXPECT_EQ(repository.lastCommitMessage(), message);
        EXPECT_TRUE((recorded() + "\n").ends_with("\n\n" + message)) << message;
        const std::string before = recorded();
        repository.commit(repository.lastCommitMessage(), Mode::amend);
        EXPECT_EQ(before.substr(before.find("\n\n")), recorded().substr(recorded().find("\n\n")));
        repo.write("a", message).git({"add", "a"});
    }
    repository.commit("no line end", Mode::create);
    EXPECT_EQ(repository.lastCommitMessage(), "no line end\n");

    const std::string people = "author Ada <a@b> 1600000000 +0000\ncommitter Ada <a@b> 1600000000 +0000\n";
    const std::string start = "tree " + repo.read({"rev-parse", "HEAD^{tree}"}) + "\n" + people;
    repo.git({"update-ref", "HEAD", repo.storeCommit(start + "\nopen end")});
    repository.commit(repository.lastCommitMessage(), Mode::amend);
    EXPECT_EQ(repository.lastCommitMessage(), "open end");
    repo.git({"update-ref", "HEAD", repo.storeCommit(start + "encoding ISO-8859-1\n\nf\xFCr\n")});
    repository.commit(repository.lastCommitMessage(), Mode::amend);
    EXPECT_EQ(repository.lastCommitMessage(), "f\xC3\xBCr\n");
    EXPECT_THAT(recorded(), Not(HasSubstr("encoding")));
    EXPECT_NE(failure([&] { repository.commit(" \n", Mode::create); }), "");
}

TEST(Committing, TellsWhatAHookSaysAndWaitsForNobody)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    repo.write("a", "1\n").git({"add", "a"});
    EXPECT_THAT(failure([&] { repo.repository().createTag("v", "HEAD"); }), HasSubstr("HEAD"));
    writeHook(repo, "pre-commit", "echo first line; read answer || echo no answer; echo third line >&2; exit 1\n");
    EXPECT_EQ(failure([&] { repository.commit("one", Mode::create); }), "first line\nno answer\nthird line");
    writeHook(repo, "pre-commit", "exit 1\n");
    EXPECT_EQ(failure([&] { repository.commit("one", Mode::create); }), "git commit failed (exit code 1)");

    const std::string pid = (repo / ".git/pid").string();
    writeHook(repo, "pre-commit", "sleep 600 & echo $! >'" + pid + "'\n");
    repository.commit("one", Mode::create);
    EXPECT_EQ(::kill(std::stoi(readFile(pid)), SIGKILL), 0) << "the commit waited for the hook's child";
    writeHook(repo, "pre-commit", "exit 0\n");
    EXPECT_THAT(failure([&] { repository.commit("two", Mode::create); }), HasSubstr("nothing to commit"));
}

TEST(Branches, UseTheRefThatWasMeant)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    repo.write("a", "1\n").commit("one").git({"tag", "x"}).git({"update-ref", "refs/tags/-f", "HEAD"});
    const std::string one = repo.head();
    repo.write("a", "2\n").commit("two").git({"branch", "x"}).write("b", "1\n").commit("three");
    const std::string two = repo.read({"rev-parse", "refs/heads/x"});
    for (const char* name : {"refs/heads/-f", "refs/heads/@", "refs/heads/--abort"})
        repo.git({"update-ref", name, two});

    repo.write("c", "kept");
    for (const char* name : {"refs/heads/x", "refs/heads/-f", "refs/heads/@", "refs/heads/main"}) {
        repository.checkout(name);
        EXPECT_EQ(branch(repo), name);
        EXPECT_THAT(letters(repo), ElementsAre("?? c")) << name;
    }
    for (const char* name : {"refs/tags/x", "refs/tags/-f", one.c_str()}) {
        repository.checkout(name);
        EXPECT_EQ(repository.status().branch, std::nullopt);
        EXPECT_EQ(repo.head(), one) << name;
    }
    for (const char* name : {"-f", "--detach", "x", ""})
        EXPECT_THAT(failure([&] { repository.checkout(name); }), HasSubstr("neither the full name")) << name;
    repo.git({"branch", "-D", "x"});
    EXPECT_EQ(failure([&] { repository.checkout("refs/heads/x"); }), "There is no branch “x”.") << "and not the tag";
    repo.git({"branch", "x", two});

    repository.createBranch("from-branch", "refs/heads/x", After::checkOut);
    EXPECT_EQ(branch(repo), "refs/heads/from-branch");
    EXPECT_EQ(repo.head(), two);
    repository.createBranch("from-tag", "refs/tags/x", After::stay);
    EXPECT_EQ(repo.read({"rev-parse", "from-tag"}), one);
    repository.createTag("on-branch", "refs/heads/x");
    EXPECT_EQ(repo.read({"rev-parse", "on-branch"}), two);
    for (const char* name : {"-f", "-D", "", "@{-1}", "@"}) {
        EXPECT_NE(failure([&] { repository.createBranch(name, {}, After::stay); }), "") << name;
        EXPECT_NE(failure([&] { repository.createBranch(name, one, After::checkOut); }), "") << name;
        EXPECT_NE(failure([&] { repository.createTag(name, one); }), "") << name;
    }

    repository.checkout("refs/heads/main");
    const std::string tip = repo.head();
    repository.createBranch("unmerged", {}, After::checkOut);
    repo.write("d", "1").commit("four");
    repository.checkout("refs/heads/main");
    EXPECT_THAT(failure([&] { repository.deleteBranch("unmerged", Deletion::ifMerged); }),
                HasSubstr("not fully merged"));
    repository.deleteBranch("unmerged", Deletion::force);
    repository.deleteBranch("-f", Deletion::ifMerged);
    repository.deleteBranch("x", Deletion::ifMerged);
    repository.deleteTag("-f");
    repository.deleteTag("on-branch");
    EXPECT_EQ(repo.read({"for-each-ref", "--format=%(refname)"}),
              "refs/heads/--abort\nrefs/heads/@\nrefs/heads/from-branch\nrefs/heads/from-tag\n"
              "refs/heads/main\nrefs/tags/x");
    EXPECT_EQ(repo.head(), tip);
}

TEST(Branches, AreNotCheckedOutTwice)
{
    TestRepository repo;
    TemporaryFolder other;
    repo.write("a", "1\n").commit("one").git({"update-ref", "refs/heads/-b", "HEAD"});
    repo.git({"worktree", "add", "-q", "--detach", (other / "tree").string()});
    repo.git({"-C", (other / "tree").string(), "symbolic-ref", "HEAD", "refs/heads/-b"});
    EXPECT_THAT(failure([&] { repo.repository().checkout("refs/heads/-b"); }), HasSubstr("already checked out"));
    EXPECT_EQ(branch(repo), "refs/heads/main");
}

TEST(Merging, TakesTheBranchAndTellsOfConflicts)
{
    ConflictRepository repo;
    const GitRepository repository = repo.repository();
    const std::string topic = repo.read({"rev-parse", "topic"});
    repo.git({"branch", "clean", "topic~1"}).git({"checkout", "-q", "clean"}).write("c", "1\n").commit("clean");
    const std::string clean = repo.head();
    repo.git({"update-ref", "refs/heads/@", clean})
        .git({"update-ref", "refs/heads/--abort", clean})
        .git({"tag", "clean", "main"})
        .git({"checkout", "-q", "main"});
    const std::string start = repo.head();
    for (const auto& [ref, message] :
         std::vector<std::pair<std::string, std::string>>{{"refs/heads/--abort", "Merge branch 'refs/heads/--abort'"},
                                                          {"refs/heads/@", "Merge branch 'refs/heads/@'"},
                                                          {"refs/heads/clean", "Merge branch "},
                                                          {clean, "Merge commit '"}})
    {
        repository.merge(ref);
        EXPECT_EQ(repo.read({"rev-parse", "HEAD^2"}), clean) << ref;
        EXPECT_THAT(repository.lastCommitMessage(), HasSubstr(message));
        repo.git({"reset", "-q", "--hard", start});
    }
    repo.git({"tag", "-d", "clean"});
    repository.merge("refs/heads/clean");
    EXPECT_EQ(repository.lastCommitMessage(), "Merge branch 'clean'\n");
    repo.git({"reset", "-q", "--hard", start});

    const auto says = AllOf(HasSubstr("CONFLICT (content): Merge conflict in a"));
    EXPECT_THAT(failure([&] { repository.merge("refs/heads/topic"); }),
                AllOf(says, HasSubstr("Automatic merge failed")));
    repo.git({"merge", "--abort"});
    EXPECT_THAT(failure([&] { gitkit::cherryPick(repository, {{topic}}); }), AllOf(says, HasSubstr("could not apply")));
    repo.git({"cherry-pick", "--abort"});
    repo.write("a", "9\n").commit("nine");
    EXPECT_THAT(failure([&] { gitkit::revert(repository, {{start}}); }), AllOf(says, HasSubstr("could not revert")));
    repo.git({"revert", "--abort"});
    gitkit::cherryPick(repository, {{clean}});
    EXPECT_EQ(repository.lastCommitMessage(), "clean");
    gitkit::revert(repository, {{repo.head()}});
    EXPECT_THAT(repository.lastCommitMessage(), HasSubstr("This reverts commit"));
    EXPECT_NE(failure([&] { gitkit::cherryPick(repository, {{"--abort"}}); }), "");
    EXPECT_NE(failure([&] { gitkit::revert(repository, {{"--skip"}}); }), "");
}

TEST(Stashes, BringBackWhatWasStaged)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    repo.write("a", "1\n").write("b", "1\n").commit("one");
    const auto change = [&] { repo.write("a", "2\n").git({"add", "a"}).write("a", "3\n").write("new", "1\n"); };
    change();
    repository.stashSave("-m and\nmore", Untracked::include);
    EXPECT_THAT(letters(repo), IsEmpty());
    const Stash stash = repository.stashes().at(0);
    EXPECT_THAT(stash.message, HasSubstr("-m and"));
    repository.stashApply(stash, Use::apply);
    EXPECT_THAT(letters(repo), ElementsAre("MM a", "?? new"));
    EXPECT_EQ(repo.read({"show", ":a"}), "2");
    EXPECT_EQ(repository.stashes().size(), 1u);

    // Where the index cannot come back, the files do.
    repo.git({"reset", "-q", "--hard"}).git({"clean", "-fdq"}).write("b", "2\n").git({"add", "b"});
    repo.write("a", "3\n").commit("as stashed");
    repository.stashApply(stash, Use::pop);
    EXPECT_THAT(letters(repo), ElementsAre("?? new"));
    EXPECT_THAT(repository.stashes(), IsEmpty());

    // A merge that only waits for its commit stays one.
    repo.git({"clean", "-fdq"}).git({"checkout", "-q", "-b", "side"}).write("s", "1").commit("side");
    repo.git({"checkout", "-q", "main"}).write("m", "1").commit("main").write("b", "3\n").git({"add", "b"});
    repository.stashSave("", Untracked::leave);
    repo.git({"merge", "-q", "--no-commit", "side"});
    repository.stashApply(repository.stashes().at(0), Use::pop);
    repository.commit("merged", Mode::create);
    EXPECT_NE(repo.read({"rev-parse", "HEAD^2"}), "");

    // A conflict keeps the stash and is told.
    repo.write("b", "4\n");
    repository.stashSave("kept", Untracked::leave);
    repo.write("b", "5\n").commit("five");
    EXPECT_THAT(failure([&] { repository.stashApply(repository.stashes().at(0), Use::pop); }),
                HasSubstr("CONFLICT (content): Merge conflict in b"));
    EXPECT_EQ(repository.stashes().size(), 1u);
}

TEST(Stashes, DeleteNothingThatTheyDoNotKeep)
{
    for (const bool isStaged : {false, true}) {
        TestRepository repo;
        repo.write("a", "1").write("d/x", "1").commit("one").remove("a").write("a/b", "mine");
        std::filesystem::remove_all(repo / "d");
        if (isStaged)
            repo.git({"rm", "-q", "--cached", "a"}).git({"rm", "-q", "-r", "--cached", "d"});
        const GitRepository repository = repo.repository();
        EXPECT_THAT(failure([&] { repository.stashSave("", Untracked::leave); }), HasSubstr("“a/b” would be deleted"));
        repo.git({"add", "a/b"}).write("d", "mine");
        EXPECT_THAT(failure([&] { repository.stashSave("", Untracked::leave); }), HasSubstr("“d” would be deleted"));
        repo.write(".git/info/exclude", "d\n");
        EXPECT_THAT(failure([&] { repository.stashSave("", Untracked::include); }), HasSubstr("“d” would be deleted"));
        EXPECT_EQ(readFile(repo / "d") + readFile(repo / "a/b"), "minemine");
        repo.write(".git/info/exclude", "");
        repository.stashSave("", Untracked::include);
        EXPECT_EQ(readFile(repo / "a"), "1");
        EXPECT_EQ(repo.read({"show", "stash@{0}^3:d"}), "mine");
    }
}

TEST(Writing, OverwritesNoIgnoredFile)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").git({"branch", "ahead"}).git({"branch", "-f", "apart"});
    const auto addOn = [&repo](const char* branch) {
        repo.git({"checkout", "-q", branch}).write("env", "theirs").write("f/env", "theirs").commit("add");
        const std::string added = repo.head();
        repo.git({"checkout", "-q", "main"});
        return added;
    };
    const std::string ahead = addOn("ahead");
    repo.git({"checkout", "-q", "-b", "removed", "ahead"}).git({"rm", "-q", "-r", "env", "f"}).commit("remove");
    const std::string removal = repo.head();
    repo.git({"checkout", "-q", "main"}).write("env", "theirs").git({"add", "env"}).git({"stash", "-q"});
    const std::string main = repo.head();
    const GitRepository repository = repo.repository();
    const Stash stash = repository.stashes().at(0);
    repo.write(".git/info/exclude", "env\nf\n").write("env", "mine").write("f", "mine");
    const std::vector<std::function<void()>> writes{
        [&] { repository.checkout("refs/heads/ahead"); },
        [&] { repository.checkout(ahead); },
        [&] { repository.createBranch("new", ahead, After::checkOut); },
        [&] { repository.merge("refs/heads/ahead"); },
        [&] { gitkit::cherryPick(repository, {{ahead}}); },
        [&] { gitkit::revert(repository, {{removal}}); },
        [&] { repository.stashApply(stash, Use::pop); },
        [&] { repo.write("b", "1").commit("aside"), repository.merge("refs/heads/ahead"); }};
    for (std::size_t index = 0; index < writes.size(); ++index) {
        EXPECT_THAT(failure(writes[index]), HasSubstr("env")) << index;
        EXPECT_EQ(readFile(repo / "env") + readFile(repo / "f"), "minemine") << index;
        EXPECT_EQ(branch(repo), "refs/heads/main") << index;
    }
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^"}), main);
}

TEST(Stashes, AreFoundByTheirHash)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    repo.write("a", "1\n").commit("one");
    const auto save = [&](const std::string& text) {
        repo.write("a", text);
        repository.stashSave(text, Untracked::leave);
        return repository.stashes().at(0);
    };
    const Stash older = save("older");
    const Stash newer = save("newer");
    repository.stashDrop(older); // stash@{0} when it was listed
    EXPECT_THAT(repository.stashes(), ElementsAre(newer));
    repo.git({"branch", "stash"}); // whose name "stash@{0}" begins with, too
    EXPECT_THAT(failure([&] { repository.stashDrop(older); }), HasSubstr("no longer in the list"));
    EXPECT_THAT(failure([&] { repository.stashApply(older, Use::pop); }), HasSubstr("no longer in the list"));
    save("newest");
    repository.stashApply(newer, Use::pop);
    EXPECT_EQ(readFile(repo / "a"), "newer");
    EXPECT_EQ(repository.stashes().size(), 1u);
}

TEST(Remotes, APushTouchesTheBranchOfThatNameOnly)
{
    RemoteRepository repo;
    const GitRepository repository = repo.repository();
    const std::string one = repo.head();
    for (const char* setting : {"upstream", "matching", "nothing"}) {
        repo.git({"config", "push.default", setting}).git({"checkout", "-q", "-B", "topic", "--track", "origin/main"});
        repo.write("a", setting).commit("two");
        EXPECT_THAT(failure([&] { repository.push("topic", {}); }), HasSubstr("does not match")) << setting;
        EXPECT_EQ(repo.atRemote("refs/heads/main"), one) << setting;
        EXPECT_EQ(repo.atRemote("refs/heads/topic"), "") << setting;
    }
    EXPECT_THAT(failure([&] { repository.push("main", {}); }), HasSubstr("not the current branch"));

    repo.git({"checkout", "-q", "main"}).write("b", "1").commit("unpushed").git({"checkout", "-q", "topic"});
    repository.push("topic", "origin");
    EXPECT_EQ(repo.atRemote("refs/heads/topic"), repo.head());
    repo.write("a", "more").commit("three");
    repository.push("topic", {});
    EXPECT_EQ(repo.atRemote("refs/heads/topic"), repo.head());
    EXPECT_EQ(repo.atRemote("refs/heads/main"), one) << "matching would have pushed it";

    // "+main" is a branch, and nothing is forced.
    repo.git({"checkout", "-q", "-b", "+main", one}).git({"tag", "+main", "topic"});
    repo.git({"commit", "-q", "--amend", "-m", "other"});
    repository.push("+main", "origin");
    EXPECT_EQ(repo.atRemote("refs/heads/+main"), repo.head());
    EXPECT_EQ(repo.atRemote("refs/heads/main"), one);
    EXPECT_EQ(repository.status().upstream, "origin/+main");
    EXPECT_THAT(failure([&] { repository.push("main", "--mirror"); }), HasSubstr("--mirror"));
}

// No setting of the remote or of push adds to what the dialog named.
TEST(Remotes, APushTakesNothingAlongAndSparesMirrors)
{
    RemoteRepository repo;
    const GitRepository repository = repo.repository();
    repo.git({"branch", "secret"}).git({"tag", "-a", "-m", "t", "v1"}).write("a", "2").commit("two");
    repo.git({"config", "--add", "remote.origin.push", "refs/heads/*:refs/heads/*"});
    repo.git({"config", "push.followTags", "true"});
    repository.push("main", {});
    EXPECT_EQ(repo.atRemote("refs/heads/main"), repo.head());
    EXPECT_EQ(repo.atRemote("refs/heads/secret") + repo.atRemote("refs/tags/v1"), "");

    // Pushing elsewhere than one pulls from needs no upstream of the same name.
    repo.git({"remote", "add", "fork", repo.bare.path().string()}).git({"config", "remote.pushDefault", "fork"});
    repo.git({"checkout", "-q", "-b", "fix", "--track", "origin/main"}).write("a", "3").commit("three");
    repository.push("fix", {});
    EXPECT_EQ(repo.atRemote("refs/heads/fix"), repo.head());

    repo.git({"config", "remote.fork.mirror", "true"}).git({"push", "-q", "origin", "fix:colleague"});
    EXPECT_THAT(failure([&] { repository.push("fix", {}); }), HasSubstr("“fork” is set up as a mirror"));
    EXPECT_THAT(failure([&] { repository.push("fix", "fork"); }), HasSubstr("“fork” is set up as a mirror"));
    EXPECT_NE(repo.atRemote("refs/heads/colleague"), "");
}

TEST(Writing, WaitsForALockThatIsHeldForAMoment)
{
    // Ends the other git's work once ours has failed.
    struct Unlocker : RunListener {
        std::filesystem::path lock;
        int failures = 0;

        void began(Run, const std::vector<std::string>&, const std::filesystem::path&) override {}
        void printed(Run, Stream, std::string_view) override {}
        void ended(Run, const RunEnd& end) override
        {
            failures += end.status == 0 ? 0 : 1;
            if (failures == 2)
                std::filesystem::remove(lock);
        }
    };
    TestRepository repo;
    repo.write("a", "1").commit("one");
    const auto unlocker = std::make_shared<Unlocker>();
    unlocker->lock = repo / ".git/index.lock";
    const GitRepository repository = repo.repository().in({.listener = unlocker});
    const std::vector<std::function<void()>> writes{
        [&] { repository.stage({changeOf(repo, "a")}); }, [&] { repository.unstage({changeOf(repo, "a")}); },
        [&] { repository.stageAll(); }, [&] { repository.commit("two", Mode::create); },
        [&] { repository.checkout("refs/heads/other"); }};
    repo.git({"branch", "other"}).write("a", "2");
    for (std::size_t index = 0; index < writes.size(); ++index) {
        writeFile(unlocker->lock, "");
        unlocker->failures = 0;
        EXPECT_EQ(failure(writes[index]), "") << index;
        EXPECT_EQ(unlocker->failures, 2) << index;
    }
    EXPECT_EQ(branch(repo), "refs/heads/other");

    // What cannot be repeated when it fails half-way waits before it begins.
    repo.write("a", "3").git({"stash", "-q"});
    const Stash stash = repository.stashes().front();
    writeFile(unlocker->lock, "");
    const auto duration = [&](const std::function<void()>& write) {
        return std::async(std::launch::async, [write, began = std::chrono::steady_clock::now()] {
            failure(write);
            return std::chrono::steady_clock::now() - began;
        });
    };
    auto merge = duration([&] { repo.repository().merge("refs/heads/main"); });
    auto pull = duration([&] { repo.repository().pull(); });
    auto drop = duration([&] { repo.repository().stashDrop(stash); });
    auto mark = duration([&] { gitkit::mark(repo.repository(), {.good = "good", .bad = "bad"}, BisectMark::good); });
    for (auto* each : {&merge, &pull, &drop, &mark})
        EXPECT_GE(each->get(), std::chrono::milliseconds(500));
}

TEST(Remotes, ABranchTracksOnlyWhenAsked)
{
    RemoteRepository repo;
    const GitRepository repository = repo.repository();
    repo.git({"push", "-q", "origin", "main:feature"}).git({"fetch", "-q"}).git({"branch", "origin/feature", "HEAD"});
    repo.git({"config", "branch.autoSetupMerge", "always"});
    repository.createBranch("plain", "refs/remotes/origin/feature", After::checkOut);
    EXPECT_EQ(repository.status().upstream, std::nullopt);
    repository.createBranch("plain2", "refs/heads/main", After::stay);
    EXPECT_THAT(repo.read({"config", "--get-regexp", "^branch\\..*merge$"}), Not(HasSubstr("plain")));
    // A branch that is gone is not made again from its remote namesake.
    EXPECT_NE(failure([&] { repository.checkout("refs/heads/feature"); }), "");
    repository.checkoutTracking("refs/remotes/origin/feature", "feature");
    EXPECT_EQ(branch(repo), "refs/heads/feature");
    EXPECT_EQ(repo.read({"config", "branch.feature.merge"}), "refs/heads/feature");
    EXPECT_EQ(repo.read({"config", "branch.feature.remote"}), "origin");
    EXPECT_NE(failure([&] { repository.checkoutTracking("refs/remotes/origin/feature", "-f"); }), "");
}

TEST(Remotes, FetchPrunesAndPullAnswersAtOnce)
{
    RemoteRepository repo;
    const GitRepository repository = repo.repository();
    TemporaryFolder other;
    const std::string clone = (other / "clone").string();
    repo.git({"push", "-q", "origin", "main:old"}).git({"clone", "-q", repo.bare.path().string(), clone});
    const auto inClone = [&](Strings arguments) {
        arguments.insert(arguments.begin(), {"-C", clone});
        repo.git(arguments);
    };
    writeFile(other / "clone/a", "theirs\n");
    inClone({"commit", "-q", "-a", "-m", "theirs"});
    inClone({"push", "-q", "origin", "main", ":old"});
    repository.fetch();
    EXPECT_EQ(repo.read({"for-each-ref", "--format=%(refname)", "refs/remotes"}), "refs/remotes/origin/main");
    EXPECT_EQ(repository.refs().front().behind, 1);
    repository.pull();
    EXPECT_EQ(repo.head(), repo.atRemote("refs/heads/main"));

    writeFile(other / "clone/c", "theirs\n");
    inClone({"add", "c"});
    inClone({"commit", "-q", "-m", "more"});
    inClone({"push", "-q"});
    repo.write("b", "1\n").commit("mine").git({"config", "pull.rebase", "interactive"});
    repository.pull();
    EXPECT_EQ(repo.read({"rev-parse", "HEAD^"}), repo.atRemote("refs/heads/main"));

    writeFile(other / "clone/a", "again\n");
    inClone({"commit", "-q", "-a", "-m", "again"});
    inClone({"push", "-q"});
    repo.write("a", "mine\n").commit("mine too").git({"config", "pull.rebase", "false"});
    EXPECT_THAT(failure([&] { repository.pull(); }), HasSubstr("CONFLICT (content): Merge conflict in a"));
}

} // namespace
} // namespace gitkit

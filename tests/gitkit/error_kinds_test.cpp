// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Commits.h"
#include "GitKit/repository/Picking.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitMessages.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

namespace gitkit {

namespace {

using Kind = ErrorKind;

Kind kindOf(const std::function<void()>& work)
{
    try {
        work();
    } catch (const GitError& error) {
        return error.kind();
    }
    throw std::runtime_error("it succeeded");
}

Kind kindOfRun(const std::filesystem::path& folder, const std::vector<std::string>& arguments)
{
    return kindOf([&] { GitRepository(folder).git(arguments); });
}

void writeHook(const std::filesystem::path& gitDirectory, const std::string& name, const std::string& script)
{
    writeFile(gitDirectory / "hooks" / name, "#!/bin/sh\n" + script);
    std::filesystem::permissions(gitDirectory / "hooks" / name, std::filesystem::perms::owner_all);
}

/// Makes branches "main" and "side", which change the same line of "a".
void fork(TestRepository& repo)
{
    repo.write("a", "1\n").commit("one").git({"checkout", "-q", "-b", "side"}).write("a", "2\n").commit("two");
    repo.git({"checkout", "-q", "main"}).write("a", "3\n").commit("three");
}

TEST(ErrorKinds, TellWhyAFolderIsNoWorkingTree)
{
    const TemporaryFolder folder;
    EXPECT_EQ(kindOf([&] { GitRepository::topLevel(folder.path()); }), Kind::notARepository);
    TestRepository repo;
    EXPECT_EQ(kindOf([&] { GitRepository::topLevel(repo / ".git"); }), Kind::bareRepository);
    repo.git({"clone", "-q", "--bare", ".", "bare"});
    EXPECT_EQ(GitRepository::topLevel(repo / "bare/refs"), repo / "bare") << "which is shown as it is";
    writeFile(folder / "link/.git", "gitdir: /nowhere/at/all\n");
    EXPECT_EQ(kindOf([&] { GitRepository::topLevel(folder / "link"); }), Kind::notARepository);
}

TEST(ErrorKinds, TellWhatANameIsNot)
{
    TestRepository repo;
    fork(repo);
    const GitRepository repository = repo.repository();
    repo.git({"tag", "v1"}).git({"checkout", "-q", "--detach"}).git({"worktree", "add", "-q", "../other", "side"});
    for (const char* name : {"nothing", "deadbeef", "HEAD~9", "-f"})
        EXPECT_EQ(kindOf([&] { resolveCommit(repository, name); }), Kind::noSuchRef) << name;
    for (const std::vector<std::string>& command :
         std::vector<std::vector<std::string>>{{"log", "nothing"},
                                               {"log", "nothing", "--"},
                                               {"checkout", "nothing"},
                                               {"checkout", "nothing", "--"},
                                               {"branch", "-d", "nothing"},
                                               {"branch", "new", "nothing"},
                                               {"tag", "-d", "nothing"},
                                               {"tag", "new", "nothing"},
                                               {"merge", "nothing"},
                                               {"stash", "drop", "stash@{3}"}})
        EXPECT_EQ(kindOfRun(repo.path(), command), Kind::noSuchRef) << testing::PrintToString(command);
    EXPECT_EQ(kindOf([&] { repository.checkout("refs/heads/nothing"); }), Kind::noSuchRef);
    EXPECT_EQ(kindOf([&] { repository.createBranch("main", {}, AfterCreating::stay); }), Kind::alreadyExists);
    EXPECT_EQ(kindOf([&] { repository.createTag("v1", "refs/heads/main"); }), Kind::alreadyExists);
    for (const char* name : {"", "-f", "@", "a b", "a..b"}) {
        EXPECT_EQ(kindOf([&] { repository.createBranch(name, {}, AfterCreating::stay); }), Kind::invalidName) << name;
        EXPECT_EQ(kindOf([&] { repository.createTag(name, "refs/heads/main"); }), Kind::invalidName) << name;
    }
    EXPECT_EQ(kindOf([&] { repository.deleteBranch("side", Deletion::force); }), Kind::checkedOutElsewhere);
    EXPECT_EQ(kindOf([&] { repository.checkout("refs/heads/side"); }), Kind::checkedOutElsewhere);
    repo.git({"worktree", "remove", "../other"});
    EXPECT_EQ(kindOf([&] { repository.deleteBranch("side", Deletion::ifMerged); }), Kind::notFullyMerged);
    EXPECT_EQ(kindOf([&] { repository.blame("none", {}); }), Kind::noSuchPath);
    EXPECT_EQ(kindOf([&] { repository.blame("none", "HEAD"); }), Kind::noSuchPath);
}

TEST(ErrorKinds, TellWhatIsInTheWay)
{
    TestRepository repo;
    fork(repo);
    const GitRepository repository = repo.repository();
    EXPECT_EQ(kindOf([&] { repository.merge("refs/heads/side"); }), Kind::conflicts);
    for (const auto& work : std::vector<std::function<void()>>{
             [&] { repository.commit("x", CommitMode::create); }, [&] { repository.merge("refs/heads/side"); },
             [&] { repository.checkout("refs/heads/side"); },
             [&] { gitkit::cherryPick(repository, {{"refs/heads/side"}}); }, [&] { repository.pull(); },
             [&] { repository.stashSave("x", UntrackedFiles::leave); }})
        EXPECT_EQ(kindOf(work), Kind::conflicts);
    repo.git({"merge", "--abort"});
    EXPECT_EQ(kindOf([&] { gitkit::cherryPick(repository, {{"refs/heads/side"}}); }), Kind::conflicts);
    repo.git({"cherry-pick", "--abort"});
    EXPECT_EQ(kindOf([&] { gitkit::revert(repository, {{"HEAD~1"}}); }), Kind::noSuchRef) << "not a full name";
    EXPECT_EQ(kindOf([&] { gitkit::revert(repository, {{repo.read({"rev-parse", "HEAD~1"})}}); }), Kind::conflicts);
    repo.git({"revert", "--abort"}).write("a", "4\n");

    for (const auto& work : std::vector<std::function<void()>>{
             [&] { repository.checkout("refs/heads/side"); }, [&] { repository.merge("refs/heads/side"); },
             [&] { gitkit::cherryPick(repository, {{"refs/heads/side"}}); }})
        EXPECT_EQ(kindOf(work), Kind::wouldOverwriteLocalChanges);
    repo.git({"add", "a"}).git({"stash", "push", "-q"}).write("a", "5\n").commit("five");
    EXPECT_EQ(kindOf([&] { repo.repository().git({"stash", "pop", "--index"}); }), Kind::indexNotRestorable);
    EXPECT_EQ(kindOf([&] { repository.stashApply(repository.stashes().at(0), StashUse::pop); }), Kind::conflicts);
    repo.git({"reset", "-q", "--hard"});

    const auto isLocked = [&](const char* lock, const std::function<void()>& work) {
        writeFile(repo / ".git" / lock, "");
        EXPECT_EQ(kindOf(work), Kind::lockHeld) << lock;
        std::filesystem::remove(repo / ".git" / lock);
    };
    isLocked("index.lock", [&] { repository.stageAll(); });
    isLocked("refs/heads/side.lock", [&] { repository.deleteBranch("side", Deletion::force); });
    isLocked("config.lock", [&] { repository.git({"config", "a.b", "c"}); });
}

TEST(ErrorKinds, TellWhyThereIsNoCommit)
{
    TestRepository repo;
    const GitRepository repository = repo.repository();
    const auto committing = [&] { repository.commit("x", CommitMode::create); };
    EXPECT_EQ(kindOf(committing), Kind::nothingToDo);
    repo.write("a", "1\n").commit("one");
    EXPECT_EQ(kindOf(committing), Kind::nothingToDo);
    repo.write("a", "2\n");
    EXPECT_EQ(kindOf(committing), Kind::nothingToDo);
    repo.remove("a").git({"checkout", "-q", "a"}).write("new", "");
    EXPECT_EQ(kindOf(committing), Kind::nothingToDo);
    repo.git({"add", "new"});
    for (const char* hook : {"pre-commit", "commit-msg"}) {
        writeHook(repo / ".git", hook, "echo 'fatal: not a git repository' >&2; exit 1\n");
        EXPECT_EQ(kindOf(committing), Kind::rejectedByHook) << hook;
        std::filesystem::remove(repo / ".git/hooks" / hook);
    }
    const GitRepository nobody = repository.in({.environment = {{"GIT_AUTHOR_NAME", ""}, {"GIT_AUTHOR_EMAIL", ""}}});
    EXPECT_EQ(kindOf([&] { nobody.commit("x", CommitMode::create); }), Kind::identityUnknown);
}

TEST(ErrorKinds, TellWhatARemoteRefuses)
{
    TestRepository repo;
    fork(repo);
    const GitRepository repository = repo.repository();
    EXPECT_EQ(kindOf([&] { repository.push("main", {}); }), Kind::noUpstream);
    EXPECT_EQ(kindOf([&] { repository.pull(); }), Kind::noUpstream);
    const std::filesystem::path server = repo.path().parent_path() / "server";
    repo.git({"init", "-q", "--bare", server.string()}).git({"remote", "add", "origin", server.string()});
    EXPECT_EQ(kindOf([&] { repository.push("main", {}); }), Kind::noUpstream);
    repo.git({"push", "-q", "-u", "origin", "main"}).git({"reset", "-q", "--hard", "HEAD~1"}).commit("else");
    EXPECT_EQ(kindOf([&] { repository.push("main", {}); }), Kind::notFastForward);
    EXPECT_EQ(kindOf([&] { repository.pull(); }), Kind::notFastForward);
    EXPECT_EQ(kindOfRun(repo.path(), {"pull", "--ff-only"}), Kind::notFastForward);
    repo.git({"reset", "-q", "--hard", "origin/main"}).commit("four");
    for (const char* hook : {"pre-receive", "update"}) {
        writeHook(server, hook, "echo fatal: not a git repository >&2; exit 1\n");
        EXPECT_EQ(kindOf([&] { repository.push("main", {}); }), Kind::rejectedByHook) << hook;
        std::filesystem::remove(server / "hooks" / hook);
    }
    writeHook(repo / ".git", "pre-push", "exit 1\n");
    EXPECT_EQ(kindOf([&] { repository.push("main", {}); }), Kind::rejectedByHook);

    repo.git({"remote", "set-url", "origin", "/nowhere/at/all"});
    EXPECT_EQ(kindOf([&] { repository.fetch(); }), Kind::other);
    for (const char* address : {"http://127.0.0.1:1/x", "git://127.0.0.1:1/x"}) {
        repo.git({"remote", "set-url", "origin", address});
        EXPECT_EQ(kindOf([&] { repository.fetch(); }), Kind::network) << address;
    }
}

TEST(ErrorKinds, TellOfDamage)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one");
    const auto forget = [&](const std::string& hash) {
        std::filesystem::remove(repo / ".git/objects" / hash.substr(0, 2) / hash.substr(2));
    };
    forget(repo.read({"rev-parse", "HEAD:a"}));
    EXPECT_EQ(kindOfRun(repo.path(), {"show", "HEAD"}), Kind::missingObject);
    EXPECT_EQ(kindOfRun(repo.path(), {"checkout", "HEAD", "--", "a", "b"}), Kind::noSuchRef);
    repo.remove("a");
    EXPECT_EQ(kindOfRun(repo.path(), {"checkout", "HEAD", "--", "a"}), Kind::missingObject);
    forget(repo.head());
    EXPECT_EQ(kindOf([&] { repo.repository().log({}, 10, {}); }), Kind::missingObject);
    EXPECT_EQ(kindOf([&] { repo.repository().status(); }), Kind::missingObject);
}

// What these tests cannot bring about: another user's files, other versions of git, ssh and servers that refuse.
TEST(ErrorKinds, KnowRecordedSentences)
{
    struct Recorded {
        Kind kind;
        const char* command;
        int status;
        const char* said;
    };
    for (const Recorded& each : std::vector<Recorded>{
             {Kind::refusedBySafeDirectory, "rev-parse", 128,
              "fatal: detected dubious ownership in repository at '/srv/r'\nTo add an exception for this directory, "
              "call:\n"},
             {Kind::refusedBySafeDirectory, "rev-parse", 128,
              "fatal: unsafe repository ('/srv/r' is owned by someone else)\n"},
             {Kind::notFullyMerged, "branch", 1, "error: the branch 'side' is not fully merged\n"},
             {Kind::checkedOutElsewhere, "branch", 1,
              "error: cannot delete branch 'side' used by worktree at '/srv/r'\n"},
             {Kind::hostKeyChanged, "fetch", 255,
              "@@@@@@\n@    WARNING: REMOTE HOST IDENTIFICATION HAS CHANGED!     @\n@@@@@@\nHost key verification "
              "failed.\n"},
             {Kind::hostKey, "fetch", 128,
              "Host key verification failed.\r\nfatal: Could not read from remote repository.\n"},
             {Kind::authentication, "fetch", 128,
              "git@example.org: Permission denied (publickey).\r\nfatal: Could not read from remote repository.\n"},
             {Kind::authentication, "push", 128,
              "fatal: could not read Username for 'https://example.org': terminal prompts disabled\n"},
             {Kind::authentication, "push", 128, "fatal: Authentication failed for 'https://example.org/r.git/'\n"},
             {Kind::network, "fetch", 128,
              "ssh: Could not resolve hostname none.invalid: Name or service not known\nfatal: Could not read\n"},
             {Kind::ambiguousName, "rev-parse", 128,
              "error: short object ID ab12 is ambiguous\nhint: The candidates are:\nfatal: Needed a single revision\n"},
             {Kind::notFastForward, "push", 1,
              "Writing objects: 100%\r ! [rejected] main -> main (fetch first)\nerror: failed to push some refs to "
              "'x'\n"},
             {Kind::other, "push", 1,
              " ! [remote rejected] main -> main (branch is currently checked out)\nerror: failed to push some refs to "
              "'x'\n"},
             {Kind::other, "push", 128, "remote: fatal: Authentication failed for 'x'\n"},
         })
    {
        const GitOutput output{.status = each.status, .stdoutBytes = {}, .stderrBytes = each.said};
        EXPECT_EQ(errorKind(each.command, output), each.kind) << each.said;
    }
    EXPECT_EQ(errorKind("show", {.status = 128, .stdoutBytes = "CONFLICT (content)", .stderrBytes = "x"}), Kind::other)
        << "what a file holds is no sentence of git's";
    EXPECT_EQ(errorKind("commit", {.status = 129, .signalled = true, .stdoutBytes = {}, .stderrBytes = {}}),
              Kind::other);
}

} // namespace
} // namespace gitkit

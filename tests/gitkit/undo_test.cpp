// SPDX-License-Identifier: GPL-3.0-or-later
// The blocks that keeping and restoring a state is made of.

#include "GitKit/repository/Folders.h"
#include "GitKit/repository/InTheWay.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/Overlay.h"
#include "GitKit/undo/RefTransaction.h"
#include "GitKit/undo/StepFiles.h"
#include "GitKit/undo/TakeBack.h"
#include "GitKit/undo/TreeMove.h"
#include "GitKit/undo/UndoJournal.h"
#include "GitKit/undo/UndoLog.h"
#include "GitKit/undo/UndoRefused.h"
#include "tests/support/ProcessesIn.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

TEST(UndoLog, KeepsWhatItNamesAndIsSeenByNobody)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    EXPECT_THAT(undoEntries(repo.repository(), 9), IsEmpty());
    const auto commit = [&](const char* message) { return repo.read({"commit-tree", "-m", message, "HEAD^{tree}"}); };
    const std::string first = commit("b");
    const std::string second = commit("a");
    repo.git({"config", "core.logAllRefUpdates", "false"});
    appendUndoEntry(repo.repository(), first, "b 1 Merge of \x1f \"topic\"");
    appendUndoEntry(repo.repository(), second, "a 1 Merge");
    repo.git({"gc", "-q", "--prune=now"});
    const std::vector<UndoEntry> entries = undoEntries(repo.repository(), 9);
    ASSERT_EQ(entries.size(), 2U);
    EXPECT_EQ(entries[0].commit, second);
    EXPECT_EQ(entries[1].text, "b 1 Merge of \x1f \"topic\"");
    EXPECT_EQ(repo.read({"cat-file", "-t", first}), "commit");
    EXPECT_EQ(repo.read({"log", "--all", "--format=%s"}), "one");
    EXPECT_EQ(repo.read({"for-each-ref", "--format=%(refname)"}), "refs/heads/main");

    const TemporaryFolder elsewhere;
    repo.git({"worktree", "add", "-q", "-b", "other", (elsewhere / "tree").string()});
    EXPECT_THAT(undoEntries(GitRepository(elsewhere / "tree"), 9), IsEmpty()) << "each working tree has its own";
}

struct RefTransactionTest : testing::Test {
    RefTransactionTest()
    {
        repo.write("a", "1").commit("one").write("a", "2").commit("two");
        one = repo.read({"rev-parse", "HEAD~"});
        two = repo.head();
        repo.git({"branch", "side", one});
    }
    std::string at(const char* ref) const
    {
        int status = 0;
        const std::string hash = runPlainGit(repo.path(), {"rev-parse", "-q", "--verify", ref}, status);
        return hash.substr(0, hash.find('\n'));
    }
    bool canMove(const char* ref) const
    {
        int status = 0;
        runPlainGit(repo.path(), {"update-ref", ref, two}, status);
        return status == 0;
    }

    TestRepository repo;
    std::string one, two;
};

TEST_F(RefTransactionTest, HoldsTheRefsUntilItMovesThemAll)
{
    {
        RefTransaction open(repo.repository(), "undo", {{"refs/heads/side", one, two}, {"refs/heads/new", {}, one}});
        EXPECT_EQ(at("refs/heads/side"), one);
        EXPECT_FALSE(canMove("refs/heads/side")) << "it is locked";
        open.commit();
    }
    EXPECT_EQ(at("refs/heads/side"), two);
    EXPECT_EQ(at("refs/heads/new"), one);
    EXPECT_EQ(repo.read({"log", "-g", "--format=%gs", "-1", "refs/heads/side"}), "undo");

    { // nothing happens without commit()
        const RefTransaction dropped(repo.repository(), "undo", {{"refs/heads/side", two, one}});
    }
    EXPECT_EQ(at("refs/heads/side"), two);
    EXPECT_TRUE(canMove("refs/heads/side")) << "the lock is gone";

    RefTransaction deleting(repo.repository(), "undo", {{"refs/heads/new", one, {}}});
    deleting.commit();
    EXPECT_EQ(at("refs/heads/new"), "");
    RefTransaction(repo.repository(), "undo", {}).commit();
}

TEST_F(RefTransactionTest, RefusesBeforeAnythingHasMoved)
{
    using Updates = std::vector<RefUpdate>;
    for (const Updates& wrong : {Updates{{"refs/heads/main", two, one}, {"refs/heads/side", two, one}}, // it has moved
                                 Updates{{"refs/heads/main", two, one}, {"refs/heads/side", {}, two}},  // it is there
                                 Updates{{"refs/heads/main", two, one}, {"refs/heads/side/x", {}, two}}})
        EXPECT_THROW(RefTransaction(repo.repository(), "undo", wrong), GitError);
    repo.write(".git/hooks/reference-transaction", "#!/bin/sh\n[ \"$1\" != prepared ]\n");
    fs::permissions(repo / ".git/hooks/reference-transaction", fs::perms::owner_all);
    EXPECT_THROW(RefTransaction(repo.repository(), "undo", {{"refs/heads/main", two, one}}), GitError);
    fs::remove(repo / ".git/hooks/reference-transaction");
    EXPECT_EQ(at("refs/heads/main"), two);

    repo.git({"symbolic-ref", "refs/heads/alias", "refs/heads/side"});
    EXPECT_THROW(RefTransaction(repo.repository(), "undo", {{"refs/heads/alias", two, two}}).commit(), GitError);
    EXPECT_EQ(at("refs/heads/side"), one) << "nothing is written through an alias";
}

TEST(Overlay, KeepsBytesModesAndLinksWhateverFiltersSay)
{
    TestRepository repo;
    repo.git({"config", "core.autocrlf", "input"}).git({"config", "core.safecrlf", "true"});
    repo.write(".gitattributes", "*.f filter=broken\n").git({"config", "filter.broken.clean", "false"});
    repo.git({"config", "filter.broken.required", "true"});
    std::vector<std::pair<std::string, std::string>> files{
        {"crlf", "a\r\nb\nc\r\n"}, {"x.f", "filtered"}, {"dir/with\nnewline", "1"}, {"\"quoted", "2"}, {"-n", "3"},
        {"latin\xe4", "4"},        {"empty", ""},       {"dir%2f/50%", "5"}};
    for (int number = 0; number < 40; ++number) // so many are stored in another way
        files.emplace_back("many/" + std::to_string(number), "bytes\r\n" + std::to_string(number % 20));
    std::vector<std::string> paths{"missing", "fifo", "link", "folder"};
    for (const auto& [path, bytes] : files) {
        repo.write(path, bytes);
        paths.push_back(path);
    }
    fs::permissions(repo / "-n", fs::perms::owner_all);
    fs::create_symlink("no/where", repo / "link");
    fs::create_directory(repo / "folder");
    ::mkfifo((repo / "fifo").c_str(), 0600);

    const std::vector<OverlayFile> kept = overlayFiles(repo.repository(), writeOverlay(repo.repository(), paths));
    EXPECT_EQ(kept.size(), files.size() + 1);
    for (const auto& [path, bytes] : files)
        repo.write(path, "changed");
    fs::remove(repo / "link");
    fs::remove(repo / "empty");
    fs::remove(repo / "crlf");
    fs::create_symlink("-n", repo / "crlf"); // must not be written through
    fs::permissions(repo / "-n", fs::perms::owner_read | fs::perms::owner_write);
    EXPECT_THAT(restoreOverlay(repo.repository(), kept), IsEmpty());
    for (const auto& [path, bytes] : files)
        EXPECT_EQ(bytesAt(repo / path), bytes) << path;
    EXPECT_FALSE(fs::is_symlink(repo / "crlf"));
    EXPECT_EQ(fs::read_symlink(repo / "link"), "no/where");
    EXPECT_NE(fs::status(repo / "-n").permissions() & fs::perms::owner_exec, fs::perms::none);

    fs::remove_all(repo / "dir");
    fs::create_directory_symlink("folder", repo / "dir");
    EXPECT_THAT(restoreOverlay(repo.repository(), kept), ElementsAre("dir/with\nnewline")) << "through no link";
    EXPECT_TRUE(fs::is_empty(repo / "folder"));
}

TEST(TreeMove, LeavesEverythingThatIsLocal)
{
    TestRepository repo;
    repo.write("moves", "1").write("staged", "1").write("changed", "1").write("both", "1").write("quiet", "1");
    repo.write("goes", "1").commit("one");
    const std::string one = repo.read({"rev-parse", "HEAD^{tree}"});
    repo.write("moves", "2").write("new/file", "2").remove("goes").commit("two");
    const std::string two = repo.read({"rev-parse", "HEAD^{tree}"});
    repo.write("staged", "s").write("added", "s").git({"add", "staged", "added"}).write("changed", "c");
    repo.write("both", "b").git({"add", "both"}).write("both", "bb").write("untracked", "u");
    repo.write("intended", "i").git({"add", "-N", "intended"}).git({"update-index", "--assume-unchanged", "quiet"});
    const fs::path directory = gitDirectories(repo.repository()).own;
    const std::string before = wholeState(repo);

    const auto move = [&](const TreeMove& way) {
        moveFiles(repo.repository(), directory, way);
        moveIndex(repo.repository(), directory, way);
    };
    move({two, one});
    EXPECT_EQ(bytesAt(repo / "moves"), "1");
    EXPECT_EQ(bytesAt(repo / "goes"), "1");
    EXPECT_FALSE(fs::exists(repo / "new"));
    EXPECT_EQ(bytesAt(repo / "changed") + bytesAt(repo / "both") + bytesAt(repo / "staged"), "cbbs");
    move({one, two});
    EXPECT_EQ(wholeState(repo), before) << "and back";

    repo.git({"update-index", "--assume-unchanged", "moves"}).write("moves", "mine");
    EXPECT_THAT(editedFiles(repo.repository(), directory, {two, one}), ElementsAre("moves"));
    repo.git({"update-index", "--no-assume-unchanged", "moves"}).write("goes", "untracked");
    const std::string mine = wholeState(repo);
    EXPECT_THAT(editedFiles(repo.repository(), directory, {two, one}), ElementsAre("moves"));
    EXPECT_THAT(editedEntries(repo.repository(), directory, {two, one}), IsEmpty());
    EXPECT_THROW(moveFiles(repo.repository(), directory, {two, one}), GitError);
    EXPECT_EQ(wholeState(repo), mine) << "refused before anything moved";
    fs::remove(repo / "goes");
    repo.write("moves", "2").write(".git/index.lock", "");
    EXPECT_THROW(moveIndex(repo.repository(), directory, {two, one}), GitError);
    fs::remove(repo / ".git/index.lock");
    EXPECT_EQ(wholeState(repo), before) << "nor under a lock";
}

TEST(TreeMove, TellsWhatIsStagedWithoutTheConflicts)
{
    TestRepository repo;
    repo.write("a", "1").write("b", "1").commit("one").git({"checkout", "-q", "-b", "topic"});
    repo.write("a", "2").write("b", "2").commit("two").git({"checkout", "-q", "main"}).write("a", "3").commit("three");
    int status = 0;
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    const std::string before = wholeState(repo);
    const IndexContents contents = indexContents(repo.repository(), gitDirectories(repo.repository()).own);
    const std::string& tree = contents.tree;
    EXPECT_EQ(contents.conflicts.size(), 3U);
    EXPECT_EQ(repo.read({"ls-tree", "--name-only", tree}), "b");
    EXPECT_EQ(repo.read({"cat-file", "blob", tree + ":b"}), "2");
    EXPECT_EQ(wholeState(repo), before);
}

TEST(InTheWay, IsNamedMovedAsideAndComesBack)
{
    TestRepository repo;
    repo.write(".gitignore", ".env\n*.log\n").write("a", "1").commit("one");
    const std::string one = repo.read({"rev-parse", "HEAD^{tree}"});
    repo.write(".env", "theirs").git({"add", "-f", ".env"}).write("notes", "theirs").write("folder/x", "theirs");
    repo.write("plain", "theirs").commit("two");
    const std::string two = repo.read({"rev-parse", "HEAD^{tree}"});
    repo.git({"checkout", "-q", "-f", "HEAD~"});
    repo.write(".env", "secret").write("notes", "mine").write("folder", "a file").write("plain/deep/f.log", "log");
    repo.write("other.log", "elsewhere").write("plain/deep/g", "untracked");
    fs::permissions(repo / ".env", fs::perms::owner_read);

    const InTheWay found = inTheWay(repo.repository(), one, two);
    EXPECT_THAT(found.untracked, UnorderedElementsAre("notes", "folder", "plain/deep/g"));
    EXPECT_THAT(found.ignored, UnorderedElementsAre(".env", "plain/deep/f.log"));

    const TemporaryFolder saved;
    std::vector<std::string> all = found.untracked;
    all.insert(all.end(), found.ignored.begin(), found.ignored.end());
    const std::string before = wholeState(repo);
    moveAside(repo.repository(), all, saved / "step");
    EXPECT_FALSE(fs::exists(repo / "plain")) << "nor are its empty folders in the way";
    EXPECT_THAT(inTheWay(repo.repository(), one, two).ignored, IsEmpty());
    repo.write("notes", "taken");
    EXPECT_THAT(moveBack(repo.repository(), all, saved / "step"), ElementsAre("notes"));
    fs::remove(repo / "notes");
    EXPECT_THAT(moveBack(repo.repository(), {"notes"}, saved / "step"), IsEmpty());
    EXPECT_EQ(wholeState(repo), before) << "bytes, modes and all";

    EXPECT_THROW(moveAside(repo.repository(), {".env", "gone"}, saved / "again"), GitError);
    EXPECT_EQ(wholeState(repo), before) << "a failure puts back what was moved before it";
}

/// An action, what it touches, and what happens before it.
struct Story {
    const char* name;
    UndoScope scope;
    std::function<void(TestRepository&)> before, act;
    bool takesChanged = false; ///< the action takes all changed files
};

/// Runs git whatever it says about conflicts.
void tryGit(const TestRepository& repo, const std::vector<std::string>& arguments)
{
    int status = 0;
    runPlainGit(repo.path(), arguments, status);
}

/// Stops in a conflict about `a`, with more changes around.
void stopIn(TestRepository& repo, const std::vector<std::string>& command)
{
    repo.write("a", "ours").write("z", "1").git({"add", "z"}).git({"commit", "-q", "-am", "ours"});
    tryGit(repo, command);
}

constexpr auto movesAll = [] { return UndoScope{.movesFiles = true, .movesIndex = true, .movesAnyRef = true}; };

const std::vector<Story> stories{
    {"commit",
     {},
     [](auto& r) { r.write("a", "2").git({"add", "a"}).write("a", "3"); },
     [](auto& r) { r.git({"commit", "-q", "-m", "more"}); }},
    {"first commit",
     {},
     [](auto& r) { r.git({"checkout", "-q", "--orphan", "fresh"}); },
     [](auto& r) { r.git({"commit", "-q", "-m", "fresh"}); }},
    {"amend",
     {},
     [](auto& r) { r.write("a", "2").git({"add", "a"}); },
     [](auto& r) { r.git({"commit", "-q", "--amend", "-m", "other words"}); }},
    {"checkout",
     {.movesFiles = true, .movesIndex = true},
     [](auto& r) { r.write("c\r", "local").git({"add", "-N", "c\r"}); },
     [](auto& r) { r.git({"checkout", "-q", "topic"}); }},
    {"detaching",
     {.movesFiles = true, .movesIndex = true},
     [](auto&) {},
     [](auto& r) { r.git({"checkout", "-q", "--detach", "topic"}); }},
    {"merge",
     {.movesFiles = true, .movesIndex = true},
     [](auto& r) { r.write("untracked", "u").write("b", "changed"); },
     [](auto& r) { r.git({"merge", "-q", "--no-ff", "-m", "merged", "topic"}); }},
    {"fast-forward",
     {.movesFiles = true, .movesIndex = true},
     [](auto& r) { r.git({"branch", "-f", "topic", "topic"}); },
     [](auto& r) { r.git({"merge", "-q", "--ff-only", "topic"}); }},
    {"branch and tag deleted",
     {.refs = {"refs/heads/topic", "refs/tags/v1", "refs/tags/light"}, .touchesSettings = true},
     [](auto& r) {
         r.git({"tag", "-a", "-m", "note", "v1"}).git({"tag", "light"}).git({"config", "branch.topic.remote", "."});
         r.git({"config", "branch.topic.merge", "refs/heads/main"})
             .git({"config", "--add", "branch.topic.x", "\xe4\n="});
         r.git({"config", "--add", "branch.topic.x", ""});
     },
     [](auto& r) { r.git({"branch", "-q", "-D", "topic"}).git({"tag", "-d", "v1"}).git({"tag", "-d", "light"}); }},
    {"branch made and checked out",
     {.movesFiles = true, .movesIndex = true, .refs = {"refs/heads/new/branch"}, .touchesSettings = true},
     [](auto&) {},
     [](auto& r) { r.git({"checkout", "-q", "--track", "-b", "new/branch", "topic"}); }},
    {"staging",
     {.movesIndex = true},
     [](auto& r) { r.write("a", "2").write("n", "1"); },
     [](auto& r) { r.git({"add", "-A"}); }},
    {"unstaging",
     {.movesIndex = true},
     [](auto& r) { r.write("a", "2").write("n", "1").git({"add", "-A"}); },
     [](auto& r) { r.git({"reset", "-q"}); }},
    {"discarding",
     {.movesIndex = true, .overwrites = {"a", "crlf", "gone", "link"}},
     [](auto& r) {
         r.git({"config", "core.autocrlf", "input"})
             .write("a", "mine")
             .write("crlf", "x\r\ny\n")
             .remove("gone")
             .remove("link");
         fs::permissions(r / "a", fs::perms::owner_all);
     },
     [](auto& r) { r.git({"checkout", "-q", "-f", "--", "a", "crlf", "gone", "link"}); }},
    {"rebase",
     {.movesFiles = true, .movesIndex = true},
     [](auto& r) { r.write("untracked", "u"); },
     [](auto& r) {
         r.write("z", "1").git({"add", "z"}).git({"commit", "-q", "-m", "z"}).git({"rebase", "-q", "topic"});
     }},
    {"merge that stops", movesAll(),
     [](auto& r) {
         r.write("a", "ours").git({"commit", "-q", "-am", "ours"}).write("b", "changed").write("untracked", "u");
     },
     [](auto& r) { tryGit(r, {"merge", "-q", "topic"}); }},
    {"rebase that stops", movesAll(), [](auto&) {}, [](auto& r) { stopIn(r, {"rebase", "topic"}); }},
    {"cherry-pick that stops", movesAll(), [](auto&) {}, [](auto& r) { stopIn(r, {"cherry-pick", "topic"}); }},
    {"merge aborted", movesAll(),
     [](auto& r) {
         stopIn(r, {"merge", "-q", "topic"});
         r.write("a", "half resolved\r\n").git({"config", "core.autocrlf", "input"});
     },
     [](auto& r) { r.git({"merge", "--abort"}); }, true},
    {"rebase aborted", movesAll(),
     [](auto& r) {
         stopIn(r, {"rebase", "topic"});
         r.write("a", "resolved").git({"add", "a"}).write("b", "touched").write("untracked", "u");
     },
     [](auto& r) { r.git({"rebase", "--abort"}); }, true},
    {"rebase continued", movesAll(),
     [](auto& r) {
         stopIn(r, {"rebase", "topic"});
         r.write("a", "resolved").git({"add", "a"});
     },
     [](auto& r) { r.git({"-c", "core.editor=true", "rebase", "--continue"}); }, true},
    {"commit of a merge",
     {},
     [](auto& r) {
         stopIn(r, {"merge", "-q", "topic"});
         r.write("a", "resolved").git({"add", "a"});
     },
     [](auto& r) { r.git({"commit", "-q", "-m", "merged"}); }},
    {"side taken",
     {.movesIndex = true, .overwrites = {"a"}},
     [](auto& r) { stopIn(r, {"merge", "-q", "topic"}); },
     [](auto& r) { r.git({"checkout", "--theirs", "a"}).git({"add", "a"}); }},
    {"bisect marked", movesAll(),
     [](auto& r) {
         for (const char* text : {"3", "4", "5", "6"})
             r.write("b", text).git({"commit", "-q", "-am", text});
         r.git({"bisect", "start"}).git({"bisect", "bad"}).git({"bisect", "good", "HEAD~4"});
     },
     [](auto& r) { r.git({"bisect", "good"}); }, true},
    {"stash saved",
     {.movesIndex = true, .touchesStashes = true},
     [](auto& r) { r.write("a", "staged").git({"add", "a"}).write("a", "changed").write("b", "1\r\n"); },
     [](auto& r) { r.git({"stash", "push", "-q", "-m", "mine"}); },
     true},
    {"stash popped in conflict",
     {.movesIndex = true, .overwrites = {"a", "new"}, .touchesStashes = true},
     [](auto& r) {
         r.write("a", "stashed").write("new", "n").git({"stash", "push", "-q", "-u", "-m", "mine"});
         r.write("b", "2").git({"stash", "push", "-q"}).write("a", "ours").git({"commit", "-q", "-am", "ours"});
     },
     [](auto& r) {
         tryGit(r, {"stash", "apply", "stash@{1}"});
         r.git({"stash", "drop", "-q", "stash@{0}"});
     }},
};

/// A repository in which a story is told.
struct StoryRepository {
    explicit StoryRepository(const Story& told) : story(told)
    {
        repo.write("a", "1").write("b", "1").write("crlf", "x\n").write("gone", "1");
        fs::create_symlink("a", repo / "link");
        repo.commit("one")
            .git({"checkout", "-q", "-b", "topic"})
            .write("t/new", "topic")
            .write("a", "topic")
            .commit("two");
        repo.git({"checkout", "-q", "main"});
        story.before(repo);
        tryGit(repo, {"update-index", "-q", "--refresh"});
    }

    UndoStep recorded() const
    {
        const GitRepository kit = repo.repository();
        UndoScope scope = story.scope;
        scope.kind = "test";
        scope.title = story.name;
        if (story.takesChanged)
            scope.overwrites = changedFiles(kit);
        UndoRecording recording(kit, gitDirectories(kit).own, scope);
        story.act(repo);
        const std::optional<UndoStep> step = recording.finish(kit);
        EXPECT_TRUE(step);
        return step.value_or(UndoStep());
    }

    const Story& story;
    mutable TestRepository repo;
};

TEST(UndoJournal, TakesBackAndDoesAgain)
{
    for (const Story& story : stories) {
        SCOPED_TRACE(story.name);
        const StoryRepository told(story);
        TestRepository& repo = told.repo;
        const GitRepository kit = repo.repository();
        const fs::path directory = gitDirectories(kit).own;
        const std::string a = wholeState(repo);
        told.recorded();
        const std::string b = wholeState(repo);
        ASSERT_NE(a, b);
        repo.git({"gc", "-q", "--prune=now"});

        const int rounds = std::string_view(story.name) == "merge" ? 2 : 1;
        for (int round = 0; round < rounds; ++round) {
            const std::vector<UndoStep> done = undoSteps(kit);
            const UndoStep* undo = nextUndo(done);
            ASSERT_TRUE(undo);
            EXPECT_EQ(actionOf(done, *undo).title, story.name);
            EXPECT_FALSE(nextRedo(done) && round == 0);
            ASSERT_TRUE(takeBack(kit, directory, *undo, "Undo").step);
            EXPECT_EQ(wholeState(repo), a) << "undone, round " << round;
            const std::vector<UndoStep> undone = undoSteps(kit);
            EXPECT_FALSE(nextUndo(undone));
            const UndoStep* redo = nextRedo(undone);
            ASSERT_TRUE(redo);
            ASSERT_TRUE(takeBack(kit, directory, *redo, "Redo").step);
            EXPECT_EQ(wholeState(repo), b) << "done again, round " << round;
            EXPECT_FALSE(nextRedo(undoSteps(kit)));
        }
    }
}

TEST(UndoJournal, RefusesWhatHasChangedSinceAndLeavesIt)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").write("a", "2").git({"add", "a"});
    const GitRepository kit = repo.repository();
    const fs::path directory = gitDirectories(kit).own;
    UndoRecording committing(kit, directory, {.kind = "commit", .title = "Commit"});
    repo.git({"commit", "-q", "-m", "two"});
    const UndoStep commit = *committing.finish(kit);
    repo.write("b", "1").commit("in a terminal");
    std::string before = wholeState(repo);
    EXPECT_THROW(takeBack(kit, directory, commit, "Undo"), GitError) << "the branch has moved";
    EXPECT_EQ(wholeState(repo), before);
    EXPECT_EQ(undoSteps(kit).size(), 1U) << "what did not happen is no step";

    repo.write("a", "mine");
    UndoRecording discarding(kit, directory, {.kind = "discard", .title = "Discard", .overwrites = {"a"}});
    repo.git({"checkout", "-q", "--", "a"});
    const UndoStep discard = *discarding.finish(kit);
    repo.write("a", "edited since");
    before = wholeState(repo);
    EXPECT_THROW(takeBack(kit, directory, discard, "Undo"), GitError);
    EXPECT_EQ(wholeState(repo), before);

    UndoRecording nothing(kit, directory, {.kind = "test", .title = "Nothing"});
    EXPECT_FALSE(nothing.finish(kit));
    EXPECT_EQ(undoSteps(kit).size(), 2U);
    { // killed in the middle
        const UndoRecording killed(kit, directory, {.kind = "test", .title = "Killed"});
    }
    EXPECT_FALSE(undoSteps(kit).front().after);
}

/// Ends this process as a crash does when git is started for the nth time.
class Killer : public RunListener {
public:
    explicit Killer(int runs) : left_(runs) {}
    void began(Run, const std::vector<std::string>&, const fs::path&) override
    {
        if (--left_ == 0)
            ::kill(::getpid(), SIGKILL);
    }
    void printed(Run, Stream, std::string_view) override {}
    void ended(Run, const RunEnd&) override {}

private:
    std::atomic<int> left_;
};

/// Returns whether the process was killed before it had taken the step back.
bool isKilledTakingBack(const TestRepository& repo, const UndoStep& step, int runs)
{
    const pid_t child = ::fork();
    if (child == 0) {
        try {
            takeBack(GitRepository(repo.path(), {.listener = std::make_shared<Killer>(runs)}), repo / ".git", step,
                     "Undo");
        } catch (const std::exception&) {
            ::_exit(2);
        }
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    // What git had begun ends by itself.
    EXPECT_TRUE(haveAllEndedIn(repo.path(), std::chrono::seconds(5)));
    return WIFSIGNALED(status);
}

TEST(UndoJournal, KilledAnywhereKeepsTheStateBefore)
{
    const bool isLong = std::getenv("PLOVIK_ACTIONS") != nullptr;
    const int stride = isLong ? 1 : 12;
    for (const Story& story : stories) {
        const std::string_view name = story.name;
        if (!isLong && name != "rebase aborted" && name != "branch made and checked out")
            continue;
        SCOPED_TRACE(name);
        const StoryRepository told(story);
        const TestRepository& repo = told.repo;
        const UndoStep step = told.recorded();
        const std::string before = wholeState(repo);
        int runs = 1 + static_cast<int>(::time(nullptr)) % stride;
        for (; isKilledTakingBack(repo, step, runs); runs += stride) {
            SCOPED_TRACE(runs);
            const UndoStep cut = undoSteps(repo.repository()).front();
            if (!cut.after) // otherwise it was killed before anything was moved, or after all was
                restoreBefore(repo.repository(), repo / ".git", cut, "Restored");
            else if (cut.undoes == step.id)
                takeBack(repo.repository(), repo / ".git", cut, "Redo");
            ASSERT_EQ(wholeState(repo), before);
        }
        EXPECT_GT(runs, 10);
    }
}

TEST(UndoJournal, BringsBackWhatWasMovedOutOfTheWay)
{
    TestRepository repo;
    repo.write(".gitignore", ".env\n").commit("one").git({"checkout", "-q", "-b", "topic"});
    repo.write(".env", "theirs").git({"add", "-f", ".env"}).commit("two").git({"checkout", "-q", "main"});
    repo.write(".env", "secret");
    const GitRepository kit = repo.repository();
    const fs::path directory = gitDirectories(kit).own;
    const std::string before = wholeState(repo);
    UndoRecording recording(kit, directory,
                            {.kind = "checkout", .title = "Check out", .movesFiles = true, .movesIndex = true});
    const InTheWay found = inTheWay(kit, "main", "topic");
    moveAside(kit, found.ignored, asideFolder(directory, recording.id()));
    recording.movedAside(found.ignored);
    repo.git({"checkout", "-q", "topic"});
    recording.finish(kit);
    EXPECT_EQ(bytesAt(repo / ".env"), "theirs");
    const std::vector<UndoStep> steps = undoSteps(kit);
    takeBack(kit, directory, *nextUndo(steps), "Undo");
    EXPECT_EQ(bytesAt(repo / ".env"), "secret");
    EXPECT_EQ(wholeState(repo), before);

    { // cut off after the file was moved
        const UndoRecording cut(kit, directory,
                                {.kind = "checkout", .title = "Check out", .movesFiles = true, .movesIndex = true});
        moveAside(kit, found.ignored, asideFolder(directory, cut.id()));
        repo.git({"checkout", "-q", "topic"});
    }
    restoreBefore(kit, directory, undoSteps(kit).front(), "Restored");
    EXPECT_EQ(bytesAt(repo / ".env"), "secret");
    EXPECT_EQ(wholeState(repo), before);

    fs::create_directories(asideFolder(directory, "old"));
    fs::create_directories(asideFolder(directory, "young"));
    fs::last_write_time(asideFolder(directory, "old"), fs::file_time_type::clock::now() - std::chrono::hours(24 * 31));
    std::vector<fs::path> thrown;
    clearAside(directory, [&thrown](const fs::path& folder) { thrown.push_back(folder); });
    EXPECT_THAT(thrown, ElementsAre(asideFolder(directory, "old")));
}

TEST(UndoJournal, WhatChangesNothingDoesNotStandInTheWay)
{
    TestRepository repo;
    repo.write("a", "1").write("b", "1").commit("one").write("a", "2");
    const GitRepository kit = repo.repository();
    const fs::path directory = gitDirectories(kit).own;
    const auto recorded = [&](const char* title, auto act) {
        UndoRecording recording(kit, directory,
                                {.title = title, .movesFiles = true, .movesIndex = true, .changesMore = true});
        act();
        return recording.finish(kit).has_value();
    };
    EXPECT_TRUE(recorded("Staged", [&] { repo.git({"add", "a"}); }));
    EXPECT_FALSE(recorded("Touched", [&] { repo.write("b", "1"); })) << "a file has another time, but the same bytes";
    EXPECT_TRUE(recorded("Staged", [&] { repo.write("b", "2").git({"add", "b"}); }));
    repo.git({"reset", "-q", "b"}).write("b", "1"); // in a terminal: there is nothing left to take back
    takeBack(kit, directory, *nextUndo(undoSteps(kit)), "Undo");
    takeBack(kit, directory, *nextUndo(undoSteps(kit)), "Undo");
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "") << "the step before the last one";
    EXPECT_FALSE(nextUndo(undoSteps(kit)));
}

TEST(UndoJournal, AFileThatIsThereAlreadyStaysThroughRedoAndUndo)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").git({"checkout", "-q", "-b", "topic"}).write("b", "2").commit("two");
    repo.git({"checkout", "-q", "main"});
    const GitRepository kit = repo.repository();
    const fs::path directory = gitDirectories(kit).own;
    UndoRecording recording(kit, directory, {.title = "Checkout", .movesFiles = true, .movesIndex = true});
    repo.git({"checkout", "-q", "topic"});
    recording.finish(kit);
    takeBack(kit, directory, *nextUndo(undoSteps(kit)), "Undo");
    repo.write("b", "2"); // what redo brings is there already, as a file that git does not know
    const std::string before = wholeState(repo);
    takeBack(kit, directory, *nextRedo(undoSteps(kit)), "Redo");
    EXPECT_EQ(repo.read({"symbolic-ref", "--short", "HEAD"}) + repo.read({"status", "--porcelain"}), "topic");
    takeBack(kit, directory, *nextUndo(undoSteps(kit)), "Undo");
    EXPECT_EQ(wholeState(repo), before);
}

TEST(UndoJournal, RedoIsOverOnceSomethingElseIsDone)
{
    const auto step = [](const char* id, const char* undoes = "") {
        UndoStep made;
        made.id = id;
        made.undoes = undoes;
        made.after.emplace().head.hash = id;
        return made;
    };
    const auto told = [](std::vector<UndoStep> newestLast) {
        std::ranges::reverse(newestLast);
        const UndoStep* undo = nextUndo(newestLast);
        const UndoStep* redo = nextRedo(newestLast);
        return (undo ? undo->id : "-") + ' ' + (redo ? redo->id : "-");
    };
    EXPECT_EQ(told({}), "- -");
    EXPECT_EQ(told({step("1"), step("2")}), "2 -");
    EXPECT_EQ(told({step("1"), step("2"), step("u2", "2")}), "1 u2");
    EXPECT_EQ(told({step("1"), step("2"), step("u2", "2"), step("u1", "1")}), "- u1");
    EXPECT_EQ(told({step("1"), step("2"), step("u2", "2"), step("u1", "1"), step("r1", "u1")}), "r1 u2");
    EXPECT_EQ(told({step("1"), step("2"), step("u2", "2"), step("3")}), "3 -");
    EXPECT_EQ(told({step("1"), step("2"), step("u2", "2"), step("r2", "u2"), step("v2", "r2")}), "1 v2") << "again";
}

} // namespace
} // namespace gitkit

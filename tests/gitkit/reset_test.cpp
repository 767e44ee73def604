// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/undo/Reset.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

using enum ResetKind;
using Names = std::vector<std::string>;

struct Reset : testing::Test {
    /// Three commits: the second changes `a`, the third changes `b`, too.
    Reset()
    {
        repo.write(".gitignore", "*.log\n").write("a", "1").write("b", "1").write("c", "1").commit("one");
        first = repo.head();
        repo.write("a", "2").commit("two").write("b", "3").commit("three");
    }
    ErrorKind refusal(ResetKind kind, const std::string& target)
    {
        try {
            reset(repo.repository(), kind, repo.head(), target);
        } catch (const GitError& error) {
            return error.kind();
        }
        return ErrorKind::other;
    }

    TestRepository repo;
    std::string first;
};

TEST_F(Reset, NamesWhatEachWayLoses)
{
    // Names that are read as something else, where a name is no hash.
    repo.write("HEAD~1", "x").commit("four").git({"tag", "main", first});
    repo.write("c", "mine").write("b", "mine").git({"add", "b"}).git({"branch", "keeps", "HEAD~2"});
    repo.git({"rm", "-q", "--cached", "a"}).write("a", "unknown").write("new", "n").git({"add", "-N", "new"});
    const ResetLoss loss = resetLoss(repo.repository(), first);
    EXPECT_EQ(loss.head, repo.head());
    EXPECT_EQ(loss.left, 3);
    EXPECT_EQ(loss.gained, 0);
    EXPECT_EQ(loss.onlyHere, 2) << "the third is on another branch";
    EXPECT_EQ(loss.changed, (Names{"a", "b", "c", "new"}));
    EXPECT_EQ(loss.refused, (Names{"a", "b"}));
    EXPECT_EQ(resetLoss(repo.repository(), repo.read({"rev-parse", "keeps"})).onlyHere, 2);
    repo.git({"checkout", "-q", "-f", "--detach", "keeps"});
    EXPECT_EQ(resetLoss(repo.repository(), first).onlyHere, 0);
    EXPECT_EQ(resetLoss(repo.repository(), repo.read({"rev-parse", "refs/heads/main"})).gained, 2);
}

TEST_F(Reset, KeepsStagedAndUnstagedChangesOrRefuses)
{
    repo.write("c", "staged").git({"add", "c"}).write("c", "changed").write("new", "n").git({"add", "-N", "new"});
    repo.write("x.log", "ignored").write("staged", "s").git({"add", "staged"});
    reset(repo.repository(), keep, repo.head(), first);
    EXPECT_EQ(repo.head(), first);
    EXPECT_EQ(repo.read({"branch", "--show-current"}), "main");
    EXPECT_EQ(bytesAt(repo / "a") + bytesAt(repo / "b"), "11");
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "MM c\n A new\nA  staged");
    EXPECT_EQ(repo.read({"show", ":c"}) + bytesAt(repo / "c"), "stagedchanged");
    EXPECT_EQ(repo.read({"reflog", "-1", "--format=%gs", "main"}), "reset: moving to " + first);

    repo.git({"reset", "-q", "--hard", "main@{1}"}).write("b", "mine");
    const std::string before = wholeState(repo);
    EXPECT_EQ(refusal(keep, first), ErrorKind::wouldOverwriteLocalChanges);
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(Reset, ThrowsAwayChangesAndOnlyThese)
{
    repo.write("c", "mine").write("new", "n").git({"add", "new"}).write("untracked", "u").write("x.log", "ignored");
    repo.git({"update-index", "--assume-unchanged", "a"}).write("a", "unseen");
    EXPECT_EQ(takenByReset(repo.repository(), hard), (Names{"a", "c", "new"}));
    reset(repo.repository(), hard, repo.head(), repo.head());
    EXPECT_EQ(bytesAt(repo / "a") + bytesAt(repo / "c"), "21");
    EXPECT_FALSE(std::filesystem::exists(repo / "new"));
    EXPECT_EQ(bytesAt(repo / "untracked") + bytesAt(repo / "x.log"), "uignored");
}

TEST_F(Reset, RefusesWhatWouldBeLostWithoutAWord)
{
    repo.write("x.log", "1").git({"add", "-f", "x.log"}).commit("four").git({"rm", "-q", "x.log"}).commit("five");
    const std::string four = repo.read({"rev-parse", "HEAD~1"});
    repo.write("x.log", "mine");
    for (const ResetKind kind : {keep, hard})
        EXPECT_EQ(refusal(kind, four), ErrorKind::wouldOverwriteUnknownFiles);
    EXPECT_EQ(bytesAt(repo / "x.log"), "mine");

    // A branch that has moved since.
    EXPECT_THROW(reset(repo.repository(), soft, first, four), GitError);

    int status = 0;
    repo.git({"checkout", "-q", "-b", "topic", first}).write("b", "theirs").commit("theirs");
    repo.git({"checkout", "-q", "main"});
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    const std::string before = wholeState(repo);
    for (const ResetKind kind : {keep, soft, mixed, hard})
        EXPECT_EQ(refusal(kind, first), ErrorKind::operationUnfinished);
    EXPECT_EQ(wholeState(repo), before) << "the merge goes on";

    // Conflicts without an operation can only be thrown away.
    repo.remove(".git/MERGE_HEAD");
    EXPECT_EQ(refusal(mixed, first), ErrorKind::conflicts);
    reset(repo.repository(), hard, repo.head(), first);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    EXPECT_EQ(bytesAt(repo / "x.log"), "mine");
}

} // namespace
} // namespace gitkit

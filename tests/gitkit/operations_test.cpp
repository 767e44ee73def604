// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/ConflictMarkers.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/CommitTemplate.h"
#include "GitKit/repository/OperationReader.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/PreparedMessage.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <array>
#include <cstdlib>
#include <fstream>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

/// main and topic have changed the same line, topic with a message that begins as a comment does.
struct StoppedRepository : TestRepository {
    StoppedRepository()
    {
        write("a", "1\n").commit("one").git({"branch", "topic"}).write("a", "2\n").commit("two");
        git({"checkout", "-q", "topic"}).write("a", "3\n").commit(message).git({"checkout", "-q", "main"});
    }

    /// Runs git until it stops, resolves the conflict, and goes on.
    void goOn(const std::vector<std::string>& arguments)
    {
        int status = 0;
        runPlainGit(path(), arguments, status);
        ASSERT_NE(status, 0) << arguments.front();
        write("a", "resolved\n").git({"add", "a"});
        const GitRepository opened = repository();
        const auto operation = operationInProgress(opened, *this / ".git");
        ASSERT_TRUE(operation) << arguments.front();
        EXPECT_EQ(withoutComments(opened, readPreparedMessage(*this / ".git", operation)), message);
        proceed(opened, *operation, OperationStep::proceed);
    }

    static constexpr const char* message = "#12 fix\n\n# Why\n;so\n#\ttab\n";
};

TEST(Proceeding, RecordsLinesThatLookLikeCommentsAndNoneOfGits)
{
    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"cherry-pick", "topic"},
                                                      {"rebase", "main", "topic"},
                                                      {"merge", "-m", StoppedRepository::message, "topic"}})
    {
        StoppedRepository repo;
        repo.goOn(arguments);
        EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}) + "\n", std::string(StoppedRepository::message) + "\n")
            << arguments.front();
    }
    // Later stops of the same rebase have their lists of conflicts removed, too.
    StoppedRepository repo;
    repo.git({"checkout", "-q", "topic"}).write("a", "4\n").commit("#13 more").git({"checkout", "-q", "main"});
    repo.goOn({"cherry-pick", "topic~1"});
    repo.git({"checkout", "-q", "topic"});
    int status = 0;
    runPlainGit(repo.path(), {"rebase", "main~1"}, status);
    for (int stop = 0; stop < 2; ++stop) {
        repo.write("a", "resolved " + std::to_string(stop) + "\n").git({"add", "a"});
        const auto operation = operationInProgress(repo.repository(), repo / ".git");
        ASSERT_TRUE(operation);
        try {
            proceed(repo.repository(), *operation, OperationStep::proceed);
        } catch (const GitError& error) {
            EXPECT_EQ(error.kind(), ErrorKind::conflicts) << error.message();
        }
    }
    EXPECT_EQ(repo.read({"log", "-2", "--format=%B"}), "#13 more\n\n" + std::string(StoppedRepository::message));
}

TEST(Proceeding, KeepsSuchLinesOfCommitsThatAreMelded)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").write("a", "2\n").commit("#12 two").write("a", "3\n");
    repo.commit("squash! #12 two\n\n#more").git({"checkout", "-q", "HEAD~2"}).write("a", "x\n").commit("base");
    int status = 0;
    runPlainGit(repo.path(), {"rebase", "-i", "--autosquash", "HEAD", "main"}, status, {},
                {"GIT_SEQUENCE_EDITOR=true", "GIT_EDITOR=true"});
    for (int stop = 0; stop < 2; ++stop) {
        repo.write("a", "resolved " + std::to_string(stop) + "\n").git({"add", "a"});
        const auto operation = operationInProgress(repo.repository(), repo / ".git");
        ASSERT_TRUE(operation);
        try {
            proceed(repo.repository(), *operation, OperationStep::proceed);
        } catch (const GitError& error) {
            EXPECT_EQ(error.kind(), ErrorKind::conflicts) << error.message();
        }
    }
    EXPECT_EQ(repo.read({"log", "-1", "--format=%B"}), "#12 two\n\n#more\n");
}

TEST(PreparedMessage, KnowsWhatGitWrote)
{
    EXPECT_EQ(writtenMessage("#1 a\n\nx\n\n# Conflicts:\n#\ta\n#\tb c\n"), "#1 a\n\nx\n");
    EXPECT_EQ(writtenMessage("a\n\n; Conflicts:\n;\ta\n"), "a\n") << "with another comment character";
    EXPECT_EQ(writtenMessage("a\n# Conflicts:\nmine\n"), "a\n# Conflicts:\nmine\n");
    EXPECT_EQ(writtenMessage("a\n# ------------------------ >8 ------------------------\n# Do not\n"), "a\n");
    EXPECT_EQ(writtenMessage("# This is a combination of 2 commits.\n# This is the 1st commit message:\n\na\n"),
              std::nullopt);
    EXPECT_EQ(writtenMessage("Merge branch 'x'\n# Please enter a commit message to explain why\n#\n"), std::nullopt);
    EXPECT_EQ(unusedCommentCharacter("#1\n;2\n"), '@');
}

TEST(CommitTemplate, IsReadWithoutItsComments)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    const GitRepository opened = repo.repository();
    EXPECT_EQ(commitTemplate(opened), "");
    repo.git({"config", "commit.template", "message.txt"});
    EXPECT_EQ(commitTemplate(opened), "") << "there is no such file";
    const std::vector<std::array<std::string, 2>> cases{
        {"# type: subject\nfix: \n\n# why\nWhy:\n\n\n", "fix:\n\nWhy:\n"},
        {"\n# why\nWhy:\n", "\nWhy:\n"},
        {"# subject\n\nWhy:\n", "\nWhy:\n"},
        {"# nothing else\n\n", ""},
    };
    for (const auto& [text, message] : cases) {
        repo.write("message.txt", text);
        EXPECT_EQ(commitTemplate(opened), message) << text;
    }
    // As git does, "~" is the user's home; and a pipe is not waited for.
    repo.git({"config", "commit.template", "~/message.txt"});
    std::ofstream(std::filesystem::path(getenv("HOME")) / "message.txt") << "at home\n";
    EXPECT_EQ(commitTemplate(opened), "at home\n");
    std::filesystem::remove(repo / "message.txt");
    ASSERT_EQ(mkfifo((repo / "message.txt").c_str(), 0600), 0);
    repo.git({"config", "commit.template", (repo / "message.txt").string()});
    EXPECT_EQ(commitTemplate(opened), "");
}

TEST(AbortLoss, WritesNoIndexToFindOutWhatIsLost)
{
    StoppedRepository repo;
    int status = 0;
    repo.write("b", "1\n").commit("three");
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    fs::last_write_time(repo / "b", fs::last_write_time(repo / "b") - std::chrono::hours(1));
    repo.write("a", "half\n");
    const std::string index = readFile(repo / ".git/index");
    const auto operation = operationInProgress(repo.repository(), repo / ".git");
    const AbortLoss loss = abortLoss(repo.repository(), *operation, repo / ".git");
    EXPECT_EQ(loss.paths, std::vector<std::string>{"a"}) << "b only looks changed";
    EXPECT_TRUE(readFile(repo / ".git/index") == index);
}

TEST(TakeSide, TouchesOnlyTheNamedFile)
{
    StoppedRepository repo;
    int status = 0;
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    // Somebody put a folder, with files that git knows, where the conflict is.
    repo.remove("a").write("a/inside", "mine\n");
    std::string trashed;
    TemporaryFolder trash;
    takeSide(repo.repository(), {"a"}, ConflictSide::theirs, repo / ".git", [&](const fs::path& path) {
        trashed = path.filename().string();
        fs::rename(path, trash / "a");
    });
    EXPECT_EQ(trashed, "a");
    EXPECT_EQ(readFile(trash / "a/inside"), "mine\n");
    EXPECT_EQ(readFile(repo / "a"), "3\n");
}

// Opening a pipe waits for somebody who writes into it.
TEST(WorkingTree, IsReadWithoutWaitingForAPipe)
{
    StoppedRepository repo;
    repo.remove("a");
    ASSERT_EQ(::mkfifo((repo / "a").c_str(), 0600), 0);
    EXPECT_FALSE(holdsConflictMarkers(repo / "a"));
    EXPECT_EQ(fileSample(repo.repository(), "a", std::nullopt, 10).kind, FileSample::Kind::missing);
    ASSERT_EQ(::mkfifo((repo / ".git/MERGE_HEAD").c_str(), 0600), 0);
    EXPECT_TRUE(readOperation(repo / ".git")->isIncomplete);

    repo.write("long", std::string((64 << 10) - 4, 'x') + "\n<<<<<<< ours\n");
    EXPECT_TRUE(holdsConflictMarkers(repo / "long"));
}

} // namespace
} // namespace gitkit

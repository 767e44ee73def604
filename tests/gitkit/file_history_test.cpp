// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/BlameParser.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

namespace gitkit {
namespace {

using SampleKind = FileSample::Kind;

TEST(Blame, TellsWhereEachLineStoodAndWhereItsFileWasBefore)
{
    for (const bool isSha256 : {false, true}) {
        const std::vector<std::string> format{"--object-format=sha256"};
        TestRepository repo(isSha256 ? format : std::vector<std::string>{});
        repo.write("a \"b\"\t", "1\n2\n3\n4\n5\n").commit("create");
        const std::string first = repo.head();
        repo.git({"mv", "a \"b\"\t", "c"}).write("c", "new\n1\ntwo\n3\n4\n5\n").commit("rename");
        repo.write("c", "new\n1\ntwo\n3\n4\n5\nmine\n");
        const auto lines = repo.repository().blame("c", std::nullopt);
        ASSERT_EQ(lines.size(), 7U);
        EXPECT_EQ(lines[1].hash, first);
        EXPECT_EQ(lines[1].originalNumber, 1) << "in its own commit, not in the blamed file";
        EXPECT_EQ(*lines[1].origin, (BlameOrigin{"a \"b\"\t", std::nullopt})) << "made there: nothing before";
        EXPECT_EQ(lines[1].origin, lines[3].origin) << "one object for all lines of the commit";
        EXPECT_EQ(*lines[2].origin, (BlameOrigin{"c", BlameOrigin::Place{first, "a \"b\"\t"}}));
        EXPECT_EQ(*lines[6].origin, (BlameOrigin{"c", BlameOrigin::Place{repo.head(), "c"}})) << "not committed yet";
    }
}

TEST(Blame, DoesWithoutAListOfIgnoredCommitsThatIsMissing)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").git({"config", "blame.ignoreRevsFile", ".git-blame-ignore-revs"});
    EXPECT_EQ(repo.repository().blame("a", std::nullopt).size(), 1U);
    EXPECT_EQ(repo.repository().blame("a", "HEAD").size(), 1U);
}

TEST(FileHistory, LeavesOutAFolderThatHadTheFilesName)
{
    TestRepository repo;
    repo.write("a/b", "1\n").commit("folder").remove("a").write("a", "x\ny\nz\n").commit("file");
    const auto revisions = repo.repository().fileLog("a", std::nullopt, 9);
    ASSERT_EQ(revisions.size(), 1U);
    EXPECT_EQ(revisions[0].commit.subject, "file");
}

TEST(Blame, KeepsTheFilesOfACommitApartThatWroteLinesInTwoOfThem)
{
    const std::string hash(40, 'a');
    const std::string before(40, 'b');
    const auto lines = BlameParser::parse(hash + " 1 1 1\nauthor A\nprevious " + before + " x\nfilename x\n\tone\n" +
                                          hash + " 5 2 1\nfilename y\n\ttwo\n" + hash + " x 3\n\tthree\n");
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(*lines[0].origin, (BlameOrigin{"x", BlameOrigin::Place{before, "x"}}));
    EXPECT_EQ(*lines[1].origin, (BlameOrigin{"y", std::nullopt})) << "what went before belongs to the other file";
    EXPECT_EQ(lines[1].originalNumber, 5);
    EXPECT_EQ(lines[2].originalNumber, 0) << "a number that cannot be read";
}

TEST(FileHistory, CallsAMergeByTheNameThatTheFileHadThen)
{
    TestRepository repo;
    repo.write("old", "1\n2\n3\n4\n5\n6\n").commit("create").git({"branch", "side"});
    repo.write("old", "one\n2\n3\n4\n5\n6\n").commit("ours").git({"checkout", "-q", "side"});
    repo.write("old", "1\n2\n3\n4\n5\nsix\n").commit("theirs").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "--no-edit", "side"}).git({"mv", "old", "new"}).commit("rename");
    const auto revisions = repo.repository().fileLog("new", std::nullopt, 100);
    ASSERT_GE(revisions.size(), 4U);
    EXPECT_EQ(revisions.front().file.path, "new");
    for (std::size_t index = 1; index < revisions.size(); ++index)
        EXPECT_EQ(revisions[index].file.path, "old") << revisions[index].commit.subject;
    repo.remove("new").commit("delete");
    const auto deleted = repo.repository().fileLog("new", std::nullopt, 1);
    ASSERT_EQ(deleted.size(), 1U) << "a file that is gone, and no more than asked for";
    EXPECT_EQ(deleted[0].file.status, 'D');
}

TEST(FileSample, TellsWhatStandsAtAPath)
{
    TestRepository repo;
    repo.write("file", "0123456789").write("folder/f*", "star").commit("one");
    repo.git({"update-index", "--add", "--cacheinfo", "160000," + repo.head() + ",module"});
    repo.git({"commit", "-q", "-m", "two"});
    const GitRepository repository = repo.repository();
    const std::optional<std::string> head = repo.head();
    EXPECT_EQ(fileSample(repository, "file", head, 4), (FileSample{SampleKind::file, "0123"}));
    EXPECT_EQ(fileSample(repository, "file", std::nullopt, 4), (FileSample{SampleKind::file, "0123"}));
    EXPECT_EQ(fileSample(repository, "folder/f*", head, 100), (FileSample{SampleKind::file, "star"}));
    for (const auto& revision : {head, std::optional<std::string>()}) {
        EXPECT_EQ(fileSample(repository, "folder", revision, 4).kind, SampleKind::folder);
        EXPECT_EQ(fileSample(repository, "folder/*", revision, 4).kind, SampleKind::missing);
    }
    EXPECT_EQ(fileSample(repository, "module", head, 4).kind, SampleKind::submodule);
    EXPECT_THROW(fileSample(repository, "file", std::string(40, '1'), 4), GitError) << "an unknown revision";
}

} // namespace
} // namespace gitkit

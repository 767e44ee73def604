// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/BlameParser.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/FileLogStream.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>

namespace gitkit {
namespace {

using namespace std::chrono_literals;

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

using Files = std::map<std::string, std::string>;

/// Changes files of a tree: edits, moves, removes, and makes a folder of a file or a file of a folder.
void changeSome(Files& files, std::mt19937& random)
{
    const std::array<std::string, 5> names{"f", "g", "f/x", "f/y", "d/f \"\t"};
    const std::string& name = names[random() % names.size()];
    auto chosen = files.begin();
    if (!files.empty())
        std::advance(chosen, random() % files.size());
    switch (files.empty() ? 0 : random() % 6) {
    case 0:
        files[name] =
            "new " + std::to_string(random()) + "\n" + std::string(90, 'a' + static_cast<char>(random() % 26));
        break;
    case 1: {
        const std::string content = chosen->second;
        files.erase(chosen);
        files[name] = content;
        break;
    }
    case 2:
        files.erase(chosen);
        break;
    default:
        chosen->second += std::to_string(random() % 9) + "\n";
    }
    // A name is that of a file or of a folder.
    if (files.contains("f") && name.starts_with("f/"))
        files.erase("f");
    if (files.contains("f"))
        std::erase_if(files, [](const auto& file) { return file.first.starts_with("f/"); });
}

void makeHistory(const TestRepository& repo, std::mt19937& random, int count)
{
    std::vector<Files> trees{{}};
    std::string stream;
    const auto data = [](const std::string& text) {
        return "data " + std::to_string(text.size()) + "\n" + text + "\n";
    };
    for (int mark = 1; mark <= count; ++mark) {
        const auto earlier = [&] { return std::max(1, mark - 1 - static_cast<int>(random() % 4)); };
        const int parent = mark == 1 ? 0 : random() % 3 ? mark - 1 : earlier();
        const int other = mark == 1 ? 0 : earlier();
        Files files = trees[static_cast<std::size_t>(parent)];
        const bool isMerge = other != parent && random() % 3 == 0;
        if (!isMerge || random() % 2)
            changeSome(files, random);
        stream += "commit refs/heads/main\nmark :" + std::to_string(mark) + "\ncommitter C <c@example.org> " +
                  std::to_string(1'700'000'000 + mark) + " +0000\n" + data("commit " + std::to_string(mark));
        if (parent > 0)
            stream += "from :" + std::to_string(parent) + "\n";
        if (isMerge)
            stream += "merge :" + std::to_string(other) + "\n";
        stream += "deleteall\n";
        for (const auto& [path, content] : files)
            stream += "M 100644 inline " + (path.find('"') == std::string::npos ? path : "\"d/f \\\"\\t\"") + "\n" +
                      data(content);
        trees.push_back(std::move(files));
    }
    repo.read({"fast-import", "--quiet", "--force"}, stream);
}

TEST(FileLogStream, FindsTheSameAsTheWholeList)
{
    const char* const given = std::getenv("PLOVIK_SEED");
    const unsigned seed = given ? static_cast<unsigned>(std::atol(given)) : std::random_device{}();
    SCOPED_TRACE("PLOVIK_SEED=" + std::to_string(seed));
    std::mt19937 random(seed);
    std::map<char, int> statuses;
    for (int round = 0; round < 5; ++round) {
        TestRepository repo;
        makeHistory(repo, random, 150);
        const GitRepository git(repo.path());
        for (const std::string path : {"f", "g", "f/x", "d/f \"\t"}) {
            const std::string from = "main~" + std::to_string(random() % 9);
            const std::optional<std::string> revision(repo.read({"rev-parse", from}).substr(0, 40));
            std::vector<FileRevision> expected = git.fileLog(path, revision, 10'000);
            for (FileRevision& each : expected) {
                each.commit.refs.clear();
                ++statuses[each.file.status];
            }
            std::vector<FileRevision> found;
            FileLogStream stream(git, path, revision);
            while (!stream.hasEnded()) {
                const std::size_t most = 1 + random() % 7;
                const auto piece = stream.next(most, 10min);
                EXPECT_TRUE(piece.size() == most || stream.hasEnded());
                found.insert(found.end(), piece.begin(), piece.end());
            }
            EXPECT_EQ(found, expected) << path << " in " << from;
            EXPECT_TRUE(stream.next(1, 1ms).empty());
        }
    }
    EXPECT_TRUE(statuses['R'] > 0 && statuses['D'] > 0 && statuses['A'] > 0) << "the histories are too plain";
}

TEST(FileLogStream, TakesRecordsFromWhateverHasArrived)
{
    std::string all;
    const auto record = [&all](const std::string& hash, std::initializer_list<const char*> files) {
        for (const std::string& field : {hash, std::string("p"), std::string("M"), std::string("R100"),
                                         std::string("5"), std::string("6"), std::string()})
            all += field + '\0';
        for (const char* field : files)
            all += std::string(field) + '\0';
    };
    record("a1", {"\nR100", "M", "D"});
    record("b2", {}); // a merge
    record("c3", {"\nD", "f", "A", "f/x", "R087", "f/y", "A"});
    record("d4", {"\nM", "M"});
    record("e5", {});
    const auto expected = [](std::size_t index) {
        const std::array<CommitFile, 5> files{CommitFile{'R', "D", "M", {}}, CommitFile{'M', "f", {}, {}},
                                              CommitFile{'D', "f", {}, {}}, CommitFile{'M', "M", {}, {}},
                                              CommitFile{'M', "f", {}, {}}};
        return files.at(index);
    };
    for (std::size_t cut = 0; cut <= all.size(); ++cut) {
        std::vector<FileRevision> found;
        std::string bytes;
        for (const bool isAll : {false, true}) {
            bytes += isAll ? all.substr(cut) : all.substr(0, cut);
            std::string_view rest = bytes;
            while (auto read = LogParser::takeRevision(rest, "f", isAll))
                found.push_back(*std::move(read));
            bytes.erase(0, bytes.size() - rest.size());
        }
        EXPECT_EQ(bytes, "");
        ASSERT_EQ(found.size(), 5U) << "cut at " << cut;
        for (std::size_t index = 0; index < found.size(); ++index)
            EXPECT_EQ(found[index].file, expected(index)) << index << ", cut at " << cut;
        EXPECT_EQ(found[4].commit.hash, "e5");
    }
    std::string_view first = std::string_view(all).substr(0, all.find('D') + 2);
    EXPECT_TRUE(LogParser::takeRevision(first, "f", false)) << "known before the next commit is found";
}

TEST(FileLogStream, FollowsLinesUnderTheNamesThatTheFileHad)
{
    TestRepository repo;
    repo.write("a", "1\n2\n3\n4\n").commit("one").write("a", "1\n2\n3\n4 elsewhere\n").commit("elsewhere");
    repo.git({"mv", "a", "b:\"c 3,4"}).commit("renamed");
    const std::string mark("\x1e");
    repo.write("b:\"c 3,4", "0\n1\n2 two\n3\n4 elsewhere\n").commit(mark + std::string(40, 'a') + " two");
    repo.write("b:\"c 3,4", "0\n1\n2 two\n3 three\n4 elsewhere\n").commit("three");
    const GitRepository git(repo.path());
    FileLogStream stream(git, "b:\"c 3,4", repo.head(), LineRange{3, 4});
    std::vector<std::string> found;
    while (!stream.hasEnded()) {
        for (const FileRevision& revision : stream.next(1, 1min))
            found.push_back(revision.commit.subject + '|' + revision.file.path + '|' + revision.file.status);
    }
    EXPECT_EQ(found, (std::vector<std::string>{"three|b:\"c 3,4|M", mark + std::string(40, 'a') + " two|b:\"c 3,4|M",
                                               "one|a|A"}));
    EXPECT_THROW(FileLogStream(git, "a", repo.head(), LineRange{9, 9}).next(1, 1min), GitError);
}

TEST(FileLogStream, EndsItsGitAndTellsOfFailures)
{
    TestRepository repo;
    std::mt19937 random(1);
    makeHistory(repo, random, 20);
    std::stop_source stop;
    const GitRepository git(repo.path(), {.stop = stop.get_token()});
    EXPECT_THROW(FileLogStream(git, "f", std::string(40, '1')).next(1, 1min), GitError);
    EXPECT_THROW(FileLogStream(git, "f", "-x"), GitError);
    EXPECT_TRUE(FileLogStream(git, "nothing", std::nullopt).next(9, 1min).empty());
    FileLogStream stream(git, "f", std::nullopt);
    stop.request_stop();
    EXPECT_THROW(stream.next(9, 1min), RunStopped);
}

TEST(GitStream, HandsOnWhatHasComeWhileGitGoesOn)
{
    TestRepository repo;
    const GitRepository git(repo.path());
    GitStream stream = git.runner().stream({"-c", "alias.slow=!printf one; exec sleep 600", "slow"});
    std::string read;
    while (read.size() < 3)
        ASSERT_TRUE(stream.read(read));
    EXPECT_TRUE(stream.read(read, GitStream::Clock::now() + 20ms)) << "not at its end";
    EXPECT_EQ(read, "one");
}

} // namespace
} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/MovedLines.h"
#include "GitKit/PartialPatch.h"
#include "GitKit/parsers/BlameParser.h"
#include "GitKit/parsers/DiffParser.h"
#include "GitKit/repository/PartialDiscard.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <fstream>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

FileChange change(const GitRepository& repo, const std::string& path)
{
    for (const FileChange& file : repo.status().files) {
        if (file.path == path)
            return file;
    }
    throw std::runtime_error("no change in " + path);
}

ParsedDiff section(const GitRepository& repo, const std::string& path, const std::string& title)
{
    for (const DiffSection& each : repo.workingDiff(change(repo, path))) {
        if (each.title == title)
            return each.diff;
    }
    throw std::runtime_error("no section " + title);
}

std::set<int> changes(const ParsedDiff& diff)
{
    std::set<int> ids;
    for (const DiffLine& line : diff.lines) {
        if (line.isChange())
            ids.insert(line.id);
    }
    return ids;
}

std::string repeated(int count, const std::string& line)
{
    std::string text;
    for (int i = 0; i < count; ++i)
        text += line;
    return text;
}

std::vector<MovedBlock> movedIn(const std::string& lines, WhiteSpace whiteSpace = WhiteSpace::compared)
{
    ParsedDiff diff = DiffParser::parse("diff --git a/x b/x\n--- a/x\n+++ b/x\n@@ -1,9 +1,9 @@\n" + lines);
    diff.whiteSpace = whiteSpace;
    return movedBlocks(diff);
}

TEST(MovedBlocks, AreLongEnoughAndUnchanged)
{
    const std::string removed = "-void first() {\n-    second();\n-\n-    third = 4;\n-}\n";
    const std::string added = "+void first() {\n+    second();\n+\n+    third = 4;\n+}\n";
    EXPECT_EQ(movedIn(removed + " a\n" + added), (std::vector<MovedBlock>{{1, 7, 5}}));
    EXPECT_EQ(movedIn("+new();\n" + added + " a\n" + removed), (std::vector<MovedBlock>{{8, 2, 5}}));
    // A part of it is found as well, if it is long enough, and each line belongs to one block.
    EXPECT_EQ(
        movedIn("-}\n" + removed + " a\n+void first() {\n+    second();\n+\n+    third = 4;\n+    }\n b\n" + added),
        (std::vector<MovedBlock>{{2, 8, 4}}));
    EXPECT_TRUE(movedIn("-aaaaaaaaaaaaaaaaaaaaa\n-bbbbb\n-\n c\n+aaaaaaaaaaaaaaaaaaaaa\n+bbbbb\n+\n").empty());
    EXPECT_TRUE(movedIn("-a {\n-  b\n-}\n c\n+a {\n+  b\n+}\n").empty()) << "too few letters";
    const std::string deeper = "+  void first() {\n+      second();\n+\n+      third = 4;\n+  }\n";
    EXPECT_TRUE(movedIn(removed + " a\n" + deeper).empty());
    EXPECT_EQ(movedIn(removed + " a\n" + deeper, WhiteSpace::ignored).size(), 1U);
}

TEST(MovedBlocks, TakeLinearTimeWhateverTheLines)
{
    std::string text;
    for (const char sign : {'-', '+'}) {
        for (int i = 0; i < 60'000; ++i)
            text += std::string(1, sign) + (i % 3 == 0 ? "line " + std::to_string(sign == '+' ? 60'000 - i : i) : "}") +
                    "\n";
        text += " c\n";
    }
    ParsedDiff diff = DiffParser::parse("diff --git a/x b/x\n--- a/x\n+++ b/x\n@@ -1 +1 @@\n" + text, 200'000);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(movedBlocks(diff).empty());
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5)); // quadratic, it takes minutes
}

TEST(DiffParser, ReadsLinesNumbersCountsAndHeader)
{
    const ParsedDiff diff =
        DiffParser::parse("diff --git a/x b/x\nindex 1..2 100644\n--- a/x\n+++ b/x\n"
                          "@@ -12,3 +12,3 @@ f()\n a\n-b\n+caf\xe9\n\n\\ No newline at end of file\n");
    EXPECT_EQ(diff.patchHeader, "diff --git a/x b/x\nindex 1..2 100644\n--- a/x\n+++ b/x");
    ASSERT_EQ(diff.lines.size(), 6u);
    EXPECT_EQ(diff.lines[1].oldNumber, 12);
    EXPECT_EQ(diff.lines[2].kind, DiffLine::Kind::deletion);
    EXPECT_EQ(diff.lines[3].text, "caf\xef\xbf\xbd");
    EXPECT_EQ(diff.lines[3].bytes(), "caf\xe9");
    EXPECT_EQ(diff.lines[3].newNumber, 13);
    EXPECT_EQ(diff.lines[4].kind, DiffLine::Kind::context) << "git may leave out an empty line's blank";
    EXPECT_EQ(diff.lines[4].newNumber, 14);
    EXPECT_EQ(diff.lines[5].kind, DiffLine::Kind::meta);
    EXPECT_EQ(diff.additions, 1);
    EXPECT_EQ(diff.deletions, 1);
    EXPECT_EQ(DiffParser::hunkStart("@@ -0,0 +1 @@"), (HunkStart{0, 1}));
    EXPECT_EQ(DiffParser::parse("").lines.size(), 0u);
}

TEST(DiffParser, APatchIsOfOneTextFileAlone)
{
    const std::string one = "diff --git a/x b/x\n@@ -1 +1 @@\n-a\n+b\n";
    EXPECT_TRUE(DiffParser::parse(one).patchHeader.has_value());
    EXPECT_FALSE(DiffParser::parse(one + one).patchHeader.has_value());
    EXPECT_FALSE(DiffParser::parse("diff --cc x\n@@@ -1 -1 +1 @@@\n").patchHeader.has_value());
    const ParsedDiff binary = DiffParser::parse("diff --git a/x b/x\nBinary files a/x and b/x differ\n");
    EXPECT_TRUE(binary.isBinary);
    EXPECT_FALSE(binary.patchHeader.has_value());
    EXPECT_FALSE(binary.isEmpty());
}

TEST(DiffParser, StopsAtTheLimitAndThenNothingOfItApplies)
{
    const std::string head = "diff --git a/x b/x\n@@ -0,0 +1,9 @@\n";
    const ParsedDiff exact = DiffParser::parse(head + repeated(4999, "+l\n"), 5000);
    EXPECT_EQ(exact.lines.size(), 5000u);
    EXPECT_TRUE(exact.isTruncated);
    EXPECT_EQ(partialPatch(exact, {1}, PatchDirection::forward), std::nullopt);
    EXPECT_FALSE(DiffParser::parse(head + repeated(4998, "+l\n"), 5000).isTruncated);
}

TEST(PartialPatch, ChangesOnlyTheLeadingPrefixAndLeavesTheModeAlone)
{
    const std::string deleted =
        "diff --git a/data/a/x b/data/a/x\ndeleted file mode 100644\nindex 1..0\n--- a/data/a/x\n"
        "+++ /dev/null\n@@ -1,2 +0,0 @@\n-one\n-two\n";
    const ParsedDiff diff = DiffParser::parse(deleted);
    const auto patch = partialPatch(diff, {1}, PatchDirection::forward);
    EXPECT_EQ(patch, "diff --git a/data/a/x b/data/a/x\n--- a/data/a/x\n+++ b/data/a/x\n@@ -1,2 +1,1 @@\n-one\n two\n");
    EXPECT_EQ(partialPatch(diff, {1, 2}, PatchDirection::forward), deleted) << "all of it is the diff itself";

    const ParsedDiff mode =
        DiffParser::parse("diff --git \"a/t\\tx\" \"b/t\\tx\"\nold mode 100644\nnew mode 100755\n"
                          "index 1..2\n--- \"a/t\\tx\"\n+++ \"b/t\\tx\"\n@@ -1,2 +1,2 @@\n-a\n-b\n+c\n+d\n");
    const auto part = partialPatch(mode, {1, 3}, PatchDirection::forward);
    ASSERT_TRUE(part.has_value());
    EXPECT_EQ(part->find("mode"), std::string::npos);
    EXPECT_NE(partialPatch(mode, {1, 2, 3, 4}, PatchDirection::forward)->find("new mode 100755"), std::string::npos);
}

TEST(PartialPatch, RefusesHalfASymlinkAndHalfASubmodule)
{
    const auto diff = [](const std::string& mode) {
        return DiffParser::parse("diff --git a/x b/x\nindex 1..2 " + mode +
                                 "\n--- a/x\n+++ b/x\n@@ -1 +1 @@\n-a\n+b\n");
    };
    EXPECT_EQ(partialRefusal(diff("100644")), PartialRefusal::none);
    EXPECT_EQ(partialRefusal(diff("120000")), PartialRefusal::symlink);
    EXPECT_EQ(partialRefusal(diff("160000")), PartialRefusal::submodule);
    EXPECT_FALSE(partialPatch(diff("120000"), {2}, PatchDirection::forward).has_value());
    EXPECT_TRUE(partialPatch(diff("120000"), {1, 2}, PatchDirection::forward).has_value());
}

TEST(WorkingDiff, HasASectionForEachSideInOrder)
{
    TestRepository repo;
    repo.write("a", "1\n").write("gone", "x\n").commit("one");
    repo.write("a", "2\n").git({"add", "a"}).write("a", "3\n").write("new", "n\n").remove("gone");
    const GitRepository repository = repo.repository();
    const auto sections = repository.workingDiff(change(repository, "a"));
    ASSERT_EQ(sections.size(), 2u);
    EXPECT_EQ(sections[0].title, "Unstaged");
    EXPECT_EQ(sections[1].title, "Staged");
    EXPECT_EQ(sections[1].diff.lines.at(2).text, "2");
    const auto untracked = repository.workingDiff(change(repository, "new"));
    ASSERT_EQ(untracked.size(), 1u);
    EXPECT_EQ(untracked[0].title, "Untracked");
    EXPECT_EQ(untracked[0].diff.additions, 1);
    EXPECT_EQ(section(repository, "gone", "Unstaged").deletions, 1);
}

// A file named like a pattern stands for itself, and a directory above it for nothing else.
TEST(WorkingDiff, TakesPathsLiterally)
{
    TestRepository repo;
    for (const char* name : {"*", "[ab]", ":!a", "a", "-x", "line\nbreak", "caf\xe9"})
        repo.write(name, "1\n");
    repo.commit("one");
    for (const char* name : {"*", "[ab]", ":!a", "a", "-x", "line\nbreak", "caf\xe9"})
        repo.write(name, std::string("changed ") + name[0] + "\n");
    const GitRepository repository = repo.repository();
    for (const FileChange& file : repository.status().files) {
        const auto sections = repository.workingDiff(file);
        ASSERT_EQ(sections.size(), 1u) << file.path;
        EXPECT_EQ(sections[0].diff.additions, 1) << file.path;
        const auto staged =
            partialChange(file.path, sections[0].diff, changes(sections[0].diff), PatchDirection::forward);
        ASSERT_TRUE(staged.has_value()) << file.path;
        repository.applyToIndex(*staged);
    }
    EXPECT_EQ(repository.status().stagedCount(), 7);
}

TEST(WorkingDiff, ShowsUntrackedLinksAndAFileNamedLikeTheStandardInput)
{
    TestRepository repo;
    repo.write("folder/.gitignore", "*\n").commit("one").write("-", "dash\n");
    fs::create_directory_symlink("folder", repo / "link");
    const GitRepository repository = repo.repository();
    const ParsedDiff link = section(repository, "link", "Untracked");
    ASSERT_EQ(link.lines.size(), 3u);
    EXPECT_EQ(link.lines[1].text, "folder");
    const ParsedDiff dash = section(repository, "-", "Untracked");
    ASSERT_EQ(dash.lines.size(), 2u);
    EXPECT_EQ(dash.lines[1].text, "dash");
    repository.applyToIndex(*partialChange("-", dash, {1}, PatchDirection::forward));
    EXPECT_EQ(repo.read({"status", "--porcelain", "-uall"}), "A  -\n?? link");
}

TEST(WorkingDiff, ShowsAStagedRenameAsTheRenameAndUnstagesLinesOfIt)
{
    TestRepository repo;
    repo.write("old", "1\n2\n3\n4\n5\n6\n").commit("one").git({"mv", "old", "new\tname"});
    repo.write("new\tname", "one\n2\n3\n4\n5\nsix\n").git({"add", "-A"});
    const GitRepository repository = repo.repository();
    const auto unstage = [&](const std::set<int>& selected) {
        const ParsedDiff diff = section(repository, "new\tname", "Staged");
        const auto all = selected.empty() ? changes(diff) : selected;
        repository.applyToIndex(*partialChange("new\tname", diff, all, PatchDirection::reverse));
    };
    const ParsedDiff diff = section(repository, "new\tname", "Staged");
    EXPECT_EQ(diff.additions, 2);
    EXPECT_EQ(diff.deletions, 2);
    unstage({1, 2});
    EXPECT_EQ(repo.read({"show", ":new\tname"}), "1\n2\n3\n4\n5\nsix");
    unstage({});
    EXPECT_EQ(repo.read({"show", ":new\tname"}), "1\n2\n3\n4\n5\n6");
    EXPECT_EQ(repo.read({"status", "--porcelain", "-z"}).substr(0, 15), std::string("RM new\tname\0old", 15));
}

TEST(WorkingDiff, RunsNoConverterAndAppliesNone)
{
    TestRepository repo;
    repo.write(".gitattributes", "*.txt diff=loud\n").write("a.txt", "1\n").commit("one");
    repo.git({"config", "diff.loud.textconv", "echo CONVERTED;cat"}).git({"config", "diff.external", "echo REPLACED"});
    repo.git({"config", "diff.noprefix", "true"}).git({"config", "diff.context", "0"}).write("a.txt", "1\n2\n");
    const GitRepository repository = repo.repository();
    const ParsedDiff diff = section(repository, "a.txt", "Unstaged");
    ASSERT_EQ(diff.lines.size(), 3u);
    EXPECT_EQ(diff.lines[2].text, "2");
    repository.applyToIndex(*partialChange("a.txt", diff, {2}, PatchDirection::forward));
    EXPECT_EQ(repo.read({"show", ":a.txt"}), "1\n2");
    const CommitDetail detail = repository.commitDetail("HEAD", CommitKind::ordinary);
    EXPECT_EQ(repository.commitDiff(detail.hash, detail.files.at(1)).lines.at(1).text, "1");
}

TEST(WorkingDiff, ReadsNoMoreOfAHugeFileThanIsShown)
{
    TestRepository repo;
    repo.write("small", "1\n").commit("one");
    const std::string megabyte = repeated(1 << 14, std::string(63, 'x') + "\n");
    {
        std::ofstream lines(repo / "lines", std::ios::binary);
        for (int i = 0; i < 100; ++i)
            lines << megabyte;
        std::ofstream endless(repo / "endless", std::ios::binary);
        for (int i = 0; i < 64; ++i)
            endless << std::string(1 << 20, 'y');
    }
    const GitRepository repository = repo.repository();
    for (const char* name : {"lines", "endless"}) {
        const ParsedDiff diff = section(repository, name, "Untracked");
        EXPECT_TRUE(diff.isTruncated) << name;
        std::size_t kept = 0;
        for (const DiffLine& line : diff.lines)
            kept += line.text.size();
        EXPECT_LE(kept, std::size_t{17} << 20) << name;
    }
}

TEST(WorkingDiff, CountsAndReadsOnWhatWasCut)
{
    TestRepository repo;
    repo.write("small", "1\n").commit("one");
    repo.write("long", repeated(7000, "l\n")).write("exact", repeated(ParsedDiff::shownLines - 1, "l\n"));
    repo.write("wide", repeated(40, std::string(1 << 20, 'w') + "\n"));
    repo.write("huge", repeated(ParsedDiff::mostLines + 5, "\n"));
    const GitRepository repository = repo.repository();
    const auto read = [&](const char* path, DiffReach reach) {
        return repository.workingDiff(change(repository, path), {WhiteSpace::compared, reach}).at(0).diff;
    };
    const ParsedDiff counted = read("long", DiffReach::counted);
    EXPECT_EQ(counted.lines, read("long", DiffReach::beginning).lines);
    EXPECT_EQ(counted.extent, (DiffExtent{7001, true}));
    const ParsedDiff whole = read("long", DiffReach::whole);
    EXPECT_EQ(whole.lines.size(), 7001u);
    EXPECT_FALSE(whole.isTruncated);
    EXPECT_EQ(partialPatch(whole, {1}, PatchDirection::forward), std::nullopt);

    EXPECT_TRUE(read("exact", DiffReach::beginning).isTruncated);
    EXPECT_FALSE(read("exact", DiffReach::counted).isTruncated) << "there is no more of it";
    // A few long lines are cut by their bytes.
    EXPECT_EQ(read("wide", DiffReach::counted).lines, read("wide", DiffReach::beginning).lines);
    EXPECT_EQ(read("wide", DiffReach::counted).extent, (DiffExtent{41, true}));
    EXPECT_EQ(read("huge", DiffReach::counted).extent, (DiffExtent{ParsedDiff::mostLines, false}));
    EXPECT_EQ(read("huge", DiffReach::whole).lines.size(), std::size_t{ParsedDiff::mostLines});
    EXPECT_TRUE(read("huge", DiffReach::whole).isTruncated);
}

TEST(ApplyToIndex, RefusesWhatTheIndexNoLongerHolds)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").write("a", "1\nx\nx\n");
    const GitRepository repository = repo.repository();
    const ParsedDiff diff = section(repository, "a", "Unstaged");
    const auto once = partialChange("a", diff, {2}, PatchDirection::forward);
    repository.applyToIndex(*once);
    EXPECT_THROW(repository.applyToIndex(*once), GitError);
    EXPECT_EQ(repo.read({"show", ":a"}), "1\nx");

    const ParsedDiff now = section(repository, "a", "Unstaged");
    repo.write("a", "something else\n");
    EXPECT_THROW(discardPart(repository, *partialChange("a", now, changes(now), PatchDirection::reverse)), GitError);
    std::ifstream file(repo / "a");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "something else\n");
}

TEST(ApplyToIndex, WorksOnAFileThatIsOnlyMeantToBeAdded)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").write("new", "1\n2\n").git({"add", "-N", "new"});
    const GitRepository repository = repo.repository();
    const ParsedDiff diff = section(repository, "new", "Unstaged");
    repository.applyToIndex(*partialChange("new", diff, {1}, PatchDirection::forward));
    EXPECT_EQ(repo.read({"show", ":new"}), "1");
}

TEST(CommitDetails, ReadsCommitsMergesTagsAndStashes)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").git({"branch", "side"}).write("b", "1\n").commit("two");
    repo.git({"checkout", "-q", "side"}).write("c", "1\n").commit("three").git({"checkout", "-q", "main"});
    repo.git({"merge", "-q", "--no-ff", "-m", "subject\n\nbody", "side"}).git({"tag", "-a", "-m", "tag text", "v1"});
    const GitRepository repository = repo.repository();
    const CommitDetail merge = repository.commitDetail(repo.read({"rev-parse", "v1"}), CommitKind::ordinary);
    EXPECT_EQ(merge.hash, repo.head()) << "a tag stands for its commit";
    EXPECT_EQ(merge.message, "subject\n\nbody");
    EXPECT_EQ(merge.parents.size(), 2u);
    ASSERT_EQ(merge.files.size(), 1u) << "against the first parent";
    EXPECT_EQ(merge.files[0].path, "c");
    EXPECT_EQ(repository.commitDiff(merge.hash, merge.files[0]).additions, 1);

    repo.git({"mv", "a", "moved"}).commit("rename");
    const CommitDetail rename = repository.commitDetail(repo.head(), CommitKind::ordinary);
    ASSERT_EQ(rename.files.size(), 1u);
    EXPECT_EQ(rename.files[0].originalPath, "a");
    EXPECT_TRUE(repository.commitDiff(rename.hash, rename.files[0]).lines.empty());

    repo.write("b", "2\n").write("untracked", "u\n").git({"stash", "push", "-q", "--include-untracked"});
    const Stash stash = repository.stashes().at(0);
    const CommitDetail detail = repository.commitDetail(stash.hash, CommitKind::stash);
    ASSERT_EQ(detail.files.size(), 2u);
    EXPECT_EQ(detail.files[1].path, "untracked");
    EXPECT_EQ(detail.files[1].source, detail.parents.at(2));
    EXPECT_EQ(repository.commitDiff(stash.hash, detail.files[1]).lines.at(1).text, "u");
    EXPECT_EQ(repository.commitDetail(stash.hash, CommitKind::ordinary).files.size(), 1u);
}

TEST(FileHistory, FollowsRenamesAndBlamesEachLine)
{
    TestRepository repo;
    repo.write("old name\t", "1\n2\n3\n4\n").commit("create");
    repo.git({"mv", "old name\t", "new"}).commit("rename").write("new", "1\ntwo\n3\n4\n").commit("edit");
    const GitRepository repository = repo.repository();
    const auto revisions = repository.fileLog("new", std::nullopt, 100);
    ASSERT_EQ(revisions.size(), 3u);
    EXPECT_EQ(revisions[1].file.originalPath, "old name\t");
    EXPECT_EQ(revisions[2].file.path, "old name\t");
    EXPECT_EQ(revisions[2].file.status, 'A');
    EXPECT_EQ(repository.fileLog("old name\t", revisions[2].commit.hash, 100).size(), 1u);

    repo.write("new", "1\ntwo\n3\n4\n\tmine\n");
    const auto lines = repository.blame("new", std::nullopt);
    ASSERT_EQ(lines.size(), 5u);
    EXPECT_EQ(lines[0].summary, "create");
    EXPECT_EQ(lines[1].summary, "edit");
    EXPECT_EQ(lines[2].summary, "create") << "described where it first appeared";
    EXPECT_TRUE(lines[4].isUncommitted());
    EXPECT_EQ(lines[4].text, "\tmine");
    EXPECT_EQ(repository.blame("new", repo.head()).size(), 4u);
    EXPECT_THROW(repository.blame("nowhere", std::nullopt), GitError);
}

TEST(BlameParser, TakesWhatItCanOfMalformedOutput)
{
    EXPECT_TRUE(BlameParser::parse("").empty());
    const std::string hash(40, 'a');
    const auto lines = BlameParser::parse(hash + " 7\nauthor A\nauthor-time x\n\tone\n" + std::string(40, 'z') +
                                          " 1 9\n" + hash + " 1 9 1\n\t\ttwo\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].number, 1) << "a number that cannot be read is the next one";
    EXPECT_EQ(lines[0].date, Date{});
    EXPECT_EQ(lines[1].number, 9);
    EXPECT_EQ(lines[1].authorName, "A");
    EXPECT_EQ(lines[1].text, "\ttwo");
}

} // namespace
} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
// What is known of a commit's files besides their names: line counts, whole files as diffs compare them, and hashes for
// names.

#include "GitKit/PartialPatch.h"
#include "GitKit/parsers/NumStatParser.h"
#include "GitKit/repository/Blobs.h"
#include "GitKit/repository/Commits.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace gitkit {
namespace {

using Source = DiffSource;

std::vector<std::string> paths(const std::vector<CommitFile>& files)
{
    std::vector<std::string> list;
    for (const CommitFile& file : files)
        list.push_back(file.path);
    return list;
}

std::vector<std::string> paths(const std::vector<ChangeCounts>& counts)
{
    std::vector<std::string> list;
    for (const ChangeCounts& file : counts)
        list.push_back(file.path);
    return list;
}

ParsedDiff diffOf(const GitRepository& repository, const std::string& hash, const std::string& path)
{
    for (const CommitFile& file : repository.commitDetail(hash, CommitKind::ordinary).files) {
        if (file.path == path)
            return repository.commitDiff(hash, file);
    }
    throw std::runtime_error("no file " + path);
}

TEST(NumStatParser, TakesNamesAsBytesAndSkipsWhatItCannotRead)
{
    const std::string output = std::string("\n1\t2\ta\tb\nc") + '\0' + "-\t-\tpicture" + '\0' + "3\t0\t" + '\0' +
                               "old\tname" + '\0' + "new" + '\0' + "broken" + '\0' + "0\t0\tlast" + '\0';
    EXPECT_EQ(NumStatParser::parse(output),
              (std::vector<ChangeCounts>{
                  {"a\tb\nc", 1, 2}, {"picture", std::nullopt, std::nullopt}, {"new", 3, 0}, {"last", 0, 0}}));
    EXPECT_TRUE(NumStatParser::parse("").empty());
    EXPECT_TRUE(NumStatParser::parse(std::string("1\t1\t") + '\0' + "old").empty()) << "a rename without its new name";
}

TEST(ChangeCounts, StandInTheOrderOfTheFilesWhateverTheirNames)
{
    TestRepository repo;
    const std::string lines = "1\n2\n3\n4\n5\n6\n7\n8\n9\n";
    repo.write("moved", lines).write("tab\there", "1\n").write("gone", "x\ny\n").write("mode", "1\n").commit("one");
    repo.git({"mv", "moved", "new\nline"}).write("new\nline", lines + "10\n").remove("gone");
    repo.write("tab\there", "2\n").write("caf\xe9", "1\n").write("data", std::string("\0\1", 2));
    std::filesystem::permissions(repo / "mode", std::filesystem::perms::owner_all);
    repo.commit("two");
    const GitRepository repository = repo.repository();
    const auto counts = changeCounts(repository, repo.head(), CommitKind::ordinary);
    EXPECT_EQ(paths(counts), paths(repository.commitDetail(repo.head(), CommitKind::ordinary).files));
    const auto of = [&counts](const std::string& path) {
        const auto found = std::ranges::find(counts, path, &ChangeCounts::path);
        return found == counts.end() ? ChangeCounts{"none", -1, -1} : *found;
    };
    EXPECT_EQ(of("new\nline"), (ChangeCounts{"new\nline", 1, 0}));
    EXPECT_EQ(of("tab\there"), (ChangeCounts{"tab\there", 1, 1}));
    EXPECT_EQ(of("caf\xe9"), (ChangeCounts{"caf\xe9", 1, 0}));
    EXPECT_EQ(of("gone"), (ChangeCounts{"gone", 0, 2}));
    EXPECT_EQ(of("mode"), (ChangeCounts{"mode", 0, 0}));
    EXPECT_EQ(of("data"), (ChangeCounts{"data", std::nullopt, std::nullopt}));
    EXPECT_EQ(changeCounts(repository, repo.head() + "^", CommitKind::ordinary).size(), 4U) << "of a root commit";
}

TEST(ChangeCounts, OfAMergeAreThoseAgainstTheFirstParentAndOfAStashIncludeUntrackedFiles)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").git({"checkout", "-q", "-b", "side"}).write("b", "1\n2\n").commit("side");
    repo.git({"checkout", "-q", "main"}).write("a", "2\n").commit("two");
    repo.git({"merge", "-q", "--no-ff", "-m", "merge", "side"});
    const GitRepository repository = repo.repository();
    EXPECT_EQ(changeCounts(repository, repo.head(), CommitKind::ordinary), (std::vector<ChangeCounts>{{"b", 2, 0}}));

    repo.write("a", "3\n").write("new", "1\n2\n3\n").git({"stash", "push", "-q", "--include-untracked"});
    const std::string stash = repo.read({"rev-parse", "stash"});
    const auto counts = changeCounts(repository, stash, CommitKind::stash);
    EXPECT_EQ(counts, (std::vector<ChangeCounts>{{"a", 1, 1}, {"new", 3, 0}}));
    EXPECT_EQ(paths(counts), paths(repository.commitDetail(stash, CommitKind::stash).files));
    repo.write("a", "4\n").git({"stash", "push", "-q"});
    EXPECT_EQ(changeCounts(repository, repo.read({"rev-parse", "stash"}), CommitKind::stash).size(), 1U);
}

TEST(CommitDetails, AreTakenApartWhateverTheMessageHolds)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one\x1e\x1f\n\nM\ta\n:100644 100644 M\n\n\n");
    repo.git({"commit", "-q", "--allow-empty", "--allow-empty-message", "-m", ""});
    const GitRepository repository = repo.repository();
    const CommitDetail first = repository.commitDetail(repo.head() + "^", CommitKind::ordinary);
    EXPECT_EQ(first.message, "one\x1e\x1f\n\nM\ta\n:100644 100644 M");
    EXPECT_EQ(first.files, (std::vector<CommitFile>{{'A', "a", {}, {}}}));
    const CommitDetail empty = repository.commitDetail(repo.head(), CommitKind::ordinary);
    EXPECT_EQ(empty.message, "");
    EXPECT_TRUE(empty.files.empty());
    EXPECT_EQ(empty.parents, std::vector<std::string>{first.hash});
}

TEST(DiffSides, AreTheWholeFilesOfADiff)
{
    TestRepository repo;
    const std::string bytes("\xef\xbb\xbf"
                            "a\r\n\0caf\xe9\n\n",
                            13);
    repo.write("a", "1\n").commit("one").write("a", bytes).write("b", "new").commit("two");
    const GitRepository repository = repo.repository();
    const ParsedDiff changed = diffOf(repository, repo.head(), "a");
    EXPECT_EQ(diffSides(repository, {changed.oldBlob, changed.newBlob, {}}, 1000), (DiffSides{"1\n", bytes}));
    EXPECT_EQ(diffSides(repository, {changed.oldBlob, changed.newBlob, {}}, 5), (DiffSides{"1\n", std::nullopt}));
    EXPECT_EQ(diffSides(repository, {changed.oldBlob, changed.newBlob, {}}, bytes.size()), (DiffSides{"1\n", bytes}));
    const ParsedDiff added = diffOf(repository, repo.head(), "b");
    EXPECT_EQ(diffSides(repository, {added.oldBlob, added.newBlob, {}}, 1000), (DiffSides{std::nullopt, "new"}));
    EXPECT_EQ(diffSides(repository, {}, 1000), DiffSides{});
}

TEST(DiffSides, TakeWhatIsNoBlobFromTheWorkingTree)
{
    TestRepository repo;
    repo.write("a", "1\n").write("link", "file\n").commit("one").write("a", "working\n").remove("link");
    std::filesystem::create_symlink("nowhere", repo / "link");
    const GitRepository repository = repo.repository();
    for (const auto& [path, expected] : {std::pair("a", "working\n"), std::pair("link", "nowhere")}) {
        const std::vector<FileChange> files = repository.status().files;
        const auto file = std::ranges::find(files, path, &FileChange::path);
        ASSERT_NE(file, files.end()) << path;
        const ParsedDiff diff = repository.workingDiff(*file).front().diff;
        if (!diff.newBlob)
            continue; // a change of type is two diffs
        EXPECT_EQ(diffSides(repository, {diff.oldBlob, diff.newBlob, path}, 100).after, expected);
        EXPECT_EQ(diffSides(repository, {diff.oldBlob, diff.newBlob, path}, 3).after, std::nullopt) << "too large";
        EXPECT_EQ(diffSides(repository, {diff.oldBlob, diff.newBlob, {}}, 100).after, std::nullopt);
        EXPECT_EQ(diffSides(repository, {diff.oldBlob, diff.newBlob, "gone"}, 100).after, std::nullopt);
    }
}

TEST(Blobs, ComeInTheOrderAskedForWithGapsForWhatIsMissingTooLargeOrNoFile)
{
    TestRepository repo;
    repo.write("a", "1\n").write("empty", "").write("large", std::string(100, 'x')).commit("one");
    const GitRepository repository = repo.repository();
    const auto blob = [&repo](const char* path) { return repo.read({"rev-parse", std::string("HEAD:") + path}); };
    const std::string missing(40, '1');
    const auto found =
        blobs(repository, {blob("large"), missing, blob("a"), repo.head(), "not a hash", blob("empty"), blob("a")}, 50);
    EXPECT_EQ(found, (std::vector<std::optional<std::string>>{std::nullopt, std::nullopt, "1\n", std::nullopt,
                                                              std::nullopt, "", "1\n"}));
    EXPECT_TRUE(blobs(repository, {}, 50).empty());
}

TEST(ResolveCommit, PeelsTagsAndRefusesWhatIsNone)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("one").git({"tag", "-a", "-m", "release", "v1"});
    const GitRepository repository = repo.repository();
    for (const std::string& name : {std::string("v1"), std::string("main"), std::string("HEAD"), repo.head(),
                                    repo.head().substr(0, 7), repo.read({"rev-parse", "v1"})})
        EXPECT_EQ(resolveCommit(repository, name), repo.head()) << name;
    for (const char* name : {"", "nothing", "1234567", "HEAD:a", "--all", "-f", "main nothing", "main..v1"})
        EXPECT_THROW(resolveCommit(repository, name), GitError) << name;
}

// Lines that a diff leaves out because only their blanks differ would be lost, or glued, by what is made from it.
TEST(WhiteSpace, ADiffThatIgnoresItIsNothingToApply)
{
    TestRepository repo;
    repo.write("a", "one\ntwo\nthree\n").commit("one").write("a", "  one\ntwo\nTHREE\n");
    const GitRepository repository = repo.repository();
    const FileChange file = repository.status().files.at(0);
    const ParsedDiff all = repository.workingDiff(file).at(0).diff;
    const ParsedDiff some = repository.workingDiff(file, {WhiteSpace::ignored}).at(0).diff;
    EXPECT_EQ(all.additions, 2);
    EXPECT_EQ(some.additions, 1);
    EXPECT_EQ(some.whiteSpace, WhiteSpace::ignored);
    std::set<int> changes;
    for (const DiffLine& line : some.lines) {
        if (line.isChange())
            changes.insert(line.id);
    }
    ASSERT_EQ(changes.size(), 2U);
    for (const PatchDirection direction : {PatchDirection::forward, PatchDirection::reverse})
        EXPECT_EQ(partialPatch(some, changes, direction), std::nullopt);
    EXPECT_NE(partialPatch(all, changes, PatchDirection::forward), std::nullopt);

    repo.write("a", " one\ntwo\nthree\n").commit("blanks");
    const ParsedDiff blanks = repository.commitDiff(repo.head(), {'M', "a", {}, {}}, {WhiteSpace::ignored});
    EXPECT_TRUE(blanks.lines.empty());
    EXPECT_EQ(repository.commitDiff(repo.head(), {'M', "a", {}, {}}).additions, 1);
}

} // namespace
} // namespace gitkit

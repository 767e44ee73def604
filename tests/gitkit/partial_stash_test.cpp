// SPDX-License-Identifier: GPL-3.0-or-later
// Stashes of a part of the changes: what is meant goes and comes back as it was, and the rest does not move.

#include "GitKit/undo/PartialStash.h"

#include "GitKit/PartialPatch.h"
#include "GitKit/records/DiffSection.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace gitkit {
namespace {

std::string lines(std::vector<std::pair<int, const char*>> changed)
{
    std::string text;
    for (int number = 1; number <= 20; ++number) {
        const auto found = std::ranges::find(changed, number, &std::pair<int, const char*>::first);
        text += (found == changed.end() ? "line " + std::to_string(number) : std::string(found->second)) + '\n';
    }
    return text;
}

struct PartialStash : testing::Test {
    PartialStash()
    {
        repo.write(".gitattributes", "crlf text eol=crlf\n").write("a", lines({})).write("b", lines({}));
        repo.write("crlf", "x\r\n").write("gone", "1\n").write("old", lines({})).commit("one");
    }

    std::string status() const { return repo.read({"status", "--porcelain", "--untracked-files=all"}); }
    std::string inStash() const
    {
        return repo.read({"stash", "show", "--include-untracked", "--name-status", "--no-renames"});
    }
    std::vector<FileChange> changes(const std::vector<std::string>& paths) const
    {
        std::vector<FileChange> found;
        for (const FileChange& file : repo.repository().status().files) {
            if (std::ranges::find(paths, file.path) != paths.end())
                found.push_back(file);
        }
        EXPECT_EQ(found.size(), paths.size());
        return found;
    }
    void pop() { repo.repository().stashApply(repo.repository().stashes().front(), StashUse::pop); }

    TestRepository repo;
};

TEST_F(PartialStash, TakesFilesAndLeavesTheOthers)
{
    repo.write("a", lines({{1, "staged"}})).git({"add", "a"}).write("a", lines({{1, "staged"}, {20, "mine"}}));
    repo.write("crlf", "y\r\nz\r\n").write("new", "n").git({"add", "new"}).write("dir/un\xe4", "u").write("stays", "s");
    repo.git({"mv", "old", "moved"}).remove("gone");
    repo.write("b", lines({{3, "other"}})).git({"add", "b"}).write("b", lines({{3, "other"}, {9, "more"}}));
    const std::string before = wholeState(repo);
    stashFiles(repo.repository(), changes({"a", "crlf", "new", "dir/un\xe4", "moved", "gone"}), "some of it");
    EXPECT_EQ(status(), "MM b\n?? stays");
    EXPECT_EQ(repo.read({"stash", "list", "--format=%gs"}), "On main: some of it");
    EXPECT_EQ(inStash(), "M\ta\nM\tcrlf\nA\t\"dir/un\\344\"\nD\tgone\nA\tmoved\nA\tnew\nD\told");
    EXPECT_FALSE(std::filesystem::exists(repo / "dir"));
    repo.git({"gc", "-q", "--prune=now"});

    // What is staged elsewhere keeps git from staging again what was.
    repo.git({"stash", "push", "-q"});
    repo.repository().stashApply(repo.repository().stashes()[1], StashUse::apply);
    EXPECT_EQ(repo.read({"show", ":a"}) + '\n', lines({{1, "staged"}}));
    repo.git({"stash", "drop", "-q", "stash@{1}"}).git({"stash", "pop", "-q"});
    repo.git({"reset", "-q", "--", "b"}).write("b", lines({{3, "other"}})).git({"add", "b"});
    repo.write("b", lines({{3, "other"}, {9, "more"}}));
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(PartialStash, TakesWhatIsStagedOutOfFilesWithOtherChanges)
{
    repo.write("a", lines({{1, "staged"}})).write("new", "n").git({"add", "-A"});
    repo.write("a", lines({{1, "staged"}, {20, "mine"}})).write("b", lines({{5, "mine"}})).write("stays", "s");
    const std::string before = wholeState(repo);
    stashStaged(repo.repository(), "");
    EXPECT_EQ(status(), " M a\n M b\n?? stays");
    EXPECT_EQ(bytesAt(repo / "a"), lines({{20, "mine"}}));
    EXPECT_EQ(inStash(), "M\ta\nA\tnew");
    EXPECT_THAT(repo.read({"stash", "list", "--format=%gs"}), testing::StartsWith("WIP on main: "));
    repo.git({"stash", "push", "-q"});
    repo.repository().stashApply(repo.repository().stashes()[1], StashUse::apply);
    EXPECT_EQ(bytesAt(repo / "a"), lines({{1, "staged"}}));
    EXPECT_EQ(repo.read({"diff", "--cached", "--name-only"}), "a\nnew");
    EXPECT_NE(before, wholeState(repo));

    // Where other changes are in the same lines, it is all or nothing.
    repo.git({"stash", "clear"}).write("a", lines({{1, "staged and changed"}}));
    const std::string mixed = wholeState(repo);
    EXPECT_THROW(stashStaged(repo.repository(), "m"), GitError);
    EXPECT_EQ(wholeState(repo), mixed);
}

TEST_F(PartialStash, TakesLinesOfAFile)
{
    repo.write("a", lines({{1, "first"}, {20, "last"}})).write("b", lines({{1, "staged"}})).git({"add", "b"});
    const auto stashed = [this](const std::string& path, int number) {
        const GitRepository kit = repo.repository();
        const ParsedDiff diff = kit.workingDiff(changes({path}).front()).back().diff;
        std::set<int> selected;
        int hunk = -1;
        for (const DiffLine& line : diff.lines) {
            hunk += line.kind == DiffLine::Kind::hunk ? 1 : 0;
            if (line.isChange() && hunk == number)
                selected.insert(line.id);
        }
        stashLines(kit, partialChange(path, diff, selected, PatchDirection::reverse).value(), "lines");
    };
    stashed("a", 1);
    EXPECT_EQ(bytesAt(repo / "a"), lines({{1, "first"}}));
    EXPECT_EQ(status(), " M a\nM  b");
    repo.git({"stash", "push", "-q", "-m", "rest"});
    repo.git({"stash", "pop", "-q", "stash@{1}"});
    EXPECT_EQ(bytesAt(repo / "a"), lines({{20, "last"}}));

    // Lines that build on staged ones are nothing without them.
    repo.git({"reset", "-q", "--hard"}).git({"stash", "clear"});
    repo.write("a", lines({{5, "staged"}})).git({"add", "a"}).write("a", lines({{5, "staged"}, {6, "next"}}));
    const std::string before = wholeState(repo);
    EXPECT_THROW(stashed("a", 0), GitError);
    EXPECT_EQ(wholeState(repo), before);
}

TEST_F(PartialStash, ChangesNothingWhereItCannotBeDone)
{
    repo.write("a", "mine\n").write("un", "u").remove("gone").write("gone/inside", "stands there");
    const std::vector<FileChange> files = changes({"a", "un"});
    const std::vector<FileChange> gone = changes({"gone"});
    const auto refused = [this](const std::vector<FileChange>& what) {
        const std::string before = wholeState(repo);
        EXPECT_THROW(stashFiles(repo.repository(), what, "m"), GitError);
        EXPECT_EQ(wholeState(repo), before);
    };
    refused(gone);                          // its place is taken by a folder
    repo.write(".git/refs/stash.lock", ""); // the stash cannot be put into the list
    refused(files);
    repo.remove(".git/refs/stash.lock").write(".git/MERGE_HEAD", repo.head());
    refused(files);
    repo.remove(".git/MERGE_HEAD").git({"add", "-N", "un"});
    refused(changes({"un"}));
}

TEST_F(PartialStash, KeepsTheStashWhereAFilterFails)
{
    repo.write(".gitattributes", "a filter=odd\n").commit("filtered");
    repo.git({"config", "filter.odd.smudge", "false"}).git({"config", "filter.odd.clean", "cat"});
    repo.git({"config", "filter.odd.required", "true"}).write("a", "mine\n").write("un", "u");
    EXPECT_THROW(stashFiles(repo.repository(), changes({"a", "un"}), "m"), GitError);
    EXPECT_EQ(repo.read({"show", "stash@{0}:a"}) + repo.read({"show", "stash@{0}^3:un"}), "mineu");
    repo.git({"config", "filter.odd.smudge", "cat"}).git({"stash", "clear"}).write("a", "mine\n").git({"add", "a"});
    repo.git({"config", "filter.odd.smudge", "false"});
    EXPECT_THROW(stashStaged(repo.repository(), "m"), GitError);
    EXPECT_EQ(repo.read({"show", "stash@{0}:a"}), "mine");
}

} // namespace
} // namespace gitkit

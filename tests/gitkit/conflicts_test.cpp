// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/EveryConflict.h"

#include <gtest/gtest.h>

#include <map>

namespace gitkit {
namespace {

using NameKind = ConflictName::Kind;
using enum ConflictKind;

ConflictList conflictsIn(const TestRepository& repo, const std::string& stash = {})
{
    const GitRepository door = repo.repository();
    const std::filesystem::path directory = gitDirectories(door).own;
    return conflictList(door, {directory, operationInProgress(door, directory), stash});
}

Conflict conflictAt(const TestRepository& repo, const std::string& path)
{
    for (Conflict& conflict : conflictsIn(repo).conflicts) {
        if (conflict.path == path)
            return conflict;
    }
    ADD_FAILURE() << "no conflict in " << path;
    return {};
}

TEST(Conflicts, EachKindIsKnown)
{
    if (!can(Ability::mergesByOrt))
        GTEST_SKIP() << "the index has other entries";
    TestRepository repo;
    makeEveryConflict(repo);
    runIntoConflicts(repo, {"merge", "topic"});
    std::map<std::string, ConflictKind> kinds;
    std::map<std::string, std::vector<std::string>> related;
    for (const Conflict& conflict : conflictsIn(repo).conflicts) {
        kinds[conflict.path] = conflict.kind;
        if (!conflict.related.empty())
            related[conflict.path] = conflict.related;
    }
    EXPECT_EQ(kinds, (std::map<std::string, ConflictKind>{{"both", bothChanged},
                                                          {"added", bothAdded},
                                                          {"bin", binary},
                                                          {"link", link},
                                                          {"goneLeft", deletedLeft},
                                                          {"goneRight", deletedRight},
                                                          {"f", renamedBoth},
                                                          {"newLeft", renamedLeft},
                                                          {"newRight", renamedRight},
                                                          {"same", sameName},
                                                          {"dir~topic", folderAndFile},
                                                          {"typed", fileAndLink}}));
    EXPECT_EQ(related,
              (std::map<std::string, std::vector<std::string>>{{"f", {"fLeft", "fRight"}}, {"typed", {"typed~HEAD"}}}));
    // The index has the merged text under both names; a side's own is in its tree.
    const Conflict renamed = conflictAt(repo, "f");
    const ConflictContents contents = conflictContents(repo.repository(), renamed, 1000);
    EXPECT_EQ(contents.base, tenLines("f"));
    EXPECT_EQ(contents.left, tenLines("f", 9, "left"));
    EXPECT_EQ(contents.right, tenLines("f", 2, "right"));
    EXPECT_EQ(conflictAt(repo, "dir~topic").right->path, "dir");
    EXPECT_EQ(conflictAt(repo, "newRight").base->path, "renamedRight");
}

TEST(Conflicts, ModesSubmodulesAndFoldersThatMovedAreKnown)
{
    TestRepository repo;
    const auto stages = [&](const char* path, const char* base, const char* left, const char* right) {
        const std::string hash = repo.read({"hash-object", "-w", "--stdin"}, "x");
        std::string entries = "0 " + std::string(40, '0') + "\t" + path + "\n";
        int number = 0;
        for (const char* const mode : {base, left, right}) {
            ++number;
            if (*mode != '\0')
                entries += std::string(mode) + ' ' + hash + ' ' + std::to_string(number) + '\t' + path + '\n';
        }
        repo.git({"update-index", "--index-info"}, entries);
    };
    repo.write("old/a", tenLines("a")).write("old/b", tenLines("b")).commit("base");
    repo.git({"checkout", "-q", "-b", "topic"}).write("old/new", tenLines("new")).commit("adds");
    repo.git({"checkout", "-q", "main"}).git({"mv", "old", "moved"}).commit("moves");
    runIntoConflicts(repo, {"merge", "topic"});
    const Conflict moved = conflictAt(repo, "moved/new");
    EXPECT_EQ(moved.kind, folderRenamed);
    EXPECT_EQ(moved.right->path, "old/new");
    stages("mode", "100644", "100755", "100644");
    stages("module", "160000", "160000", "160000");
    EXPECT_EQ(conflictAt(repo, "mode").kind, mode);
    EXPECT_EQ(conflictAt(repo, "module").kind, submodule);
    EXPECT_EQ(submoduleSides(repo.repository(), conflictAt(repo, "module")), std::nullopt);
}

TEST(Conflicts, AttributesRememberedAnswersAndEditsAreTold)
{
    TestRepository repo;
    repo.git({"config", "rerere.enabled", "true"}).write(".gitattributes", "locked -merge\na conflict-marker-size=9\n");
    repo.write("a", "1\n")
        .write("b", "1\n")
        .write("locked", "1\n")
        .commit("base")
        .git({"checkout", "-q", "-b", "topic"});
    repo.write("a", "right\n").write("b", "right\n").write("locked", "right\n").commit("right");
    repo.git({"checkout", "-q", "main"})
        .write("a", "left\n")
        .write("b", "left\n")
        .write("locked", "left\n")
        .commit("left");
    runIntoConflicts(repo, {"merge", "topic"});
    EXPECT_EQ(conflictAt(repo, "locked").kind, binary);
    EXPECT_EQ(conflictAt(repo, "a").markerSize, 9);
    for (const char* path : {"a", "b"}) {
        EXPECT_FALSE(conflictAt(repo, path).isRemembered);
        EXPECT_FALSE(conflictAt(repo, path).isEdited);
    }
    repo.write("b", "typed\n");
    EXPECT_TRUE(conflictAt(repo, "b").isEdited);
    EXPECT_FALSE(conflictAt(repo, "b").isRemembered) << "the markers are gone, but git waits for the answer";
    repo.write("a", "both\n").git({"add", "a", "b"}).git({"rerere"}).git({"merge", "--abort"});
    runIntoConflicts(repo, {"merge", "topic"});
    EXPECT_TRUE(conflictAt(repo, "a").isRemembered);
    EXPECT_EQ(conflictContents(repo.repository(), conflictAt(repo, "a"), 100).working, "both\n");
}

TEST(Conflicts, TheWorkingFileIsReadAsItWouldBeInTheRepository)
{
    TestRepository repo;
    repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"}).write("a", "2\n").commit("right");
    repo.git({"checkout", "-q", "main"}).write("a", "3\n").commit("left").git({"config", "core.autocrlf", "true"});
    runIntoConflicts(repo, {"merge", "topic"});
    repo.write("a", "typed\r\n");
    const Conflict conflict = conflictAt(repo, "a");
    EXPECT_EQ(conflictContents(repo.repository(), conflict, 100).working, "typed\n");
    EXPECT_EQ(conflictContents(repo.repository(), conflict, 1).left, std::nullopt);
    std::filesystem::remove(repo / "a");
    std::filesystem::create_directory(repo / "a");
    EXPECT_EQ(conflictContents(repo.repository(), conflict, 100).working, std::nullopt);
}

struct TrueNames : testing::Test {
    TrueNames()
    {
        repo.write("a", "1\n").commit("base").git({"checkout", "-q", "-b", "topic"});
        repo.write("t", "1\n").commit("first of topic").write("a", "topic\n").commit("Fix the parser");
        topic = repo.head();
        repo.git({"checkout", "-q", "main"}).write("a", "main\n").commit("on main");
        main = repo.head();
    }
    ConflictNames names(const std::vector<std::string>& command, const std::string& stash = {})
    {
        runIntoConflicts(repo, command);
        return conflictsIn(repo, stash).names;
    }

    TestRepository repo;
    std::string topic, main;
};

TEST_F(TrueNames, OfAMerge)
{
    ConflictNames told = names({"merge", "topic"});
    EXPECT_EQ(told.left, (ConflictName{.kind = NameKind::branch, .name = "main", .hash = main}));
    EXPECT_EQ(told.right, (ConflictName{.kind = NameKind::branch, .name = "topic", .hash = topic}));
    EXPECT_EQ(told.base.kind, NameKind::commonAncestor);
    EXPECT_EQ(told.base.count, 1);
    repo.git({"merge", "--abort"}).git({"checkout", "-q", "--detach"}).git({"branch", "-q", "-m", "topic", "other"});
    told = names({"merge", topic});
    EXPECT_EQ(told.left, (ConflictName{.kind = NameKind::commit, .hash = main, .subject = "on main"}));
    EXPECT_EQ(told.right.hash, topic);
}

TEST_F(TrueNames, DoNotSwapInARebase)
{
    repo.git({"checkout", "-q", "topic"});
    const ConflictNames told = names({"rebase", "main"});
    EXPECT_EQ(
        told.left,
        (ConflictName{.kind = NameKind::ontoAndMoved, .name = "main", .branch = "topic", .hash = main, .count = 1}));
    EXPECT_EQ(
        told.right,
        (ConflictName{.kind = NameKind::replayed, .branch = "topic", .hash = topic, .subject = "Fix the parser"}));
    EXPECT_EQ(told.base.kind, NameKind::parentOf);
}

TEST_F(TrueNames, OfPickRevertStashAndPatch)
{
    ConflictNames told = names({"cherry-pick", "topic"});
    EXPECT_EQ(told.left.name, "main");
    EXPECT_EQ(told.right, (ConflictName{.kind = NameKind::picked, .hash = topic, .subject = "Fix the parser"}));
    repo.git({"cherry-pick", "--abort"}).write("a", "later\n").commit("later");
    told = names({"revert", "--no-edit", main});
    EXPECT_EQ(told.right, (ConflictName{.kind = NameKind::without, .hash = main, .subject = "on main"}));
    EXPECT_EQ(told.base, (ConflictName{.kind = NameKind::commit, .hash = main, .subject = "on main"}));
    EXPECT_EQ(conflictContents(repo.repository(), conflictAt(repo, "a"), 100).right, "1\n");
    repo.git({"revert", "--abort"}).write("a", "work\n").git({"stash", "push", "-q", "-m", "WIP"});
    const std::string stash = repo.read({"rev-parse", "stash@{0}"});
    repo.write("a", "newer\n").commit("newer");
    told = names({"stash", "apply"}, stash);
    EXPECT_EQ(told.left.name, "main");
    EXPECT_EQ(told.right.kind, NameKind::stash);
    EXPECT_EQ(told.right.subject, "On main: WIP");
    EXPECT_EQ(conflictsIn(repo).names.right.kind, NameKind::stash) << "the markers tell it, without the message";
    repo.git({"reset", "-q", "--hard"});
    writeFile(repo / "patch", repo.read({"format-patch", "-1", "--stdout", "topic"}) + "\n");
    told = names({"am", "-3", "patch"});
    EXPECT_EQ(told.right, (ConflictName{.kind = NameKind::patch, .subject = "Fix the parser"}));
    repo.git({"am", "--abort"}).write("a", "open\n");
    told = names({"checkout", "-q", "-m", "topic"});
    EXPECT_EQ(told.left, (ConflictName{.kind = NameKind::label, .name = "topic"}));
    EXPECT_EQ(told.right, (ConflictName{.kind = NameKind::label, .name = "local"}));
}

} // namespace
} // namespace gitkit

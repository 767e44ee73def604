// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Conflicts.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Operations.h"
#include "GitKit/repository/Resolving.h"
#include "GitKit/runner/GitError.h"
#include "GitKit/runner/GitVersion.h"
#include "tests/support/EveryConflict.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <map>
#include <sys/stat.h>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using enum ConflictAnswer;

/// What stands at paths: the content, the target of a link after "->", or "-" for nothing.
using Contents = std::map<std::string, std::string>;

struct Resolving : testing::Test {
    Resolving()
    {
        makeEveryConflict(repo);
        begin();
    }
    void begin()
    {
        repo.git({"reset", "-q", "--hard"}).git({"clean", "-q", "-f", "-d"});
        runIntoConflicts(repo, {"merge", "topic"});
    }
    ConflictList list() const
    {
        const GitRepository door = repo.repository();
        const fs::path directory = gitDirectories(door).own;
        return conflictList(door, {directory, operationInProgress(door, directory)});
    }
    Conflict conflict(const std::string& path) const
    {
        for (Conflict& found : list().conflicts) {
            if (found.path == path)
                return found;
        }
        ADD_FAILURE() << "no conflict in " << path;
        return {};
    }
    std::string file(const std::string& path) const
    {
        std::error_code error;
        if (fs::is_symlink(fs::symlink_status(repo / path, error)))
            return "->" + fs::read_symlink(repo / path).string();
        return fs::exists(repo / path) ? bytesAt(repo / path) : "-";
    }
    std::string staged(const std::string& path) const
    {
        const std::string entry = repo.read({"ls-files", "-s", "--", ":(literal)" + path});
        if (entry.empty())
            return "-";
        int status = 0;
        const std::string bytes = runPlainGit(repo.path(), {"cat-file", "blob", entry.substr(7, 40)}, status);
        return (entry.starts_with("120000") ? "->" : "") + bytes;
    }
    void expectResolved(const Contents& expected) const
    {
        for (const auto& [path, content] : expected) {
            EXPECT_EQ(file(path), content) << path;
            EXPECT_EQ(staged(path), content) << path << " in the index";
            EXPECT_EQ(repo.read({"ls-files", "-u", "--", ":(literal)" + path}), "") << path;
            EXPECT_EQ(repo.read({"diff", "--name-only", "--", ":(literal)" + path}), "") << path;
        }
    }
    ErrorKind refusal(const std::function<void(const GitRepository&)>& run) const
    {
        try {
            run(repo.repository());
        } catch (const GitError& error) {
            return error.kind();
        }
        ADD_FAILURE() << "it was done";
        return ErrorKind::other;
    }

    TestRepository repo;
};

TEST_F(Resolving, EachAnswerIsInTheIndexAndInTheFile)
{
    if (!can(Ability::mergesByOrt))
        GTEST_SKIP() << "the index has other entries";
    using namespace std::string_literals;
    std::string merged = tenLines("f", 9, "left");
    merged.replace(merged.find("f 2\n"), 4, "f 2 right\n");
    struct Row {
        const char* path;
        ConflictAnswer answer;
        Contents expected;
    };
    const std::vector<Row> rows{
        {"both", left, {{"both", tenLines("both", 5, "left")}}},
        {"both", right, {{"both", tenLines("both", 5, "right")}}},
        {"added", right, {{"added", "right\n"}}},
        {"added", both, {{"added", "left\n"}, {"added~topic", "right\n"}}},
        {"bin", left, {{"bin", "\0\4"s}}},
        {"bin", right, {{"bin", "\0\3"s}}},
        {"link", right, {{"link", "->right"}}},
        {"link", both, {{"link", "->left"}, {"link~topic", "->right"}}},
        {"goneLeft", left, {{"goneLeft", "-"}}},
        {"goneLeft", right, {{"goneLeft", tenLines("goneLeft", 5, "right")}}},
        {"goneRight", left, {{"goneRight", tenLines("goneRight", 5, "left")}}},
        {"goneRight", right, {{"goneRight", "-"}}},
        {"f", left, {{"f", "-"}, {"fLeft", merged}, {"fRight", "-"}}},
        {"f", right, {{"f", "-"}, {"fLeft", "-"}, {"fRight", merged}}},
        {"f", both, {{"f", "-"}, {"fLeft", merged}, {"fRight", merged}}},
        {"newLeft", left, {{"newLeft", tenLines("renamedLeft", 2, "left")}}},
        {"newLeft", right, {{"newLeft", "-"}, {"renamedLeft", "-"}}},
        {"newRight", left, {{"newRight", "-"}, {"renamedRight", "-"}}},
        {"newRight", right, {{"newRight", tenLines("renamedRight", 2, "right")}}},
        {"same", left, {{"same", tenLines("two")}}},
        {"same", both, {{"same", tenLines("two")}, {"same~topic", tenLines("one")}}},
        {"dir~topic", left, {{"dir~topic", "-"}, {"dir/inside", "1\n"}}},
        {"dir~topic", right, {{"dir~topic", "-"}, {"dir", "file\n"}}},
        {"dir~topic", both, {{"dir~topic", "file\n"}, {"dir/inside", "1\n"}}},
        {"typed", left, {{"typed", "file\n"}, {"typed~HEAD", "-"}}},
        {"typed", right, {{"typed", "->x"}, {"typed~HEAD", "-"}}},
        {"typed", both, {{"typed", "->x"}, {"typed~HEAD", "file\n"}}},
    };
    const std::vector<Conflict> all = list().conflicts;
    for (const ConflictAnswer answer : {left, right, both}) {
        SCOPED_TRACE("answered with " + std::to_string(static_cast<int>(answer)));
        begin();
        std::size_t answered = 0;
        for (const Row& row : rows) {
            if (row.answer != answer)
                continue;
            const auto found = std::ranges::find(all, row.path, &Conflict::path);
            ASSERT_NE(found, all.end()) << row.path;
            answerConflicts(repo.repository(), {*found}, answer, "topic");
            expectResolved(row.expected);
            ++answered;
        }
        EXPECT_EQ(list().conflicts.size(), all.size() - answered);
        startOver(repo.repository(), resolvedPaths(repo.repository()), {});
        EXPECT_EQ(list().conflicts.size(), all.size()) << "they are there again";
    }
}

TEST_F(Resolving, ASubmoduleGetsTheChosenCommitAndAModeItsSide)
{
    repo.git({"reset", "-q", "--hard"}).git({"init", "-q", "module"});
    const std::filesystem::path module = repo / "module";
    int status = 0;
    const auto commit = [&](const char* subject) {
        runPlainGit(module, {"commit", "-q", "--allow-empty", "-m", subject}, status);
        std::string hash = runPlainGit(module, {"rev-parse", "HEAD"}, status);
        hash.resize(40);
        return hash;
    };
    const std::string base = commit("base"), one = commit("one"), two = commit("two");
    const std::string blob = repo.read({"rev-parse", "HEAD:both"});
    const std::string none(40, '0');
    repo.git({"update-index", "--index-info"},
             "160000 " + base + " 1\tmodule\n160000 " + one + " 2\tmodule\n160000 " + two + " 3\tmodule\n0 " + none +
                 "\tboth\n100644 " + blob + " 1\tboth\n100755 " + blob + " 2\tboth\n100644 " + blob + " 3\tboth\n");
    const std::optional<SubmoduleSides> sides = submoduleSides(repo.repository(), conflict("module"));
    ASSERT_TRUE(sides);
    EXPECT_EQ(sides->left.subject + std::to_string(sides->left.ahead), "one0");
    EXPECT_EQ(sides->right.subject + std::to_string(sides->right.ahead), "two1");
    answerConflicts(repo.repository(), {conflict("module"), conflict("both")}, left, {});
    EXPECT_EQ(repo.read({"ls-files", "-s", "module"}), "160000 " + one + " 0\tmodule");
    EXPECT_EQ(runPlainGit(module, {"rev-parse", "HEAD"}, status), one + "\n");
    EXPECT_TRUE(repo.read({"ls-files", "-s", "both"}).starts_with("100755"));
    EXPECT_EQ(repo.read({"diff", "--name-only"}), "");
}

TEST_F(Resolving, TheNameOfAFileIsChosenAlsoWhereItsTextsClash)
{
    if (!can(Ability::mergesByOrt))
        GTEST_SKIP() << "the index has other entries";
    repo.git({"reset", "-q", "--hard"}).write("fLeft", tenLines("f", 2, "left")).commit("clash");
    begin();
    answerConflicts(repo.repository(), {conflict("f")}, right, "topic");
    const Conflict clash = conflict("fRight");
    EXPECT_EQ(clash.kind, ConflictKind::bothChanged);
    const ConflictContents contents = conflictContents(repo.repository(), clash, 1000);
    EXPECT_EQ(contents.base, tenLines("f"));
    EXPECT_EQ(contents.left, tenLines("f", 2, "left"));
    EXPECT_EQ(contents.right, tenLines("f", 2, "right"));
    EXPECT_EQ(file("fLeft"), "-");
    EXPECT_EQ(file("f"), "-");
}

TEST_F(Resolving, AResultGoesThroughNoFilterTwiceAndKeepsTheModeThatChanged)
{
    repo.git({"reset", "-q", "--hard"}).git({"config", "core.autocrlf", "true"});
    repo.git({"config", "filter.twice.clean", "sed s/x/xx/"}).git({"config", "filter.twice.smudge", "sed s/xx/x/"});
    fs::permissions(repo / "both", fs::perms::owner_exec, fs::perm_options::add);
    repo.write(".gitattributes", "both filter=twice\n").commit("mode");
    begin();
    resolveWith(repo.repository(), conflict("both"), "a xx\n");
    EXPECT_EQ(staged("both"), "a xx\n");
    EXPECT_EQ(file("both"), "a x\r\n");
    EXPECT_TRUE(repo.read({"ls-files", "-s", "both"}).starts_with("100755"));
    EXPECT_NE(fs::status(repo / "both").permissions() & fs::perms::owner_exec, fs::perms::none);
    EXPECT_EQ(repo.read({"diff", "--name-only", "--", "both"}), "");
}

TEST_F(Resolving, AResultThatIsNotDoneIsInTheFileAndIsReadBack)
{
    repo.git({"config", "core.autocrlf", "true"});
    begin();
    const Conflict both = conflict("both");
    const FileStamp seen = keepResult(repo.repository(), both, "half\n", workingStamp(repo.repository(), "both"));
    EXPECT_EQ(file("both"), "half\r\n");
    EXPECT_TRUE(conflict("both").isEdited);
    EXPECT_EQ(conflictContents(repo.repository(), both, 100).working, "half\n");
    EXPECT_EQ(keepResult(repo.repository(), both, "more\n", seen), workingStamp(repo.repository(), "both"));
    EXPECT_EQ(refusal([&](const auto& door) { keepResult(door, both, "lost\n", seen); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(refusal([&](const auto& door) { resolveWith(door, both, "lost\n", seen); }), ErrorKind::changedMeanwhile);
    EXPECT_EQ(file("both"), "more\r\n");
}

TEST_F(Resolving, WhatIsNoFileIsNotReplaced)
{
    const Conflict both = conflict("both");
    const auto refused = [&] {
        const auto tries = {
            std::function<void(const GitRepository&)>([&](const auto& door) { resolveWith(door, both, "x\n"); }),
            std::function<void(const GitRepository&)>([&](const auto& door) { keepResult(door, both, "x\n"); })};
        for (const auto& attempt : tries)
            EXPECT_EQ(refusal(attempt), ErrorKind::wouldOverwriteUnknownFiles);
        EXPECT_NE(repo.read({"ls-files", "-u", "both"}), "");
    };
    fs::remove(repo / "both");
    ASSERT_EQ(::mkfifo((repo / "both").c_str(), 0600), 0);
    refused();
    fs::remove(repo / "both");
    fs::create_directory(repo / "both");
    repo.write("both/mine", "1\n");
    refused();
    EXPECT_EQ(refusal([&](const auto& door) { answerConflicts(door, {both}, left, {}); }),
              ErrorKind::wouldOverwriteUnknownFiles);
    EXPECT_EQ(file("both/mine"), "1\n");
    fs::remove_all(repo / "both");
    replaceLink(repo, "both", "elsewhere");
    refused();
    // A file that is gone is made again.
    fs::remove(repo / "both");
    resolveWith(repo.repository(), both, "x\n");
    expectResolved({{"both", "x\n"}});
    // Names that are taken are not written over, and no folder goes with files that git does not know.
    repo.write("added~topic", "mine\n").write("dir/mine", "1\n");
    for (const auto& [path, answer] : {std::pair("added", ConflictAnswer::both), std::pair("dir~topic", right)})
        EXPECT_EQ(refusal([&](const auto& door) { answerConflicts(door, {conflict(path)}, answer, "topic"); }),
                  ErrorKind::wouldOverwriteUnknownFiles);
    EXPECT_EQ(file("added~topic") + file("dir/mine"), "mine\n1\n");
}

TEST_F(Resolving, StartsOverWithMarkersThatTellTheSides)
{
    resolveWith(repo.repository(), conflict("both"), "typed\n");
    startOver(repo.repository(), {"both"}, markersFor(list().names));
    EXPECT_NE(file("both").find("<<<<<<< main\nboth 5 left\n=======\nboth 5 right\n>>>>>>> topic\n"),
              std::string::npos);
    EXPECT_EQ(conflict("both").kind, ConflictKind::bothChanged);
    repo.write("both", "typed\n");
    startOver(repo.repository(), {"both"}, {});
    EXPECT_NE(file("both").find("<<<<<<< left\n"), std::string::npos);
}

TEST_F(Resolving, AForgottenAnswerIsAskedForAgain)
{
    repo.git({"reset", "-q", "--hard"}).git({"config", "rerere.enabled", "true"});
    begin();
    resolveWith(repo.repository(), conflict("both"), "typed\n");
    repo.git({"rerere"});
    begin();
    ASSERT_TRUE(conflict("both").isRemembered);
    EXPECT_EQ(file("both"), "typed\n");
    forgetResolution(repo.repository(), "both", {});
    EXPECT_FALSE(conflict("both").isRemembered);
    EXPECT_NE(file("both").find("<<<<<<<"), std::string::npos);
    begin();
    EXPECT_FALSE(conflict("both").isRemembered);
}

} // namespace
} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/PartialPatch.h"
#include "GitKit/repository/PartialDiscard.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/stat.h>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

struct Look {
    unsigned mode;
    long size, seconds, nanoseconds;
    ino_t inode;

    bool operator==(const Look&) const = default;
};

Look lookOf(const fs::path& file)
{
    struct stat found{};
    EXPECT_EQ(::lstat(file.c_str(), &found), 0);
    return {found.st_mode, found.st_size, found.st_mtim.tv_sec, found.st_mtim.tv_nsec, found.st_ino};
}

/// The unstaged changes of the one changed file, in the hunk of this number, to be discarded.
PartialChange hunkOf(const TestRepository& repo, int number)
{
    const FileChange file = repo.repository().status().files.at(0);
    const ParsedDiff diff = repo.repository().workingDiff(file).at(0).diff;
    std::set<int> selected;
    int hunk = -1;
    for (const DiffLine& line : diff.lines) {
        hunk += line.kind == DiffLine::Kind::hunk ? 1 : 0;
        if (line.isChange() && hunk == number)
            selected.insert(line.id);
    }
    return partialChange(file.path, diff, selected, PatchDirection::reverse).value();
}

constexpr std::string_view longFile = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\n12\n";
constexpr std::string_view editedTwice = "one\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n";
constexpr std::string_view editedOnce = "1\n2\n3\n4\n5\n6\n7\n8\n9\n10\n11\ntwelve\n";

TEST(DiscardPart, LeavesTheFileAsItWasWhenAnythingFails)
{
    for (const char* smudge : {"false", "kill -9 $PPID", "sh -c 'head -c 3; exit 1'"}) {
        TestRepository repo;
        repo.write(".gitattributes", "a filter=odd\n").write("a", longFile).commit("one").write("a", editedTwice);
        repo.git({"config", "filter.odd.smudge", smudge}).git({"config", "filter.odd.required", "true"});
        repo.git({"config", "filter.odd.clean", "cat"});
        fs::permissions(repo / "a", fs::perms(0640));
        const Look before = lookOf(repo / "a");
        EXPECT_THROW(discardPart(repo.repository(), hunkOf(repo, 0)), GitError) << smudge;
        EXPECT_EQ(readFile(repo / "a"), editedTwice) << smudge;
        EXPECT_EQ(lookOf(repo / "a"), before) << smudge;
        EXPECT_EQ(std::distance(fs::directory_iterator(repo.path()), {}), 3) << "nothing is left beside it";
    }
}

TEST(DiscardPart, KeepsTheModeAndConvertsAsGitDoes)
{
    for (const unsigned mode : {0640U, 0755U, 0600U}) {
        TestRepository repo;
        repo.write(".gitattributes", "a filter=turn ident\n").write("a", longFile);
        repo.git({"config", "filter.turn.clean", "tr a-z n-za-m"});
        repo.git({"config", "filter.turn.smudge", "tr n-za-m a-z"});
        fs::permissions(repo / "a", fs::perms(mode));
        repo.commit("one").write("a", editedTwice);
        discardPart(repo.repository(), hunkOf(repo, 0));
        EXPECT_EQ(readFile(repo / "a"), editedOnce);
        EXPECT_EQ(lookOf(repo / "a").mode & 07777U, mode);
    }
    TestRepository repo;
    repo.write("d/a", longFile).commit("one").remove("d");
    discardPart(repo.repository(), hunkOf(repo, 0));
    EXPECT_EQ(readFile(repo / "d/a"), longFile) << "a deleted file comes back with its folder";
    fs::permissions(repo / "d/a", fs::perms(0755));
    repo.write("d/a", editedOnce);
    discardPart(repo.repository(), hunkOf(repo, 0));
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "") << "all of a change takes its mode along";
}

// git reads the line ends of the blob in the index before it decides how to convert those of the file.
TEST(DiscardPart, WorksOnFilesThatAreStoredWithCarriageReturns)
{
    const auto withReturns = [](std::string_view text) {
        std::string result;
        for (const char character : text)
            result += character == '\n' ? std::string("\r\n") : std::string(1, character);
        return result;
    };
    for (const char* setting : {"true", "input"}) {
        TestRepository repo;
        repo.git({"config", "core.autocrlf", "false"}).write("a", withReturns(longFile)).commit("one");
        repo.git({"config", "core.autocrlf", setting}).write("a", withReturns(editedTwice));
        repo.git({"config", "core.safecrlf", "true"});
        discardPart(repo.repository(), hunkOf(repo, 0));
        EXPECT_EQ(readFile(repo / "a"), withReturns(editedOnce)) << setting;
    }
}

} // namespace
} // namespace gitkit

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Discard.h"
#include "GitKit/repository/DiscardExtent.h"
#include "GitKit/repository/Folders.h"
#include "GitKit/repository/Keeping.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <ctime>
#include <fstream>
#include <map>
#include <stop_token>
#include <thread>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::IsEmpty;

struct KeepingRepository : TestRepository {
    KeepingRepository()
    {
        write("a", "1\n2\n3\n4\n5\n6\n7\n8\n9\n").write("b", "b\n").write("d/x", "x\n").commit("one");
    }

    fs::path gitDirectory() const { return gitDirectories(repository()).own; }
    void toTrash(const fs::path& path) const { fs::rename(path, trash.path() / std::to_string(rand())); }

    Keeping discard(const std::vector<FileChange>& files) const
    {
        return keeping(repository(), gitDirectory(), files, Taking::discard,
                       [&] { repository().discard(files, [this](const fs::path& path) { toTrash(path); }); });
    }
    Keeping discardAll() const { return discard(repository().status().files); }
    BroughtBack bringLastBack() const
    {
        return bringBack(repository(), gitDirectory(), allKept(gitDirectory()).back());
    }

    /// The bytes, modes and links of all files of the working tree, with the index and what git says of both.
    std::map<std::string, std::string> state() const
    {
        std::map<std::string, std::string> all;
        for (fs::recursive_directory_iterator each(path()), end; each != end; ++each) {
            const std::string name = each->path().lexically_relative(path()).string();
            if (name == ".git") {
                each.disable_recursion_pending();
                continue;
            }
            if (each->is_symlink())
                all[name] = "link " + fs::read_symlink(each->path()).string();
            else if (each->is_regular_file())
                all[name] =
                    std::to_string(static_cast<int>(each->status().permissions())) + ' ' + readFile(each->path());
        }
        all["index"] = read({"ls-files", "-s"});
        all["status"] = read({"status", "--porcelain=v2", "--untracked-files=all"});
        return all;
    }

    TemporaryFolder trash;
};

TEST(Keeping, BringsBackBytesModesLinksAndTheIndex)
{
    KeepingRepository repo;
    repo.write("a", "staged\n").git({"add", "a"}).write("a", std::string_view("bytes\0\r\nno end", 14));
    fs::permissions(repo / "a", fs::perms::owner_all);
    repo.write("new", "staged\n").git({"add", "new"}).remove("new"); // the index has the only copy
    repo.git({"mv", "b", "renamed"}).write("renamed", "b\nedited\n");
    repo.remove("d/x");
    repo.write("sub/intended", "i");
    fs::permissions(repo / "sub/intended", fs::perms::owner_all);
    repo.git({"add", "-N", "sub/intended"});
    fs::create_symlink("nowhere", repo / "link");
    repo.write(std::string(250, 'n'), "long");
    const auto before = repo.state();

    const Keeping done = repo.discardAll();
    ASSERT_TRUE(done.kept && !done.failure);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    fs::remove(repo / "sub");
    const BroughtBack back = repo.bringLastBack();
    EXPECT_THAT(back.left, IsEmpty());
    EXPECT_EQ(repo.state(), before);
    EXPECT_THAT(allKept(repo.gitDirectory()), IsEmpty());
}

TEST(Keeping, KeepsNoSecondNameOfAFileWhoseContentsStay)
{
    KeepingRepository repo;
    repo.write("a", "mine\n").git({"add", "a"});
    keeping(repo.repository(), repo.gitDirectory(), repo.repository().status().files, Taking::discard, [&repo] {
        repo.git({"reset", "-q", "--", "a"});
        throw GitError("checkout", 1, "no further");
    });
    {
        std::ofstream inPlace(repo / "a", std::ios::app);
        inPlace << "a line that is not wanted after all\n";
    }
    fs::rename(repo.write("saved", "mine\nmore\n") / "saved", repo / "a"); // as most editors save
    const BroughtBack back = repo.bringLastBack();
    EXPECT_THAT(back.back, ElementsAre("a"));
    EXPECT_EQ(readFile(repo / "a"), "mine\nmore\n");
    EXPECT_EQ(repo.read({"show", ":a"}), "mine");
}

TEST(Keeping, MergesIntoWhatWasWrittenSinceAndElseKeepsTheCopy)
{
    KeepingRepository repo;
    repo.write("a", "1\n2\n3\n4\n5\n6\n7\n8\nnine\n").write("b", "mine\n");
    repo.discardAll();
    repo.write("a", "one\n2\n3\n4\n5\n6\n7\n8\n9\n").write("b", "other\n");
    const BroughtBack back = repo.bringLastBack();
    EXPECT_EQ(readFile(repo / "a"), "one\n2\n3\n4\n5\n6\n7\n8\nnine\n");
    EXPECT_EQ(readFile(repo / "b"), "other\n");
    EXPECT_THAT(back.merged, ElementsAre("a"));
    EXPECT_THAT(back.left, ElementsAre("b"));

    const Kept left = allKept(repo.gitDirectory()).back();
    EXPECT_THAT(left.paths, ElementsAre("b"));
    saveKept(repo.gitDirectory(), left, repo.trash.path() / "saved");
    EXPECT_EQ(readFile(repo.trash.path() / "saved"), "mine\n");
    repo.write("b", "b\n");
    EXPECT_THAT(repo.bringLastBack().back, ElementsAre("b"));
    EXPECT_EQ(readFile(repo / "b"), "mine\n");
    EXPECT_THROW(bringBack(repo.repository(), repo.gitDirectory(), left), GitError);
}

TEST(Keeping, KeepsAFileApartFromItsOtherNames)
{
    KeepingRepository repo;
    repo.write("a", "mine\n");
    fs::create_hard_link(repo / "a", repo.trash.path() / "other");
    repo.discardAll();
    std::ofstream(repo.trash.path() / "other", std::ios::app) << "written under the other name\n";
    repo.bringLastBack();
    EXPECT_EQ(readFile(repo / "a"), "mine\n");
}

TEST(Keeping, BringsBackOnAFullDiskAndPastAFileThatFails)
{
    KeepingRepository repo;
    repo.write("a", std::string(5000, 'a')).write("b", "mine\n").git({"add", "b"}).write("d/x", "mine\n");
    const auto before = repo.state();
    repo.discardAll();
    repo.write(".git/index.lock", "");
    {
        const plovik::test::FullDisk full(1000);
        EXPECT_THROW(repo.bringLastBack(), GitError) << "the index of b";
    }
    EXPECT_EQ(readFile(repo / "a"), std::string(5000, 'a'));
    EXPECT_EQ(readFile(repo / "d/x"), "mine\n");
    EXPECT_THAT(allKept(repo.gitDirectory()).back().paths, ElementsAre("b"));
    repo.remove(".git/index.lock");
    repo.bringLastBack();
    EXPECT_EQ(repo.state(), before);
}

TEST(Keeping, KnowsWhatWasStagedWhenGitHasForgottenIt)
{
    KeepingRepository repo;
    repo.write("a", "staged\n").write("new", "only staged\n").git({"add", "."}).write("a", "mine\n").remove("new");
    const Keeping done = repo.discardAll();
    repo.git({"prune", "--expire=now"});
    const std::string hash = repo.read({"hash-object", "--stdin"}, "staged\n");
    EXPECT_EQ(repo.read({"cat-file", "--batch-check"}, hash), hash + " missing");
    saveKept(repo.gitDirectory(), *done.kept, repo.trash.path());
    EXPECT_EQ(readFile(repo.trash.path() / "new"), "only staged\n");
    repo.bringLastBack();
    EXPECT_EQ(repo.read({"show", ":a"}) + repo.read({"show", ":new"}), "stagedonly staged");
    EXPECT_EQ(readFile(repo / "a"), "mine\n");
}

TEST(Keeping, SavesSeveralFilesOverNone)
{
    KeepingRepository repo;
    repo.write("a", "mine\n").write("d/x", "mine\n");
    const Keeping done = repo.discardAll();
    EXPECT_LT(std::chrono::abs(done.kept->date - std::chrono::system_clock::now()), std::chrono::minutes(5));
    repo.write("d/x", "typed since\n");
    EXPECT_THROW(saveKept(repo.gitDirectory(), *done.kept, repo.path()), GitError)
        << "the folder of the files themselves";
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M d/x");
    EXPECT_EQ(readFile(repo / "d/x"), "typed since\n");
    saveKept(repo.gitDirectory(), *done.kept, repo.trash.path());
    EXPECT_EQ(readFile(repo.trash.path() / "d/x"), "mine\n");
}

TEST(Keeping, DoesNotWriteThroughALinkNorStageOverWhatWasStagedSince)
{
    KeepingRepository repo;
    TemporaryFolder elsewhere;
    repo.write("d/x", "mine\n").git({"add", "d/x"}).write("b", "staged\n").git({"add", "b"});
    repo.discardAll();
    fs::remove_all(repo / "d");
    fs::create_symlink(elsewhere.path(), repo / "d");
    repo.write("b", "newer\n").git({"add", "b"}).write("b", "b\n");
    const BroughtBack back = repo.bringLastBack();
    EXPECT_THAT(back.left, ElementsAre("d/x"));
    EXPECT_THAT(back.indexChanged, ElementsAre("b"));
    EXPECT_TRUE(fs::is_empty(elsewhere.path()));
    EXPECT_EQ(repo.read({"show", ":b"}), "newer");
}

TEST(Keeping, PutsBackWhatAFailureLeavesInBetween)
{
    KeepingRepository repo;
    repo.write(".gitattributes", "a filter=broken\n").commit("two").git({"config", "filter.broken.smudge", "false"});
    repo.git({"config", "filter.broken.clean", "cat"}).git({"config", "filter.broken.required", "true"});
    repo.write("a", "staged\n").git({"add", "a"}).write("a", "mine\n").write("b", "also mine\n");
    const auto before = repo.state();
    const Keeping done = repo.discard({repo.repository().status().files.front()});
    EXPECT_TRUE(done.failure);
    EXPECT_FALSE(done.kept);
    EXPECT_EQ(repo.state(), before);
}

TEST(Keeping, PutsBackWhatACancelledDiscardLeavesInBetween)
{
    KeepingRepository repo;
    repo.write("a", "mine\n").write("b", "also mine\n");
    const auto before = repo.state();
    std::stop_source stop;
    const GitRepository cancelled = repo.repository().in({.stop = stop.get_token()});
    const Keeping done =
        keeping(cancelled, repo.gitDirectory(), repo.repository().status().files, Taking::discard, [&] {
            repo.git({"checkout", "-q", "HEAD", "--", "b"});
            fs::remove(repo / "a");
            repo.write("a", "hal");
            stop.request_stop();
            throw RunStopped();
        });
    EXPECT_TRUE(done.failure);
    EXPECT_EQ(readFile(repo / "a"), "mine\n");
    ASSERT_TRUE(done.kept) << "one file was discarded whole";
    bringBack(repo.repository(), repo.gitDirectory(), *done.kept);
    EXPECT_EQ(repo.state(), before);
}

TEST(Keeping, LeavesNoFileThatGitTakesForChanged)
{
    KeepingRepository repo;
    repo.write("a", "staged\n").git({"add", "a"});
    // Git compares whole seconds.
    const std::time_t staged = std::time(nullptr);
    while (std::time(nullptr) == staged)
        std::this_thread::yield();
    std::string changed = "not asked";
    keeping(repo.repository(), repo.gitDirectory(), repo.repository().status().files, Taking::step,
            [&] { changed = repo.read({"diff-files", "--name-only"}); });
    EXPECT_EQ(changed, "");
}

TEST(Keeping, DiscardsOnlyWhatIsNotStaged)
{
    KeepingRepository repo;
    repo.write("a", "staged\n").git({"add", "a"}).write("a", "mine\n").write("b", "b\nmine\nmine\n");
    repo.write("gone", "staged\n").git({"add", "gone"}).remove("gone").write("new", "n");
    const std::vector<FileChange> files = repo.repository().status().files;
    EXPECT_EQ(discardExtent(repo.repository(), files),
              (DiscardExtent{.unstagedLines = 3, .stagedLines = 9, .binaryFiles = 0, .newFiles = 2}));
    discardUnstaged(repo.repository(), files, [&](const fs::path& path) { repo.toTrash(path); });
    EXPECT_EQ(readFile(repo / "a"), "staged\n");
    EXPECT_EQ(readFile(repo / "b"), "b\n");
    EXPECT_EQ(readFile(repo / "gone"), "staged\n");
    EXPECT_FALSE(fs::exists(repo / "new"));
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "M  a\nA  gone");
}

} // namespace
} // namespace gitkit

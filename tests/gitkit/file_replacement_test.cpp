// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/FileReplacement.h"
#include "tests/support/FullDisk.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

struct stat statOf(const fs::path& file)
{
    struct stat found{};
    EXPECT_EQ(::lstat(file.c_str(), &found), 0);
    return found;
}

std::ptrdiff_t entries(const fs::path& folder) { return std::distance(fs::directory_iterator(folder), {}); }

TEST(FileReplacement, LeavesEverythingAsItWasWhenTheDiskIsFull)
{
    TemporaryFolder folder;
    writeFile(folder / "a", "before");
    ASSERT_EQ(::chmod((folder / "a").c_str(), 0640), 0);
    const struct stat before = statOf(folder / "a");
    {
        const plovik::test::FullDisk full(100);
        EXPECT_FALSE(replaceFile(folder / "a", std::string(101, 'x')));
        EXPECT_FALSE(replaceFile(folder / "new", std::string(101, 'x')));
    }
    EXPECT_EQ(readFile(folder / "a"), "before");
    EXPECT_EQ(statOf(folder / "a").st_ino, before.st_ino);
    EXPECT_EQ(statOf(folder / "a").st_mtim.tv_nsec, before.st_mtim.tv_nsec);
    EXPECT_EQ(entries(folder.path()), 1) << "nothing is left beside it";

    fs::create_directory(folder / "folder");
    writeFile(folder / "folder/file", "inside");
    EXPECT_FALSE(replaceFile(folder / "folder", "x")) << "a folder is not replaced";
    EXPECT_FALSE(replaceByLink(folder / "folder", "x"));
    EXPECT_EQ(entries(folder.path()), 2);
}

TEST(FileReplacement, KeepsModeOwnerAndAttributes)
{
    TemporaryFolder folder;
    const fs::path file = folder / std::string(255, 'n'); // as long as a name can be
    writeFile(file, "before");
    ASSERT_EQ(::chmod(file.c_str(), 0751), 0);
    const bool hasAttributes = ::setxattr(file.c_str(), "user.note", "kept", 4, 0) == 0;
    const bool isRoot = ::chown(file.c_str(), 12, 34) == 0 && ::geteuid() == 0;
    ASSERT_TRUE(replaceFile(file, "after"));
    EXPECT_EQ(readFile(file), "after");
    EXPECT_EQ(statOf(file).st_mode & 07777U, 0751U);
    if (isRoot) {
        EXPECT_EQ(statOf(file).st_uid, 12U);
        EXPECT_EQ(statOf(file).st_gid, 34U);
    }
    if (hasAttributes)
        EXPECT_EQ(::getxattr(file.c_str(), "user.note", nullptr, 0), 4);
    ASSERT_TRUE(replaceFile(file, "", false));
    EXPECT_EQ(statOf(file).st_mode & 07777U, 0640U);
    ASSERT_TRUE(replaceFile(file, "", true));
    EXPECT_EQ(statOf(file).st_mode & 07777U, 0750U) << "who may read may execute";

    ASSERT_TRUE(replaceByLink(file, "nowhere"));
    EXPECT_EQ(fs::read_symlink(file), "nowhere");
    ASSERT_TRUE(replaceFile(file, "a file again"));
    EXPECT_EQ(readFile(file), "a file again");
    EXPECT_EQ(entries(folder.path()), 1);
}

} // namespace
} // namespace gitkit

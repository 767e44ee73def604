// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/platform/Trash.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <stdexcept>
#include <sys/stat.h>

namespace plovik {
namespace {

namespace fs = std::filesystem;

fs::path trashFolder() { return fs::path(std::getenv("XDG_DATA_HOME")) / "Trash"; }

/// The inodes of what is in the Trash, so that a file is known under any name it was given there.
std::set<ino_t> trashed()
{
    std::set<ino_t> inodes;
    if (!fs::exists(trashFolder() / "files"))
        return inodes;
    for (const auto& entry : fs::directory_iterator(trashFolder() / "files")) {
        struct stat found{};
        ::lstat(entry.path().c_str(), &found);
        inodes.insert(found.st_ino);
    }
    return inodes;
}

TEST(Trash, TakesEveryKindOfFileAndMakesItsFolder)
{
    fs::remove_all(std::getenv("XDG_DATA_HOME"));
    TemporaryFolder folder;
    const fs::path target = folder / "target";
    writeFile(target, "untouched");
    writeFile(folder / "plain", "1");
    writeFile(folder / "-f", "2");
    writeFile(folder / "\xE4 not UTF-8 \xFF", "3");
    writeFile(folder / "folder/inner", "4");
    fs::create_symlink("nowhere", folder / "dangling");
    fs::create_symlink(target, folder / "link");
    fs::create_directory(folder / "empty");
    for (const char* name : {"plain", "-f", "\xE4 not UTF-8 \xFF", "folder", "dangling", "link", "empty"}) {
        struct stat before{};
        ASSERT_EQ(::lstat((folder / name).c_str(), &before), 0) << name;
        moveToTrash(folder / name);
        struct stat after{};
        EXPECT_NE(::lstat((folder / name).c_str(), &after), 0) << name;
        EXPECT_EQ(trashed().count(before.st_ino), 1u) << name;
    }
    EXPECT_EQ(readFile(target), "untouched");
    EXPECT_EQ(readFile(trashFolder() / "files/folder/inner"), "4");
    EXPECT_TRUE(fs::exists(trashFolder() / "info/plain.trashinfo"));

    writeFile(folder / "plain", "again");
    moveToTrash(folder / "plain");
    EXPECT_EQ(readFile(trashFolder() / "files/plain"), "1") << "the second of a name must not replace the first";
}

TEST(Trash, SaysWhyItCannotAndLeavesTheFile)
{
    const auto reason = [](const fs::path& path) -> std::string {
        try {
            moveToTrash(path);
        } catch (const std::runtime_error& error) {
            return error.what();
        }
        return "moved";
    };
    TemporaryFolder folder;
    EXPECT_EQ(reason(folder / "gone"), "“gone” could not be moved to the Trash: No such file or directory");

    // The Trash's own place taken by a file.
    fs::remove_all(std::getenv("XDG_DATA_HOME"));
    writeFile(trashFolder(), "no folder");
    writeFile(folder / "kept", "1");
    EXPECT_THAT(reason(folder / "kept"), testing::StartsWith("“kept” could not be moved to the Trash: "));
    EXPECT_EQ(readFile(folder / "kept"), "1");
    fs::remove(trashFolder());
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/FileReplacement.h"
#include "GitKit/PartialPatch.h"
#include "GitKit/repository/PartialDiscard.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <atomic>
#include <set>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::atomic<int> changesOfProcess = 0;

} // namespace

// These stand before the C library's own, for this whole program: what they change holds for every thread, and a git
// that another thread starts at that moment inherits it.
extern "C" mode_t umask(mode_t mask) noexcept
{
    ++changesOfProcess;
    return static_cast<mode_t>(::syscall(SYS_umask, mask));
}

extern "C" int chdir(const char* path) noexcept
{
    ++changesOfProcess;
    return static_cast<int>(::syscall(SYS_chdir, path));
}

namespace gitkit {
namespace {

mode_t modeOf(const std::filesystem::path& file)
{
    struct stat found{};
    return ::stat(file.c_str(), &found) == 0 ? found.st_mode & 07777U : 0;
}

PartialChange wholeFile(const GitRepository& repository, const std::string& path)
{
    const auto sections = repository.workingDiff(repository.status().files.at(0));
    std::set<int> all;
    for (const DiffLine& line : sections.at(0).diff.lines)
        all.insert(line.id);
    return partialChange(path, sections.at(0).diff, all, PatchDirection::reverse).value();
}

TEST(TheProcess, StaysAsItIsWhileGitRunsAndFilesAreWritten)
{
    TestRepository repo;
    repo.write("kept", "1\n").commit("one");
    const GitRepository repository = repo.repository();
    const mode_t mask = ::umask(027);
    const int before = changesOfProcess;

    repo.write("kept", "2\n");
    std::filesystem::permissions(repo / "kept", std::filesystem::perms(0754));
    discardPart(repository, wholeFile(repository, "kept"));
    EXPECT_EQ(readFile(repo / "kept"), "1\n");
    EXPECT_TRUE(replaceFile(repo / "new", "bytes"));
    EXPECT_EQ(modeOf(repo / "new"), 0640U) << "a new file is for whom the user's mask allows";
    repository.stageAll();
    repository.commit("two", CommitMode::create);

    EXPECT_EQ(changesOfProcess, before);
    ::umask(mask);
}

} // namespace
} // namespace gitkit

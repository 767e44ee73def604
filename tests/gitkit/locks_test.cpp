// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/GitRepository.h"
#include "GitKit/repository/Locks.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"
#include "tests/support/WholeState.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace gitkit {
namespace {

using namespace std::chrono_literals;

struct Locks : testing::Test {
    Locks() { repo.write("a", "1").commit("one").write(".git/index.lock", "held"); }
    void makeOld() { std::filesystem::last_write_time(lock, std::filesystem::file_time_type::clock::now() - 2min); }
    std::optional<HeldLock> held() const
    {
        return heldLock(repo.repository(), "fatal: Unable to create '" + lock.string() + "': File exists.\n\nAnother");
    }

    TestRepository repo;
    std::filesystem::path lock = repo / ".git/index.lock";
};

TEST_F(Locks, AreLeftBehindOnceNobodyCanNeedThem)
{
    EXPECT_FALSE(heldLock(repo.repository(), "fatal: something else"));
    EXPECT_FALSE(heldLock(repo.repository(), "fatal: Unable to create '/etc/passwd.lock': File exists."));
    ASSERT_TRUE(held());
    EXPECT_FALSE(held()->isLeftBehind()) << "it is new";
    makeOld();
    EXPECT_TRUE(held()->isLeftBehind());

    // As an editor that a commit waits for: it holds no file of the repository open.
    const pid_t editor = ::fork();
    if (editor == 0) {
        if (::chdir(repo.path().c_str()) == 0)
            ::pause();
        ::_exit(0);
    }
    while (held()->programs.empty())
        ::usleep(1000);
    EXPECT_FALSE(held()->isLeftBehind());
    EXPECT_NE(held()->programs.at(0).find('(' + std::to_string(editor) + ')'), std::string::npos);
    EXPECT_THROW(moveLockAway(repo.repository(), lock), GitError);
    EXPECT_TRUE(std::filesystem::exists(lock));
    ::kill(editor, SIGKILL);
    ::waitpid(editor, nullptr, 0);

    moveLockAway(repo.repository(), lock);
    EXPECT_FALSE(std::filesystem::exists(lock));
    const std::filesystem::directory_iterator kept(repo / ".git/plovik/locks");
    EXPECT_EQ(bytesAt(kept->path()), "held");
    EXPECT_THROW(moveLockAway(repo.repository(), lock), GitError) << "it is gone";
    repo.git({"status"}).git({"fsck"});
}

} // namespace
} // namespace gitkit

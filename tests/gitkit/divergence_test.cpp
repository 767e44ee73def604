// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/Divergence.h"
#include "GitKit/repository/DivergenceMemory.h"
#include "GitKit/repository/RefListing.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <set>
#include <thread>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

CommitPair pairOf(int number) { return {std::string(36, 'a') + std::to_string(1000 + number), std::string(40, 'b')}; }

TEST(Divergence, CountsBothSidesAndKnowsWhatElseChangesTheAnswer)
{
    TestRepository repo;
    repo.commit("one").commit("two").git({"checkout", "-q", "-b", "side", "HEAD~1"}).commit("three").commit("four");
    const CommitPair tips{repo.head(), repo.read({"rev-parse", "main"})};
    EXPECT_EQ(countDivergence(repo.repository(), tips), (Divergence{2, 1}));

    const auto cuts = [&] { return historyCuts(repo / ".git", listRefs(repo.repository()).replacements); };
    std::set<std::string> seen{cuts()};
    EXPECT_EQ(*seen.begin(), "");
    writeFile(repo / ".git/info/grafts", tips.ours + "\n");
    EXPECT_TRUE(seen.insert(cuts()).second);
    fs::remove(repo / ".git/info/grafts");
    repo.git({"replace", "--graft", tips.ours});
    EXPECT_TRUE(seen.insert(cuts()).second);
    EXPECT_EQ(countDivergence(repo.repository(), tips), (Divergence{1, 2}));
    repo.git({"replace", "-d", tips.ours});
    writeFile(repo / ".git/shallow", tips.theirs + "\n");
    EXPECT_TRUE(seen.insert(cuts()).second);
    writeFile(repo / ".git/shallow", tips.ours + "\n");
    EXPECT_TRUE(seen.insert(cuts()).second);
}

struct DivergenceFile : testing::Test {
    TemporaryFolder folder;
    const fs::path file = folder / "deep/counts";

    void write(int first, int last) const
    {
        DivergenceMemory memory(file, "here");
        for (int number = first; number < last; ++number)
            memory.remember(pairOf(number), "", {number, 2 * number});
        memory.save();
    }
    /// How many of the first hundred pairs the file holds; a wrong count fails the test.
    int held(const std::string& owner = "here") const
    {
        DivergenceMemory memory(file, owner);
        int found = 0;
        for (int number = 0; number < 100; ++number) {
            if (const auto counted = memory.find(pairOf(number), "")) {
                EXPECT_EQ(*counted, (Divergence{number, 2 * number}));
                ++found;
            }
        }
        return found;
    }
};

TEST_F(DivergenceFile, KeepsCountsForTheSameRepositoryAndTheSameCuts)
{
    EXPECT_EQ(held(), 0);
    write(0, 10);
    EXPECT_EQ(held(), 10);
    EXPECT_EQ(held("elsewhere"), 0);
    DivergenceMemory memory(file, "here");
    EXPECT_EQ(memory.find(pairOf(3), "0123456789abcdef"), std::nullopt);
}

TEST_F(DivergenceFile, IsAsGoodAsEmptyWhenItIsDamaged)
{
    write(0, 10);
    const std::string whole = readFile(file);
    for (std::size_t size = 0; size < whole.size(); size += 7) {
        writeFile(file, whole.substr(0, size));
        EXPECT_EQ(held(), 0) << size;
    }
    for (std::size_t place = 0; place < whole.size(); place += 5) {
        std::string damaged = whole;
        damaged[place] ^= 1;
        writeFile(file, damaged);
        EXPECT_EQ(held(), 0) << place;
    }
    writeFile(file, whole + "more");
    EXPECT_EQ(held(), 0);
    write(20, 30);
    EXPECT_EQ(held(), 10) << "and written anew";
    fs::remove(file);
    fs::create_directory(file);
    write(0, 10);
    EXPECT_EQ(held(), 0);
}

TEST_F(DivergenceFile, KeepsWhatSeveralWindowsHaveCountedAtOnce)
{
    std::vector<std::thread> windows;
    for (int window = 0; window < 4; ++window)
        windows.emplace_back([&, window] {
            for (int begin = 25 * window; begin < 25 * window + 25; begin += 5)
                write(begin, begin + 5);
        });
    for (std::thread& window : windows)
        window.join();
    EXPECT_EQ(held(), 100);
}

TEST_F(DivergenceFile, DropsTheOldestAndDoesNoHarmWhereNothingCanBeWritten)
{
    DivergenceMemory memory({}, "here");
    for (int number = 0; number <= static_cast<int>(DivergenceMemory::capacity); ++number)
        memory.remember(pairOf(number), "", {});
    int kept = 0;
    for (int number = 0; number <= static_cast<int>(DivergenceMemory::capacity); ++number)
        kept += memory.find(pairOf(number), "") ? 1 : 0;
    EXPECT_LE(kept, static_cast<int>(DivergenceMemory::capacity));
    EXPECT_GT(kept, static_cast<int>(DivergenceMemory::capacity) / 2);
    memory.save();

    writeFile(folder / "deep", "no folder");
    write(0, 10);
    EXPECT_EQ(held(), 0);
    EXPECT_EQ(readFile(folder / "deep"), "no folder");
}

} // namespace
} // namespace gitkit

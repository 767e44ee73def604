// SPDX-License-Identifier: GPL-3.0-or-later
// Discards of random files, some of which fail half-way: whatever happens, every byte is in its place, in the Trash or
// kept, and what was discarded comes back whole.

#include "GitKit/repository/Discard.h"
#include "GitKit/repository/Keeping.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <random>
#include <set>
#include <sstream>
#include <sys/mount.h>
#include <sys/stat.h>

namespace gitkit {
namespace {

namespace fs = std::filesystem;

constexpr int filesPerBatch = 80;
constexpr int batches = 25;

/// A working tree in a random state, on the file system of the repository's folder.
class RandomTree {
public:
    RandomTree(TestRepository& repo, std::uint64_t seed, int fileCount) : repo_(repo), dice_(seed)
    {
        repo_.write(".gitattributes", "*.odd filter=odd\n*.txt text=auto\n");
        repo_.git({"config", "filter.odd.clean", "cat"}).git({"config", "filter.odd.smudge", "cat"});
        repo_.git({"config", "filter.odd.required", "true"});
        for (int number = 0; number < fileCount; ++number) {
            names_.push_back(name(number));
            if (chance(70))
                make(names_.back());
        }
        repo_.commit("one");
        change();
    }

    bool chance(int percent) { return std::uniform_int_distribution(0, 99)(dice_) < percent; }

    /// Lets the filter fail, or kill git, at some of the files that are brought back.
    void breakFilter()
    {
        repo_.git({"config", "filter.odd.smudge",
                   chance(50) ? "test $(($$ % 3)) = 0 && exit 1; cat" : "test $(($$ % 5)) = 0 && kill -9 $PPID; cat"});
    }
    void mendFilter() { repo_.git({"config", "filter.odd.smudge", "cat"}); }

    std::vector<FileChange> someChanges()
    {
        std::vector<FileChange> some;
        for (const FileChange& file : repo_.repository().status().files) {
            if (chance(80))
                some.push_back(file);
        }
        return some;
    }

private:
    std::string name(int number)
    {
        const char* const ends[] = {".odd", ".txt", "", " with space", "\xff\xfe", "*", "\n"};
        const std::string folder = chance(30) ? "d" + std::to_string(number % 4) + "/" : std::string();
        return folder + (chance(5) ? std::string(230, 'n') : "f") + std::to_string(number) +
               ends[std::uniform_int_distribution(0, 6)(dice_)];
    }

    void make(const std::string& file)
    {
        fs::create_directories((repo_ / file).parent_path());
        fs::remove(repo_ / file);
        if (chance(10)) {
            fs::create_symlink("target" + std::to_string(dice_()), repo_ / file);
            return;
        }
        std::string bytes;
        for (int line = std::uniform_int_distribution(0, 30)(dice_); line > 0; --line)
            bytes += std::to_string(dice_() % 1000) + (chance(20) ? "\r\n" : "\n");
        repo_.write(file, chance(10) ? bytes + std::string("\0\1\xff", 3) : bytes);
        if (chance(20))
            ::chmod((repo_ / file).c_str(), chance(50) ? 0755 : 0640);
    }

    bool stands(const std::string& file) const { return fs::is_symlink(repo_ / file) || fs::exists(repo_ / file); }

    void change()
    {
        std::string staged;
        std::string intended;
        for (const std::string& file : names_) {
            if (chance(60))
                make(file);
            else if (chance(30))
                fs::remove(repo_ / file);
            if (stands(file) && chance(50))
                (chance(15) ? intended : staged) += file + '\0';
        }
        const std::vector<std::string> list{"--pathspec-from-file=-", "--pathspec-file-nul"};
        repo_.git({"--literal-pathspecs", "add", "-A", list[0], list[1]}, staged);
        repo_.git({"--literal-pathspecs", "add", "-N", list[0], list[1]}, intended);
        for (const std::string& file : names_) {
            if (stands(file) && chance(30))
                make(file);
            else if (stands(file) && chance(20))
                fs::remove(repo_ / file);
        }
    }

    TestRepository& repo_;
    std::mt19937_64 dice_;
    std::vector<std::string> names_;
};

/// The bytes and kind of each file below a folder, without git's own.
std::map<std::string, std::string> filesBelow(const fs::path& folder)
{
    std::map<std::string, std::string> files;
    for (fs::recursive_directory_iterator each(folder), end; each != end; ++each) {
        if (each->path().filename() == ".git")
            each.disable_recursion_pending();
        else if (each->is_symlink())
            files[each->path().lexically_relative(folder).string()] = "link " + fs::read_symlink(each->path()).string();
        else if (each->is_regular_file())
            files[each->path().lexically_relative(folder).string()] =
                std::to_string(static_cast<int>(each->status().permissions())) + ' ' + readFile(each->path());
    }
    return files;
}

std::set<std::string> contents(const std::map<std::string, std::string>& files)
{
    std::set<std::string> all;
    for (const auto& [name, content] : files)
        all.insert(content);
    return all;
}

/// Each test has a seed of its own, the same at every run. PLOVIK_SEED gives another: a number, or "any".
std::uint64_t anySeed()
{
    const char* const wanted = std::getenv("PLOVIK_SEED");
    if (!wanted)
        return std::hash<std::string>()(testing::UnitTest::GetInstance()->current_test_info()->name());
    return std::string(wanted) == "any" ? std::random_device()() : std::stoull(wanted);
}

/// The index without empty files: one that is only intended comes back with the mode that its file has now.
std::string indexOf(const TestRepository& repo)
{
    std::istringstream lines(repo.read({"ls-files", "-s"}));
    std::string kept;
    for (std::string line; std::getline(lines, line);) {
        if (line.find("e69de29bb2d1d6434b8b29ae775ad8c2e48c5391") == std::string::npos)
            kept += line + '\n';
    }
    return kept;
}

/// Discards with everything kept. Returns whether it went through.
bool discard(TestRepository& repo, const std::vector<FileChange>& files, const fs::path& trash)
{
    int moved = 0;
    const Keeping done = keeping(repo.repository(), repo / ".git", files, Taking::discard, [&] {
        repo.repository().discard(files, [&](const fs::path& file) {
            fs::rename(file, trash / std::to_string(fs::hash_value(file)).append("-" + std::to_string(moved++)));
        });
    });
    return !done.failure;
}

class DiscardProperty : public testing::TestWithParam<int> {};

TEST_P(DiscardProperty, EveryByteIsInItsPlaceInTheTrashOrKept)
{
    const std::uint64_t seed = anySeed();
    TestRepository repo;
    const TemporaryFolder trash;
    RandomTree tree(repo, seed, filesPerBatch);
    const std::vector<FileChange> files = tree.someChanges();
    const auto before = filesBelow(repo.path());
    const std::string index = indexOf(repo);
    const bool breaks = tree.chance(50);
    if (breaks)
        tree.breakFilter();
    const bool isDone = discard(repo, files, trash.path());
    tree.mendFilter();
    fs::remove(repo / ".git/index.lock"); // a git that was killed leaves it
    EXPECT_TRUE(isDone || breaks) << "seed " << seed;

    std::set<std::string> there = contents(filesBelow(repo.path()));
    there.merge(contents(filesBelow(trash.path())));
    there.merge(contents(filesBelow(repo / ".git/plovik")));
    for (const auto& [name, content] : before)
        EXPECT_TRUE(there.contains(content)) << name << " is lost, seed " << seed;

    for (const Kept& kept : allKept(repo / ".git"))
        EXPECT_TRUE(bringBack(repo.repository(), repo / ".git", kept).left.empty()) << "seed " << seed;
    auto after = filesBelow(repo.path());
    if (!isDone) // files that were missing may have come back before the failure
        std::erase_if(after, [&](const auto& file) { return !before.contains(file.first); });
    EXPECT_TRUE(after == before) << "seed " << seed;
    if (isDone)
        EXPECT_EQ(indexOf(repo), index) << "seed " << seed;
}

INSTANTIATE_TEST_SUITE_P(Trees, DiscardProperty, testing::Range(0, batches));

TEST(DiscardOnAFullDisk, LosesNothing)
{
    const TemporaryFolder folder;
    if (::mount("tmpfs", folder.path().c_str(), "tmpfs", 0, "size=2m") != 0)
        GTEST_SKIP() << "small file systems can only be mounted by root";
    {
        TestRepository repo;
        repo.write("big", std::string(700'000, 'h') + "\n").commit("one");
        const fs::path tree = folder.path() / "tree";
        int status = 0;
        runPlainGit(folder.path(), {"-c", "core.compression=0", "clone", "-q", repo.path().string(), "tree"}, status);
        ASSERT_EQ(status, 0);
        const std::string mine = std::string(400'000, 'm') + "\n";
        writeFile(tree / "big", mine);
        // Nothing but the file's own room is left, and not enough of it.
        std::string filler(1 << 22, 'x');
        while (!filler.empty()) {
            std::error_code error;
            const auto space = fs::space(folder.path(), error).available;
            if (space < 8192)
                break;
            writeFile(folder.path() / ("filler" + std::to_string(space)), filler.substr(0, space - 4096));
        }
        const GitRepository small(tree);
        bool isDone = false;
        try {
            isDone = !keeping(small, tree / ".git", small.status().files, Taking::discard, [&] {
                          small.discard(small.status().files, {});
                      }).failure;
        } catch (const std::exception&) { // NOLINT(bugprone-empty-catch): nothing was begun
        }
        EXPECT_FALSE(isDone);
        EXPECT_TRUE(readFile(tree / "big") == mine);
    }
    ::umount(folder.path().c_str());
}

} // namespace
} // namespace gitkit

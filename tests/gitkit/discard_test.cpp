// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/repository/FileStamps.h"
#include "GitKit/runner/GitError.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <map>

namespace gitkit {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Strings = std::vector<std::string>;

/// A repository with a Trash that tells what is in it.
struct DiscardRepository : TestRepository {
    explicit DiscardRepository(std::string_view files = "a b d/x d/y")
    {
        while (!files.empty()) {
            const std::string_view name = files.substr(0, files.find(' '));
            write(name, std::string(name) + " of HEAD\n");
            files.remove_prefix(std::min(files.size(), name.size() + 1));
        }
        commit("one");
    }

    void discard(const std::vector<FileChange>& files)
    {
        repository().discard(files, [this](const fs::path& path) {
            if (path == refused)
                throw std::runtime_error("The Trash is full.");
            const std::string name = path.lexically_relative(this->path()).string();
            const fs::path place = trashFolder / std::to_string(trash.size());
            fs::rename(path, place);
            trash[name] = fs::is_symlink(place) ? "link" : fs::is_directory(place) ? "folder" : readFile(place);
        });
    }

    /// Discards every changed file of these names, in the order that status lists them.
    void discardNamed(const Strings& names)
    {
        std::vector<FileChange> files;
        for (const FileChange& file : repository().status().files) {
            if (names.empty() || std::ranges::find(names, file.path) != names.end())
                files.push_back(file);
        }
        discard(files);
    }

    TemporaryFolder trashFolder;
    std::map<std::string, std::string> trash;
    fs::path refused;
};

struct DiscardCase {
    const char* what;
    std::function<void(DiscardRepository&)> change;
    Strings discarded; ///< everything when empty
    std::map<std::string, std::string> trash;
    Strings left = {}; ///< what status still tells, as short status lines
};

const std::string longText = "1\n2\n3\n4\n5\n6\n7\n8\n";

const std::vector<DiscardCase> cases{
    {"modified, staged and both",
     [](auto& r) { r.write("a", "1").git({"add", "a"}).write("a", "2").write("b", "2"); },
     {},
     {}},
    {"deleted, and deleted in the index", [](auto& r) { r.remove("a").git({"rm", "-q", "b"}); }, {}, {}},
    {"untracked", [](auto& r) { r.write("new", "n").write("f/new", "fn"); }, {}, {{"new", "n"}, {"f/new", "fn"}}},
    {"added, modified since",
     [](auto& r) { r.write("new", "1").git({"add", "new"}).write("new", "2"); },
     {},
     {{"new", "2"}}},
    {"added, deleted since: the index has the only copy",
     [](auto& r) { r.write("e/new", "1").git({"add", "e/new"}).remove("e"); },
     {},
     {{"e/new", "1"}}},
    {"deleted in the index, with staged files in its place",
     [](auto& r) { r.git({"rm", "-q", "a"}).write("a/b", "1").git({"add", "a/b"}); },
     {},
     {{"a/b", "1"}}},
    {"meant to be added", [](auto& r) { r.write("new", "1").git({"add", "-N", "new"}); }, {}, {{"new", "1"}}},
    {"meant to be added, deleted since, after others",
     [](auto& r) { r.write("new", "1").git({"add", "-N", "new"}).remove("new").write("a", "2"); },
     {},
     {}},
    {"empty and meant to be added, deleted since: the old name of another for git",
     [](auto& r) { r.write("new", "").write("other", "").git({"add", "-N", "new", "other"}).remove("new"); },
     {},
     {{"other", ""}}},
    {"renamed, modified since",
     [](auto& r) { r.git({"mv", "a", "moved"}).write("moved", "a of HEAD\nmore\n"); },
     {},
     {{"moved", "a of HEAD\nmore\n"}}},
    {"renamed, the old name taken by a new file",
     [](auto& r) { r.git({"mv", "a", "moved"}).write("a", "precious"); },
     {"moved"},
     {{"moved", "a of HEAD\n"}, {"a", "precious"}}},
    {"renamed into a folder of the old name",
     [](auto& r) { r.git({"mv", "a", "t"}).write("a/other", "o").git({"mv", "t", "a/b"}); },
     {"a/b"},
     {{"a/b", "a of HEAD\n"}, {"a", "folder"}}},
    {"renamed in the working tree only",
     [](auto& r) { r.git({"mv", "a", "moved"}).git({"reset", "-q"}).git({"add", "-N", "moved"}); },
     {},
     {{"moved", "a of HEAD\n"}}},
    {"copied",
     [](auto& r) { r.write("copy", "a of HEAD\n").write("a", "edited").git({"add", "copy", "a"}); },
     {"copy"},
     {{"copy", "a of HEAD\n"}},
     {"M  a"}},
    {"deleted in the index, made anew",
     [](auto& r) { r.git({"rm", "-q", "a"}).write("a", "precious"); },
     {"a"},
     {{"a", "precious"}}},
    {"deleted in the index, meant to be added anew",
     [](auto& r) { r.git({"rm", "-q", "a"}).write("a", "precious").git({"add", "-N", "a"}); },
     {},
     {{"a", "precious"}}},
    {"replaced by an untracked folder",
     [](auto& r) { r.remove("a").write("a/f", "1").write("a/g", "2"); },
     {},
     {{"a", "folder"}}},
    {"replaced by an empty folder",
     [](auto& r) {
         r.remove("a");
         fs::create_directory(r / "a");
     },
     {},
     {}},
    {"under an untracked file",
     [](auto& r) {
         fs::remove_all(r / "d");
         r.write("d", "precious");
     },
     {"d/x", "d/y"},
     {{"d", "precious"}}},
    {"under a link",
     [](auto& r) {
         fs::rename(r / "d", r / "real");
         fs::create_directory_symlink("real", r / "d");
     },
     {"d/x"},
     {{"d", "link"}},
     {" D d/y", "?? real/x", "?? real/y"}},
    {"a link instead of a file",
     [](auto& r) {
         r.remove("a");
         fs::create_symlink("nowhere", r / "a");
     },
     {},
     {}},
    {"an untracked dangling link", [](auto& r) { fs::create_symlink("nowhere", r / "l"); }, {}, {{"l", "link"}}},
    {"names that look like patterns",
     [](auto& r) { r.write("*", "1").git({"--literal-pathspecs", "add", "*"}).write("a", "2"); },
     {"*"},
     {{"*", "1"}},
     {" M a"}},
    {"an untracked repository",
     [](auto& r) { r.git({"init", "-q", (r / "inner").string()}).write("inner/f", "1"); },
     {},
     {{"inner", "folder"}}},
    {"a mode", [](auto& r) { fs::permissions(r / "a", fs::perms::owner_all); }, {}, {}},
};

TEST(Discard, LeavesHeadAndLosesNothingThatGitDoesNotKnow)
{
    for (const DiscardCase& one : cases) {
        DiscardRepository repo;
        one.change(repo);
        repo.discardNamed(one.discarded);
        EXPECT_EQ(repo.trash, one.trash) << one.what;
        Strings left = one.left;
        std::string text = repo.read({"status", "--porcelain", "-uall"});
        std::string expected;
        for (const std::string& line : left)
            expected += (expected.empty() ? "" : "\n") + line;
        EXPECT_EQ(text, expected) << one.what;
    }
}

TEST(Discard, WorksBeforeTheFirstCommit)
{
    TestRepository repo;
    repo.write("staged", "1").git({"add", "staged"}).write("untracked", "2");
    TemporaryFolder trash;
    int count = 0;
    repo.repository().discard(repo.repository().status().files,
                              [&](const fs::path& path) { fs::rename(path, trash / std::to_string(count++)); });
    EXPECT_EQ(count, 2);
    EXPECT_THAT(repo.repository().status().files, IsEmpty());
}

TEST(Discard, SettlesConflicts)
{
    DiscardRepository repo("both ours theirs");
    repo.git({"checkout", "-q", "-b", "topic"}).write("both", "t\n").remove("ours").write("theirs", "t\n");
    repo.write("new", "t\n").commit("topic").git({"checkout", "-q", "main"});
    repo.write("both", "m\n").write("ours", "m\n").remove("theirs").write("new", "m\n").commit("main");
    int status = 0;
    runPlainGit(repo.path(), {"merge", "topic"}, status);
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "UU both\nAA new\nUD ours\nDU theirs");
    repo.discardNamed({});
    EXPECT_EQ(repo.read({"status", "--porcelain"}), "");
    EXPECT_EQ(readFile(repo / "both") + readFile(repo / "new") + readFile(repo / "ours"), "m\nm\nm\n");
    EXPECT_EQ(repo.trash, (std::map<std::string, std::string>{{"theirs", "t\n"}}));
    EXPECT_TRUE(fs::exists(repo / ".git/MERGE_HEAD"));
}

TEST(Discard, StopsAtTheFirstThatFailsWithNothingLost)
{
    const auto failure = [](DiscardRepository& repo, const Strings& names) -> std::string {
        try {
            repo.discardNamed(names);
        } catch (const std::exception& error) {
            return error.what();
        }
        return "no failure";
    };
    struct Refusal {
        std::function<void(DiscardRepository&)> change;
        const char* refused;
        std::string left;
        Strings names = {};
    };
    const std::vector<Refusal> refusals{
        {[](auto& r) { r.write("new", "1").git({"add", "new"}); }, "new", "A  new"},
        {[](auto& r) { r.git({"mv", "a", "moved"}).write("a", "precious"); },
         "moved",
         "R  a -> moved\n?? a",
         {"moved"}},
        {[](auto& r) { r.git({"rm", "-q", "a"}).write("a", "precious"); }, "a", "D  a\n?? a"},
        {[](auto& r) { r.remove("a").write("a/f", "1"); }, "a", " D a\n?? a/f"},
        {[](auto& r) {
             fs::remove_all(r / "d");
             r.write("d", "precious");
         },
         "d", " D d/x\n D d/y\n?? d"},
        {[](auto& r) { r.write("b", "2").write("c", "1").write("d/x", "3").write("a", "0"); }, "c", " M d/x\n?? c"},
    };
    for (const Refusal& one : refusals) {
        DiscardRepository repo;
        one.change(repo);
        repo.refused = repo / one.refused;
        EXPECT_EQ(failure(repo, one.names), "The Trash is full.") << one.left;
        EXPECT_EQ(repo.read({"status", "--porcelain", "-uall"}), one.left);
        EXPECT_THAT(repo.trash, IsEmpty());
    }

    DiscardRepository replaced;
    replaced.git({"rm", "-q", "a"}).write("a/b", "1").git({"add", "a/b"});
    EXPECT_THAT(failure(replaced, {"a"}), HasSubstr("“a” cannot come back alone, because “a/b” is staged"));
    EXPECT_EQ(replaced.read({"status", "--porcelain"}), "D  a\nA  a/b");

    TestRepository library;
    library.write("l", "1").commit("library");
    DiscardRepository repo;
    repo.git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), "lib"});
    repo.commit("two").write("lib/l", "edited").write("a", "2").write("z", "3");
    EXPECT_THAT(failure(repo, {}), HasSubstr("“lib” is a submodule"));
    EXPECT_EQ(repo.read({"status", "--porcelain"}), " M lib\n?? z");
    EXPECT_EQ(readFile(repo / "lib/l"), "edited");
}

TEST(Discard, LooksAgainBeforeItActs)
{
    DiscardRepository repo;
    repo.write("new", "1").write("gone", "1");
    const std::vector<FileChange> shown = repo.repository().status().files;
    fs::remove(repo / "gone");
    repo.git({"add", "new"}).git({"commit", "-q", "-m", "two"}).write("new", "edited");
    try {
        repo.discard(shown);
        ADD_FAILURE() << "what was to go to the Trash was overwritten";
    } catch (const GitError& error) {
        EXPECT_THAT(error.message(), HasSubstr("“new” has changed since it was shown"));
    }
    EXPECT_EQ(readFile(repo / "new"), "edited");

    for (const bool stages : {false, true}) {
        repo.git({"checkout", "-q", "HEAD", "--", "new"}).write("new", "mine").write("b", "2");
        const std::vector<FileChange> asked = repo.repository().status().files;
        const std::vector<FileStamp> stamps = fileStamps(repo.repository(), asked);
        if (stages)
            repo.git({"add", "new"});
        else
            repo.write("new", "more");
        EXPECT_THROW(requireUnchanged(repo.repository(), stamps), GitError);
        requireUnchanged(repo.repository(), fileStamps(repo.repository(), asked));
    }

    // A Trash that only says that it has moved the file is not believed.
    repo.git({"rm", "-q", "a"}).write("a", "precious");
    const auto files = repo.repository().status().files;
    EXPECT_THROW(repo.repository().discard({files.at(0)}, [](const fs::path&) {}), GitError);
    EXPECT_EQ(readFile(repo / "a"), "precious");
}

TEST(Discard, TakesManyFiles)
{
    DiscardRepository repo;
    for (int number = 0; number < 1200; ++number)
        repo.write("many/" + std::to_string(number), "1");
    repo.commit("many");
    for (int number = 0; number < 1200; ++number)
        repo.write("many/" + std::to_string(number), "2");
    repo.discardNamed({});
    EXPECT_THAT(repo.repository().status().files, IsEmpty());
}

} // namespace
} // namespace gitkit

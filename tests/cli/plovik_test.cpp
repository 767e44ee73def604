// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/UniqueFd.h"
#include "GitKit/runner/Process.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;
using Lines = std::vector<std::string>;

/// What stands before each `end`.
Lines split(std::string_view text, char end)
{
    Lines parts;
    for (std::size_t next = text.find(end); next != std::string_view::npos; next = text.find(end)) {
        parts.emplace_back(text.substr(0, next));
        text.remove_prefix(next + 1);
    }
    return parts;
}

/// The tool as it is installed, beside an application that tells how it was started and then ends.
class PlovikTest : public testing::Test {
protected:
    PlovikTest()
    {
        fs::create_directories(programs);
        fs::copy_file(PLOVIK_TOOL, programs / "plovik");
        // A pipe with a name: the application cannot tell before the test listens, which it does when the tool ended.
        ::mkfifo((programs / "told").c_str(), 0600);
        writeFile(application, "#!/bin/sh\n"
                               "exec 3>\"${0%/*}/told\"\n"
                               "printf '%s\\0' \"$(pwd -P)\" \"$PWD\" \"$(readlink /proc/$$/fd/0)\" "
                               "\"$(readlink /proc/$$/fd/1)\" \"$(readlink /proc/$$/fd/2)\" "
                               "\"$(cut -d' ' -f6 /proc/$$/stat | sed \"s/^$$\\$/own session/\")\" \"$@\" >&3\n");
        fs::permissions(application, fs::perms::owner_all);
    }

    gitkit::GitOutput run(const Lines& arguments, const fs::path& from, const Lines& environment = {"DISPLAY=:99"})
    {
        Lines all = environment;
        for (const char* kept : {"PATH", "HOME", "GIT_CONFIG_GLOBAL", "GIT_CONFIG_NOSYSTEM"}) {
            if (const char* value = std::getenv(kept))
                all.push_back(std::string(kept) + "=" + value);
        }
        return gitkit::runProcess({.executable = tool, .arguments = arguments, .directory = from, .environment = all});
    }

    /// What the application was started with; waits for it.
    Lines told() const
    {
        const gitkit::UniqueFd pipe(::open((programs / "told").c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
        std::string bytes;
        std::array<char, 4096> buffer{};
        pollfd watched{pipe.get(), POLLIN, 0};
        while (::poll(&watched, 1, 20'000) > 0) {
            const ssize_t count = ::read(pipe.get(), buffer.data(), buffer.size());
            if (count == 0)
                return split(bytes, '\0');
            bytes.append(buffer.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        }
        return {"the application was not started"};
    }

    Lines opened() const
    {
        Lines all = told();
        all.erase(all.begin(), all.begin() + std::min<std::ptrdiff_t>(6, std::ssize(all)));
        return all;
    }

    TemporaryFolder folder;
    fs::path programs = folder / "it's a bin";
    fs::path application = programs / "plovik-app";
    fs::path tool = programs / "plovik";
    TestRepository repo;
};

TEST_F(PlovikTest, OpensTheCurrentFolderInAnApplicationOfItsOwn)
{
    fs::create_directories(repo / "src");
    fs::create_directories(folder / "links");
    fs::create_symlink("../it's a bin/plovik", folder / "links/plovik");
    tool = folder / "links/plovik";

    const auto result = run({}, repo / "src", {"WAYLAND_DISPLAY=wayland-0", "PWD=" + (repo / "src").string()});
    EXPECT_EQ(result.status, 0) << result.errorText();
    EXPECT_EQ(result.text() + result.errorText(), "");
    EXPECT_THAT(told(), ElementsAre("/", "/", "/dev/null", "/dev/null", "/dev/null", "own session", "--",
                                    (repo / "src").string()));
}

TEST_F(PlovikTest, OpensEveryKindOfName)
{
    repo.write("sub/file", "").write("other/deep/file", "");
    for (const char* name : {"a b", "new\nline", "it's \"$HOME\"", "\xe9t\xe9", "-", "--help"})
        fs::create_directories(repo / name);
    fs::create_directory_symlink("other/deep", repo / "link");
    writeFile(folder / "elsewhere", "");
    fs::create_symlink(folder / "elsewhere", repo / "sub/out");

    const auto result = run({"a b", "new\nline", "it's \"$HOME\"", "\xe9t\xe9", "-", "link/..", "sub/file", "sub/out",
                             (repo / "sub").string() + "/", "--", "--help"},
                            repo.path());
    EXPECT_EQ(result.status, 0) << result.errorText();
    const std::string root = repo.path().string();
    EXPECT_THAT(opened(), ElementsAre("--", root + "/a b", root + "/new\nline", root + "/it's \"$HOME\"",
                                      root + "/\xe9t\xe9", root + "/-", root + "/other", root + "/sub", root + "/sub",
                                      root + "/sub", root + "/--help"));
}

TEST_F(PlovikTest, NamesWhatCannotBeOpenedAndOpensTheRest)
{
    const TestRepository bare({"--bare"});
    const std::string none = (folder / "no\x1b[2Jne\nhere\xff").string();
    fs::create_directories(none);
    const auto result =
        run({none, "gone", "", repo.path().string(), (bare / ".").string(), (repo / ".git").string()}, repo.path());
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(opened(), ElementsAre("--", repo.path().string(), bare.path().string()));
    const Lines said = split(result.errorText(), '\n');
    EXPECT_THAT(
        said,
        ElementsAre("plovik: “" + (folder / "no\\x1b[2Jne\\nhere\uFFFD").string() + "” is not in a git repository.",
                    "plovik: “gone” does not exist or may not be entered.",
                    "plovik: “” does not exist or may not be entered.", HasSubstr("/.git” has no working tree")));
}

TEST_F(PlovikTest, GivesGitsReasonForNotLooking)
{
    const auto result = run({}, repo.path(), {"DISPLAY=:99", "GIT_TEST_ASSUME_DIFFERENT_OWNER=1"});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errorText(), StartsWith("plovik: “" + repo.path().string() + "” could not be opened: "));
    EXPECT_THAT(result.errorText(), HasSubstr("ownership"));
    EXPECT_EQ(split(result.errorText(), '\n').size(), 1U);
}

TEST_F(PlovikTest, SaysWhyTheApplicationDoesNotStart)
{
    const auto blind = run({}, repo.path(), {"DISPLAY="});
    EXPECT_EQ(blind.status, 1);
    EXPECT_THAT(blind.errorText(), HasSubstr("no display"));

    fs::permissions(application, fs::perms::owner_read);
    const auto forbidden = run({}, repo.path());
    EXPECT_EQ(forbidden.status, 1);
    EXPECT_THAT(forbidden.errorText(), EndsWith("it's a bin/plovik-app” could not be started: Permission denied.\n"));

    fs::remove(application);
    const auto missing = run({}, repo.path());
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.errorText(), EndsWith("plovik-app” could not be started: No such file or directory.\n"));
}

TEST_F(PlovikTest, HandsCloneAndInitOn)
{
    const TestRepository bare({"--bare"});
    fs::create_directories(folder / "empty");
    writeFile(folder / "full/file", "");
    const std::string root = folder.path().string();
    const auto started = [&](const Lines& arguments) {
        const auto result = run(arguments, folder.path());
        EXPECT_EQ(result.text() + result.errorText(), "");
        return opened();
    };
    const std::string url = "https://example.org/a/engine.git";
    EXPECT_THAT(started({"clone", url}), ElementsAre("--action=clone-repository=" + url, "--", root + "/engine"));
    EXPECT_THAT(started({"clone", "--", "-odd:x", "empty"}),
                ElementsAre("--action=clone-repository=-odd:x", "--", root + "/empty"));
    EXPECT_THAT(started({"clone", fs::relative(bare.path(), folder.path()).string(), "new"}),
                ElementsAre("--action=clone-repository=" + bare.path().string(), "--", root + "/new"));
    EXPECT_THAT(started({"init"}), ElementsAre("--action=new-repository", "--", root));
    EXPECT_THAT(started({"init", "a/b/"}), ElementsAre("--action=new-repository", "--", root + "/a/b"));

    for (const auto& [arguments, status] : std::vector<std::pair<Lines, int>>{{{"clone"}, 2},
                                                                              {{"clone", url, "a", "b"}, 2},
                                                                              {{"clone", "--depth=1", url}, 2},
                                                                              {{"init", "a", "b"}, 2},
                                                                              {{"clone", url, "full"}, 1},
                                                                              {{"clone", "host:"}, 1},
                                                                              {{"init", "full/file"}, 1},
                                                                              {{"init", repo.path().string()}, 1}})
    {
        const auto refused = run(arguments, folder.path());
        EXPECT_EQ(refused.status, status) << arguments.front();
        EXPECT_THAT(refused.errorText(), StartsWith("plovik: "));
    }
    fs::create_directories(repo / "clone");
    run({"./clone"}, repo.path());
    EXPECT_THAT(opened(), ElementsAre("--", (repo / "clone").string()));
}

TEST_F(PlovikTest, AnswersOptions)
{
    const auto help = run({"--help", "--no-such"}, "/", {});
    EXPECT_EQ(help.status, 0);
    EXPECT_THAT(help.text(), StartsWith("Usage: plovik "));
    EXPECT_THAT(run({"--version"}, "/", {}).text(), testing::MatchesRegex("plovik [0-9.]+\n"));

    const auto unknown = run({repo.path().string(), "-x\x1b"}, "/");
    EXPECT_EQ(unknown.status, 2);
    EXPECT_EQ(unknown.text(), "");
    EXPECT_EQ(unknown.errorText(), "plovik: There is no option “-x\\x1b”; see “plovik --help”.\n");
}

} // namespace

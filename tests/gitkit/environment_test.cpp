// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/runner/GitEnvironment.h"
#include "GitKit/runner/GitExecutable.h"
#include "GitKit/runner/Process.h"
#include "tests/support/TestRepository.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <memory>
#include <set>

namespace gitkit {
namespace {

using Strings = std::vector<std::string>;

/// Turns letters into the lines of a file.
std::string lines(std::string_view letters)
{
    std::string text;
    for (const char letter : letters)
        text += std::string(1, letter) + "\n";
    return text;
}

std::string numbers(int last, const std::set<int>& changed = {})
{
    std::string text;
    for (int number = 1; number <= last; ++number)
        text += (changed.contains(number) ? "changed " : "line ") + std::to_string(number) + "\n";
    return text;
}

/// A repository in which every setting of the table would show.
struct EverythingRepository : TestRepository {
    EverythingRepository()
    {
        const std::string block = "/*\n * A\n */\na\n";
        library.write("l", "1").commit("library");
        write("numbers", numbers(40)).write("blank", "x\n\ny\n").write("src/s", "s\n").write("old name", "old\n");
        write("algorithm", lines("fxgdfaecfx")).write("indent", block + "/*\n * D\n */\nd\n");
        write(".mailmap", "Lovelace <lovelace@example.org> <ada@example.org>\n")
            .write("moved", numbers(9))
            .commit("first \xC3\xA4");
        git({"-c", "protocol.file.allow=always", "submodule", "--quiet", "add", library.path().string(), "module"});
        git({"mv", "moved", "moved again"}).commit("second");
        git({"tag", "first", "HEAD~1"});

        git({"init", "-q", "--bare", (outside / "bare").string()})
            .git({"remote", "add", "origin", (outside / "bare").string()});
        git({"push", "-q", "-u", "origin", "main"}).git({"branch", "origin/main"});
        git({"branch", "-q", "--track", "tracking", "refs/heads/origin/main"});
        git({"init", "-q", "--bare", (outside / "strict").string()})
            .git({"remote", "add", "strict", (outside / "strict").string()});
        writeFile(outside / "strict/hooks/pre-receive", "#!/bin/sh\necho error: not here >&2\nexit 1\n");
        std::filesystem::permissions(outside / "strict/hooks/pre-receive", std::filesystem::perms::owner_all);
        git({"commit", "-q", "--amend", "-m", "diverged"});
        writeFile(outside / "gpg", "#!/bin/sh\necho Good signature >&2\necho '[GNUPG:] GOODSIG 1 Eve'\n");
        std::filesystem::permissions(outside / "gpg", std::filesystem::perms::owner_all);
        git({"config", "gpg.program", (outside / "gpg").string()});
        const std::string who = " Ada <ada@example.org> 1600000000 +0000\n";
        git({"update-ref", "refs/heads/signed",
             storeCommit("tree " + read({"rev-parse", "HEAD^{tree}"}) + "\nauthor" + who + "committer" + who +
                         "gpgsig -----BEGIN PGP SIGNATURE-----\n \n x\n -----END PGP SIGNATURE-----\n\nsigned\n")});

        write("src/s", "stashed\n").git({"stash", "-q"});
        write("numbers", numbers(40, {2}))
            .write("copy", numbers(40))
            .git({"mv", "old name", "new name"})
            .git({"add", "-A"});
        write("numbers", numbers(40, {2, 10, 18, 30})).write("blank", "X\n\ny\n").write("src/s", "t\n");
        write("algorithm", lines("bdeebbxxbf")).write("indent", block + "/*\n * B\n */\nb\n/*\n * D\n */\nd\n");
        write("module/l", "2").git({"-C", "module", "commit", "-q", "-a", "-m", "more"});
        writeFile(outside / "order", "src*\nnumbers\n");
    }

    TestRepository library;
    TemporaryFolder outside;
};

/// One setting's hostile value, and a command whose output it changes.
struct Row {
    std::string key;
    std::string value;
    Strings arguments;
    std::string input = {};
};

std::vector<Row> rows(const EverythingRepository& repo)
{
    const Strings diff{"diff"};
    const Strings status{"status", "--porcelain=v2", "--branch", "-z", "--untracked-files=all"};
    const std::string patch = "--- a/numbers\n+++ b/numbers\n@@ -3,3 +3,3 @@\n line  3\n-line 4\n+line four\n line 5\n";
    const std::string cut = "x\n# ------------------------ >8 ------------------------\ny\n";
    return {
        {"diff.noprefix", "true", diff},
        {"diff.mnemonicPrefix", "true", diff},
        {"diff.context", "0", diff},
        {"diff.interHunkContext", "9", diff},
        {"diff.orderFile", (repo.outside / "order").string(), diff},
        {"diff.algorithm", "patience", diff},
        {"diff.indentHeuristic", "false", diff},
        {"diff.submodule", "log", diff},
        {"diff.ignoreSubmodules", "all", diff},
        {"diff.renames", "copies", {"diff", "--cached"}},
        {"diff.suppressBlankEmpty", "true", diff},
        {"apply.ignoreWhitespace", "change", {"apply", "--check", "-"}, patch},
        {"status.renames", "false", status},
        {"status.showStash", "true", status},
        {"log.showSignature", "true", {"log", "--format=%s", "signed"}},
        {"log.follow", "true", {"log", "--format=%s", "--", "moved again"}},
        {"log.showRoot", "false", {"log", "--format=%s", "--name-status"}},
        {"log.mailmap", "false", {"log", "--format=%s", "--author=Lovelace"}},
        {"i18n.logOutputEncoding", "ISO-8859-1", {"log", "--format=%s"}},
        {"i18n.commitEncoding", "ISO-8859-1", {"commit-tree", "-m", "\xC3\xA4", "HEAD^{tree}"}},
        {"core.warnAmbiguousRefs", "false", {"for-each-ref", "--format=%(upstream:short)"}},
        {"color.diff", "always", diff},
        {"color.push", "always", {"push", "origin", "main"}},
        {"color.transport", "always", {"push", "origin", "main"}},
        {"color.advice", "always", {"push", "origin", "main"}},
        {"color.remote", "always", {"push", "strict", "main"}},
        {"branch.autoSetupMerge", "inherit", {"branch", "-f", "fresh", "refs/remotes/origin/main"}},
        {"push.default", "nothing", {"push"}},
        {"tag.gpgSign", "true", {"tag", "-f", "-m", "x", "annotated", "first"}},
        {"commit.verbose", "true", {"commit", "--amend", "--only", "--cleanup=verbatim", "-F", "-"}, cut},
    };
}

std::string whatGitSays(const GitRunner& runner, const Row& row)
{
    const RunOptions options{
        .input = row.input,
        .accepting = {0},
        .environment = {{"GIT_COMMITTER_DATE", "1600000000 +0000"}, {"GIT_AUTHOR_DATE", "1600000000 +0000"}}};
    const GitOutput output = runner.output(row.arguments, options);
    return std::to_string(output.status) + "\n" + output.stdoutBytes + output.stderrBytes;
}

TEST(GitEnvironment, KeepsSettingsFromWhatIsRead)
{
    EverythingRepository repo;
    const GitRunner runner(repo.path());
    std::set<std::string> shown;
    for (const Row& row : rows(repo)) {
        shown.insert(row.key);
        const auto plain = [&](Strings arguments) {
            int status = 0;
            arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
            const std::string date = "=1600000000 +0000";
            const std::string text = runPlainGit(repo.path(), arguments, status, row.input,
                                                 {"GIT_COMMITTER_DATE" + date, "GIT_AUTHOR_DATE" + date});
            return std::to_string(status) + text;
        };
        EXPECT_NE(plain({}), plain({"-c", row.key + "=" + row.value})) << row.key << " shows nothing";

        const std::string before = whatGitSays(runner, row);
        repo.git({"config", row.key, row.value});
        EXPECT_EQ(whatGitSays(runner, row), before) << row.key;
        repo.git({"config", "--unset", row.key});
    }
    // Younger versions of git know these two alone; one more shows in a file, below.
    shown.insert({"diff.srcPrefix", "diff.dstPrefix", "diff.autoRefreshIndex"});
    // Younger versions always say it.
    shown.insert("merge.verbosity");
    std::set<std::string> pinned;
    for (const ConfigurationPin& pin : configurationPins())
        pinned.emplace(pin.key);
    EXPECT_EQ(shown, pinned);
}

TEST(GitEnvironment, HearsOfConflictsWhateverAMergeIsToSay)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").git({"branch", "topic"}).write("a", "2").commit("two");
    repo.git({"checkout", "-q", "topic"}).write("a", "3").commit("three").git({"config", "merge.verbosity", "0"});
    const GitOutput output = GitRunner(repo.path()).output({"merge", "-s", "recursive", "main"});
    EXPECT_NE(output.stdoutBytes.find("CONFLICT ("), std::string::npos) << output.stdoutBytes << output.stderrBytes;
}

TEST(GitEnvironment, KeepsSettingsThatNeedNoPinFromTheRecords)
{
    EverythingRepository repo;
    const auto read = [&] {
        const GitRepository repository = repo.repository();
        return std::tuple(repository.status(), repository.refs(), repository.stashes(), repository.remotes(),
                          repository.log({}, 99, {}),
                          repository.log({}, 99, HistoryFilter{HistoryFilter::Field::path, "s"}),
                          repository.log({}, 99, HistoryFilter{HistoryFilter::Field::message, "first "}));
    };
    const auto before = read();
    EXPECT_EQ(std::get<6>(before).size(), 1u);
    const std::pair<const char*, const char*> hostile[] = {
        {"log.excludeDecoration", "refs/*"},
        {"log.excludeDecoration", "HEAD"},
        {"log.initialDecorationSet", "all"},
        {"log.decorate", "short"},
        {"log.date", "iso"},
        {"log.abbrevCommit", "true"},
        {"log.graphColors", "red"},
        {"format.pretty", "oneline"},
        {"core.abbrev", "5"},
        {"core.pager", "false"},
        {"pager.log", "false"},
        {"column.ui", "always"},
        {"color.status", "always"},
        {"color.branch", "always"},
        {"color.decorate.HEAD", "red"},
        {"status.short", "true"},
        {"status.branch", "false"},
        {"status.relativePaths", "false"},
        {"status.submoduleSummary", "true"},
        {"status.aheadBehind", "false"},
        {"status.showUntrackedFiles", "no"},
        {"core.quotePath", "true"},
        {"grep.patternType", "perl"},
        {"diff.relative", "true"},
        {"tag.sort", "-refname"},
        {"branch.sort", "-refname"},
        {"diff.external", "false"},
        {"core.notesRef", "refs/heads/main"},
    };
    for (const auto& [key, value] : hostile)
        repo.git({"config", "--add", key, value});
    EXPECT_EQ(read(), before);
}

TEST(GitEnvironment, ReadsWithoutWritingTheIndex)
{
    TestRepository repo;
    repo.write("a", "1").commit("one");
    const auto stamp = std::filesystem::last_write_time(repo / "a");
    std::filesystem::last_write_time(repo / "a", stamp - std::chrono::hours(1));
    const std::string index = readFile(repo / ".git/index");
    const GitRunner runner(repo.path());
    runner.run({"diff"});
    repo.repository().status();
    EXPECT_TRUE(readFile(repo / ".git/index") == index);
    int status = 0;
    runPlainGit(repo.path(), {"diff"}, status);
    EXPECT_FALSE(readFile(repo / ".git/index") == index) << "plain git would not have written it either";
}

// Hooks and filters run git themselves, with patterns of their own.
TEST(GitEnvironment, HandsNoReadingOfPathsToHooks)
{
    TestRepository repo;
    repo.write(".gitattributes", "* filter=witness\n").write("a", "1").commit("one");
    const std::string seen = (repo.path().parent_path() / "seen").string();
    const std::string witness = "env | grep PATHSPECS >>'" + seen + "'; ";
    repo.git({"config", "filter.witness.clean", witness + "cat"})
        .git({"config", "filter.witness.smudge", witness + "cat"});
    const GitRepository repository = repo.repository();
    writeFile(seen, "");
    repo.write("a", "22");
    const FileChange file = repository.status().files.at(0);
    static_cast<void>(repository.workingDiff(file));
    repository.stage({file});
    repository.discard({repository.status().files.at(0)}, {});
    EXPECT_EQ(readFile(repo / "a"), "1");
    EXPECT_EQ(readFile(seen), "");
}

TEST(GitEnvironment, RunsAFileSystemMonitorForTheUserOnly)
{
    TestRepository repo;
    const std::filesystem::path witness = repo.path().parent_path() / "it ran";
    const std::filesystem::path program = repo.path().parent_path() / "monitor";
    writeFile(program, "#!/bin/sh\ntouch '" + witness.string() + "'\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    repo.write("a", "1").commit("one").git({"config", "core.fsmonitor", program.string()});
    repo.repository().status();
    EXPECT_FALSE(std::filesystem::exists(witness));

    const auto pinned = [](const std::optional<std::string>& users) { return gitEnvironment({}, {}, users); };
    const auto run = [&](const std::optional<std::string>& users) {
        return runProcess({GitExecutable::path(), {"status"}, repo.path(), pinned(users), {}}).status;
    };
    EXPECT_EQ(run({}), 0);
    EXPECT_FALSE(std::filesystem::exists(witness));
    EXPECT_EQ(run(program.string()), 0);
    EXPECT_TRUE(std::filesystem::exists(witness));
}

TEST(GitEnvironment, ReadsTheSameRepositoryWhateverItIsStartedFrom)
{
    TestRepository other;
    other.write("b", "2").commit("other");
    TestRepository repo;
    repo.write("[a]", "1").commit("one").write("[a]", "2").git({"stash", "-q"});
    const auto read = [&] {
        const GitRepository repository = repo.repository();
        const HistoryFilter search{HistoryFilter::Field::path, "A"};
        return std::tuple(repository.status(), repository.refs(), repository.stashes(), repository.log({}, 9, search),
                          repository.git({"ls-files", "[a]"}), GitRepository::topLevel(repo.path()));
    };
    const auto before = read();
    const std::string otherGit = (other / ".git").string();
    const std::map<std::string, std::string> hostile{
        {"GIT_DIR", otherGit},
        {"GIT_WORK_TREE", other.path().string()},
        {"GIT_COMMON_DIR", otherGit},
        {"GIT_INDEX_FILE", otherGit + "/index"},
        {"GIT_OBJECT_DIRECTORY", otherGit + "/objects"},
        {"GIT_NAMESPACE", "elsewhere"},
        {"GIT_SHALLOW_FILE", "/nowhere"},
        {"GIT_PREFIX", "sub/"},
        {"GIT_QUARANTINE_PATH", "/nowhere"},
        {"GIT_CONFIG_COUNT", "1"},
        {"GIT_CONFIG_KEY_0", "core.bare"},
        {"GIT_CONFIG_VALUE_0", "true"},
        {"GIT_CONFIG_PARAMETERS", "'core.bare'='true'"},
        {"GIT_LITERAL_PATHSPECS", "1"},
        {"GIT_EXTERNAL_DIFF", "/bin/false"},
        {"GIT_DIFF_OPTS", "-u0"},
        {"GIT_TRACE", "1"},
        {"GIT_TRACE2_PERF", "1"},
    };
    std::vector<std::unique_ptr<ScopedVariable>> variables;
    for (const auto& [name, value] : hostile)
        variables.push_back(std::make_unique<ScopedVariable>(name, value));
    EXPECT_EQ(read(), before);
    EXPECT_EQ(repo.repository().status().warnings, "");
}

TEST(GitEnvironment, ForgetsEveryVariableThatTiesGitToARepository)
{
    int status = 0;
    std::string names = runPlainGit("/", {"rev-parse", "--local-env-vars"}, status);
    ASSERT_EQ(status, 0);
    Strings inherited{"GIT_CONFIG_KEY_0=user.name",
                      "GIT_EXTERNAL_DIFF=x",
                      "LANGUAGE=de",
                      "GIT_AUTHOR_DATE=1",
                      "GIT_COMMITTER_NAME=Eve",
                      "GIT_CHERRY_PICK_HELP=x",
                      "GITHEAD_1=ours",
                      "HOME=/home/ada",
                      "EMPTY="};
    inherited.reserve(64);
    for (std::size_t end = names.find('\n'); end != std::string::npos; end = names.find('\n')) {
        inherited.push_back(names.substr(0, end) + "=inherited");
        names.erase(0, end + 1);
    }
    ASSERT_GT(inherited.size(), 12u);
    const std::vector<std::string_view> views(inherited.begin(), inherited.end());
    const Strings result = gitEnvironment(views, {}, {});
    for (const std::string& entry : inherited) {
        const bool kept = entry.starts_with("HOME=") || entry.starts_with("EMPTY=");
        EXPECT_EQ(std::ranges::count(result, entry), kept ? 1 : 0) << entry;
    }
}

TEST(GitEnvironment, SpeaksEnglishInTheUsersCharacters)
{
    using testing::Contains;
    using testing::Not;
    using testing::StartsWith;
    const std::vector<std::string_view> german{"LC_ALL=de_DE.UTF-8", "LANGUAGE=de", "LC_MESSAGES=de_DE",
                                               "LC_CTYPE=C",         "PATH=/x",     "GIT_EDITOR=vi"};
    const Strings result = gitEnvironment(german, {}, {});
    EXPECT_THAT(result, Contains("LC_MESSAGES=C"));
    EXPECT_THAT(result, Contains("LC_CTYPE=de_DE.UTF-8"));
    EXPECT_THAT(result, Not(Contains(StartsWith("LC_ALL"))));
    EXPECT_THAT(result, Not(Contains(StartsWith("LANGUAGE"))));
    EXPECT_THAT(result, Contains("PATH=/opt/homebrew/bin:/usr/local/bin:/x"));
    EXPECT_THAT(result, Contains("GIT_EDITOR=true"));
    EXPECT_THAT(result, Contains("GIT_SEQUENCE_EDITOR=true"));
    EXPECT_THAT(result, Contains("GIT_TERMINAL_PROMPT=0"));
    std::set<std::string> names;
    for (const std::string& entry : result)
        EXPECT_TRUE(names.insert(entry.substr(0, entry.find('='))).second) << entry << " stands twice";

    const std::vector<std::string_view> plain{"LC_ALL=", "LC_CTYPE=sv_SE"};
    const std::vector<std::pair<std::string, std::string>> overrides{{"GIT_EDITOR", "mine"}};
    EXPECT_THAT(gitEnvironment(plain, overrides, {}), Contains("LC_CTYPE=sv_SE"));
    EXPECT_THAT(gitEnvironment(plain, overrides, {}), Contains("GIT_EDITOR=mine"));
    EXPECT_THAT(gitEnvironment(plain, overrides, {}), Contains("PATH=/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin"));
    const std::vector<std::string_view> empty{"PATH="};
    EXPECT_THAT(gitEnvironment(empty, {}, {}), Contains("PATH=/opt/homebrew/bin:/usr/local/bin:/usr/bin:/bin"));
    const std::vector<std::string_view> here{"PATH=:/x::.:bin:/y:"};
    EXPECT_THAT(gitEnvironment(here, {}, {}), Contains("PATH=/opt/homebrew/bin:/usr/local/bin:/x:/y"))
        << "the folder that git runs in is no place for programs";
}

} // namespace
} // namespace gitkit

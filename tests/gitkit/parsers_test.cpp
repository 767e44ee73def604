// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DisplayOrder.h"
#include "GitKit/parsers/LogParser.h"
#include "GitKit/parsers/NameStatusParser.h"
#include "GitKit/parsers/RefParser.h"
#include "GitKit/parsers/StashParser.h"
#include "GitKit/parsers/StatusParser.h"
#include "GitKit/records/QuotedName.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace gitkit {
namespace {

using namespace std::string_literals;
using Strings = std::vector<std::string>;

const std::string hash(40, 'a');

std::string joined(std::initializer_list<std::string> pieces, char separator)
{
    std::string text;
    for (const std::string& piece : pieces)
        text += piece + separator;
    return text;
}

std::string fields(std::initializer_list<std::string> pieces) { return joined(pieces, '\0'); }

std::string refLine(std::initializer_list<std::string> pieces)
{
    std::string text = joined(pieces, '\x1f');
    text.pop_back();
    return text;
}

Date at(long long seconds) { return Date{std::chrono::seconds{seconds}}; }

TEST(StatusParser, ReadsEveryKindOfRecord)
{
    const std::string objects = " N... 100644 100644 100644 " + hash + " " + hash;
    const RepoStatus status = StatusParser::parse(joined(
        {
            "# branch.oid " + hash,
            "# branch.head feature/a b",
            "# branch.upstream origin/main",
            "# branch.ab +? -?",
            "# stash 4",
            "# short",
            "1 M." + objects + " with some  spaces ",
            "1 .M" + objects,
            "2 R." + objects + " R100 z new",
            "1 D. looks like a record",
            "u UU N... 1 2 3 4 h1 h2 h3 conflict",
            "? new\nline",
            "! ignored",
            "? ",
            "1 M." + objects + " ",
            "nonsense",
        },
        '\0'));
    EXPECT_EQ(status.oid, hash);
    EXPECT_EQ(status.branch, "feature/a b");
    EXPECT_EQ(status.upstream, "origin/main");
    const std::vector<FileChange> expected{
        {"conflict", {}, 'U', 'U', true},
        {"new\nline", {}, '?', '?', false},
        {"with some  spaces ", {}, 'M', '.', false},
        {"z new", "1 D. looks like a record", 'R', '.', false},
    };
    EXPECT_EQ(status.files, expected);
    EXPECT_EQ(StatusParser::parse(""), RepoStatus{});
}

TEST(StatusParser, TellsUnbornFromDetached)
{
    const RepoStatus unborn = StatusParser::parse("# branch.oid (initial)\0# branch.head main\0"s);
    EXPECT_FALSE(unborn.hasCommits());
    EXPECT_EQ(unborn.branch, "main");
    EXPECT_FALSE(unborn.isDetached());
    const RepoStatus detached = StatusParser::parse("# branch.oid " + hash + "\0# branch.head (detached)\0"s);
    EXPECT_TRUE(detached.isDetached());
}

TEST(DisplayOrder, OrdersAsAFileBrowserDoes)
{
    // Each list is in order.
    const Strings lists[] = {
        {"src/file2.txt", "src/File10.txt", "src/file10.txt.bak", "src/file100.txt"},
        {"a/z", "a b/a", "a-b/a", "a1/a", "ab/a"},
        {"_x", "1", "01", "2", "10", "99999999999999999999", "100000000000000000000", "A", "a", "B", "b"},
        {"Apfel", "\xC3\x84pfel1", "\xC3\xA4pfel2", "Arm", "Zug", "\xD0\x90", "\xD0\xB0 1", "\xD0\x91"},
        {"same", "same\xFF", "same\xFF\xFE"},
    };
    std::mt19937 random(7);
    for (const Strings& list : lists) {
        for (int round = 0; round < 20; ++round) {
            std::vector<FileChange> files;
            for (const std::string& path : list)
                files.push_back({path, {}, 'M', '.', false});
            std::ranges::shuffle(files, random);
            sortForDisplay(files);
            Strings paths;
            for (const FileChange& file : files)
                paths.push_back(file.path);
            // "01" and "1" are the same number, and then bytes decide.
            Strings expected = list;
            if (const auto one = std::ranges::find(expected, "01"); one != expected.end())
                std::iter_swap(one - 1, one);
            EXPECT_EQ(paths, expected);
        }
    }
    // The same path twice, as a conflict and as a new file, keeps git's order.
    std::vector<FileChange> twice{{"b", {}, 'M', '.', false}, {"a", {}, 'D', '.', false}, {"a", {}, '?', '?', false}};
    sortForDisplay(twice);
    EXPECT_EQ(twice[0].index, 'D');
    EXPECT_EQ(twice[1].index, '?');
}

TEST(RefParser, ReadsBranchesRemotesAndTags)
{
    const auto refs = RefParser::parse(joined(
        {
            refLine({"refs/heads/main", "h1", "origin/main", "[ahead 12, behind 3]", "*"}),
            refLine({"refs/heads/gone", "h2", "origin/gone", "[gone]", " "}),
            refLine({"refs/heads/late", "h3", "origin/late", "[behind 5]", " "}),
            refLine({"refs/remotes/origin/HEAD", "h1", "", "", " "}),
            refLine({"refs/remotes/origin/main", "h1", "", "", " "}),
            refLine({"refs/tags/\xE4", "h4", "", "[ahead x]", " "}),
            refLine({"refs/notes/commits", "h5", "", "", " "}),
            refLine({"refs/heads/short", "h6", "", ""}),
            "",
        },
        '\n'));
    using Kind = GitRef::Kind;
    const std::vector<GitRef> expected{
        {"refs/heads/main", "main", Kind::local, "h1", true, "origin/main", 12, 3},
        {"refs/heads/gone", "gone", Kind::local, "h2", false, "origin/gone", 0, 0},
        {"refs/heads/late", "late", Kind::local, "h3", false, "origin/late", 0, 5},
        {"refs/remotes/origin/main", "origin/main", Kind::remote, "h1", false, {}, 0, 0},
        {"refs/tags/\xE4", "\xE4", Kind::tag, "h4", false, {}, 0, 0},
    };
    EXPECT_EQ(refs, expected);
}

TEST(StashParser, ReadsRecordsUntilOneIsShort)
{
    const auto stashes = StashParser::parse(fields(
        {"stash@{0}", "h1", "1600000000", "On main: \xE4\x1f", "stash@{1}", "h2", "soon", "WIP", "x", "y", "z"}));
    const std::vector<Stash> expected{{"stash@{0}", "h1", at(1600000000), "On main: \xEF\xBF\xBD\x1f"},
                                      {"stash@{1}", "h2", at(0), "WIP"}};
    EXPECT_EQ(stashes, expected);
    EXPECT_EQ(RemoteParser::parse("origin\n\nup stream\n"), (Strings{"origin", "up stream"}));
}

TEST(LogParser, ReadsCommits)
{
    const auto commits = LogParser::parse(
        fields({"h1", "p1 p2", "Ada", "a@b", "1600000000", "HEAD -> refs/heads/main, tag: refs/tags/v1.0", "Merge"}) +
        fields({"h2", "", "", "", "-7200", "", "Root \xE4\x1f\x1e"}) + fields({"", "", "", "", "1", "", "no hash"}) +
        fields({"h4", " p1 ", " B ", "", "1e999", "refs/stash", ""}) + fields({"h3", "", "Ada", "a@b", "never", ""}));
    ASSERT_EQ(commits.size(), 3u);
    using Kind = RefLabel::Kind;
    const Commit merge{"h1",
                       {"p1", "p2"},
                       "Ada",
                       "a@b",
                       at(1600000000),
                       "Merge",
                       {{Kind::localBranch, "main", true}, {Kind::tag, "v1.0", false}}};
    EXPECT_EQ(commits[0], merge);
    const Commit root{"h2", {}, "", "", at(-7200), "Root \xEF\xBF\xBD\x1f\x1e", {}};
    EXPECT_EQ(commits[1], root);
    const Commit bare{"h4", {"p1"}, " B ", "", at(0), "", {}};
    EXPECT_EQ(commits[2], bare);
    EXPECT_TRUE(LogParser::parse("").empty());
}

TEST(LogParser, KnowsLabelsFromOtherRefs)
{
    using Kind = RefLabel::Kind;
    const std::vector<RefLabel> expected{{Kind::head, "HEAD", true},
                                         {Kind::localBranch, "feature/x", false},
                                         {Kind::remoteBranch, "origin/main", false},
                                         {Kind::tag, "v2", false}};
    EXPECT_EQ(LogParser::decorations("HEAD, refs/heads/feature/x,  refs/remotes/origin/main, refs/remotes/origin/HEAD, "
                                     "tag: refs/tags/v2, refs/stash, main, "),
              expected);
}

TEST(LogParser, ReadsTheHistoryOfAFile)
{
    const auto record = [](char digit) { return fields({std::string(40, digit), "p", "A", "e", "5", "", "s\x1ex"}); };
    const auto revisions =
        LogParser::parseFileLog(record('1') + fields({"\nM", "src/a.c"}) + record('2') +
                                    fields({"\nR087", "src/o ld.c", "src/new.c", "M", "other"}) + record('3') +
                                    record('4') + fields({"\nA", "t\tab\n"}) + record('5') + "\nM",
                                "asked");
    ASSERT_EQ(revisions.size(), 5u);
    const std::vector<CommitFile> expected{{'M', "src/a.c", {}, {}},
                                           {'R', "src/new.c", "src/o ld.c", {}},
                                           {'M', "asked", {}, {}},
                                           {'A', "t\tab\n", {}, {}},
                                           {'M', "asked", {}, {}}};
    for (std::size_t index = 0; index < expected.size(); ++index) {
        EXPECT_EQ(revisions[index].file, expected[index]);
        EXPECT_EQ(revisions[index].commit.hash, std::string(40, static_cast<char>('1' + index)));
        EXPECT_EQ(revisions[index].commit.subject, "s\x1ex");
    }
}

TEST(LogParser, ReadsDetailWithAnythingInItsMessage)
{
    const auto detail = LogParser::parseDetail(
        fields({"h", "p1 p2", "A", "a@b", "10", "C", "x", "\nSubject\n\n  body \x1f \x1e with signs\n\n", "\nM", "f"}));
    ASSERT_TRUE(detail);
    const CommitDetail expected{"h",
                                {"p1", "p2"},
                                "A",
                                "a@b",
                                at(10),
                                "C",
                                at(0),
                                "Subject\n\n  body \x1f \x1e with signs",
                                {{'M', "f", {}, {}}}};
    EXPECT_EQ(*detail, expected);
    EXPECT_FALSE(LogParser::parseDetail(fields({"h", "p", "A", "a@b", "10", "C", "11"})));
    EXPECT_FALSE(LogParser::parseDetail(""));
}

TEST(NameStatusParser, KeepsBytesAndStopsBeforeAnIncompleteEntry)
{
    const auto files = NameStatusParser::parse("\nM\0a.txt\0A\0\nb\n\0R087\0old\0new\0C100\0one\0"s);
    const std::vector<CommitFile> expected{{'M', "a.txt", {}, {}}, {'A', "\nb\n", {}, {}}, {'R', "new", "old", {}}};
    EXPECT_EQ(files, expected);
    EXPECT_TRUE(NameStatusParser::parse("").empty());
    EXPECT_TRUE(NameStatusParser::parse("M"s).empty());
    EXPECT_EQ(unquotedName("\"\\a\\b\\t\\n\\v\\f\\r\\\"\\\\\\001\\377\\9\""), "\a\b\t\n\v\f\r\"\\\x01\xFF"
                                                                              "9");
    EXPECT_EQ(unquotedName("\"cut\\\""), "cut\\");
    EXPECT_EQ(unquotedName("\""), "\"");
}

} // namespace
} // namespace gitkit

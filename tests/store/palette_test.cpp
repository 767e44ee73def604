// SPDX-License-Identifier: GPL-3.0-or-later
// What is found by typing a part of a name.

#include "app/store/readers/Palette.h"

#include "GitKit/repository/GitRepository.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <stop_token>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

using PaletteKind = PaletteEntry::Kind;
using Names = std::vector<std::string>;

Names found(const PaletteEntries& entries, const QString& typed)
{
    const PaletteFound answer = findInPalette({std::make_shared<const PaletteEntries>(entries), typed}, {});
    Names names;
    for (const std::size_t place : answer.places)
        names.push_back(entries[place].title.toStdString());
    return names;
}

TEST(Palette, WholeNamesGoBeforeBeginningsAndThoseBeforePartsAndLettersInOrder)
{
    const PaletteEntries entries{{.kind = PaletteKind::command, .title = u"View: Side by Side"_s},
                                 {.kind = PaletteKind::branch, .title = u"feature/inside"_s},
                                 {.kind = PaletteKind::branch, .title = u"fix/side"_s},
                                 {.kind = PaletteKind::tag, .title = u"side"_s},
                                 {.kind = PaletteKind::file, .title = u"app/sidebar/Model.cpp"_s},
                                 {.kind = PaletteKind::file, .title = u"src/idle/e.c"_s},
                                 {.kind = PaletteKind::commit, .title = u"Basic ideas"_s},
                                 {.kind = PaletteKind::commit, .title = u"Look aside"_s}};
    EXPECT_EQ(found(entries, u"side"_s), (Names{"fix/side", "side", "View: Side by Side", "app/sidebar/Model.cpp",
                                                "feature/inside", "Look aside", "src/idle/e.c"}))
        << "letters scattered in a sentence are no match";
    EXPECT_EQ(found(entries, u"sbM"_s), (Names{"app/sidebar/Model.cpp"}));
    EXPECT_EQ(found(entries, u"model app"_s), (Names{"app/sidebar/Model.cpp"}));
    EXPECT_EQ(found(entries, u"side zz"_s), Names());
    EXPECT_EQ(found(entries, u"  "_s).size(), entries.size());
}

TEST(Palette, ListsBranchesByTheirUseAndDateAndEachConflictedFileOnce)
{
    TestRepository repo;
    repo.write("a", "1").commit("one").git({"branch", "old"});
    repo.write("a", "2").commit("two").git({"branch", "newer"}).git({"branch", "used"});
    repo.git({"checkout", "-q", "used"}).git({"checkout", "-q", "-b", "other", "old"});
    repo.write("a", "3").commit("three").git({"tag", "v1"}).git({"update-ref", "refs/remotes/origin/main", "main"});
    repo.git({"symbolic-ref", "refs/remotes/origin/HEAD", "refs/remotes/origin/main"});
    int status = 0;
    runPlainGit(repo.path(), {"merge", "main"}, status);
    EXPECT_NE(status, 0) << "a is in conflict";
    repo.write("new", "1");
    const gitkit::GitRepository git(repo.path());
    PaletteRequest request{.current = "refs/heads/other", .changed = git.status().files};
    Names names;
    const std::shared_ptr<const PaletteEntries> entries = readPalette(git, request);
    for (const PaletteEntry& entry : *entries)
        names.push_back(entry.name);
    EXPECT_EQ(names, (Names{"refs/heads/other", "refs/heads/used", "refs/heads/main", "refs/heads/newer",
                            "refs/heads/old", "refs/remotes/origin/main", "refs/tags/v1", "new", "a", repo.head(),
                            repo.read({"rev-parse", "main"}), repo.read({"rev-parse", "old"})}));
    request.scope = PaletteRequest::Scope::branches;
    EXPECT_EQ(readPalette(git, request)->size(), 6);
    request.scope = PaletteRequest::Scope::remoteBranches;
    ASSERT_EQ(readPalette(git, request)->size(), 1);
    EXPECT_EQ(readPalette(git, request)->front().name, "refs/remotes/origin/main");
}

TEST(Palette, ListsNoMoreThanAFewRowsAndEndsWhenNobodyWaits)
{
    const PaletteEntries entries(5000, {.kind = PaletteKind::file, .title = u"src/file"_s});
    const PaletteQuery query{std::make_shared<const PaletteEntries>(entries), u"file"_s};
    const PaletteFound all = findInPalette(query, {});
    EXPECT_EQ(all.places.size(), mostPaletteRows);
    EXPECT_EQ(all.count, 5000);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_EQ(findInPalette(query, stop.get_token()).count, 0);
}

} // namespace
} // namespace plovik

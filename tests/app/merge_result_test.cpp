// SPDX-License-Identifier: GPL-3.0-or-later
// The text of a merge's result: random choices, typing, undo and redo, compared with plain text and with git's merge.

#include "GitKit/MergeSegments.h"
#include "app/ui/merge/MergeResult.h"
#include "app/ui/merge/MergeStart.h"

#include <gtest/gtest.h>

#include <random>

namespace plovik {
namespace {

using Choice = gitkit::MergeChoice;
using gitkit::MergeInput;

MergeResult::Sides merged(MergeInput input)
{
    return std::make_shared<const gitkit::MergedSides>(gitkit::mergedSides({}, std::move(input)));
}

const MergeInput twoConflicts{.base = "top\n1\nmid\n2\ngap\nsame\nend\n",
                              .left = "top\nL1\nmid\nL2\ngap\nsame\nend\nleft\n",
                              .right = "top\nR1\nmid\nR2\ngap\nsame!\nend\n"};

void change(QString& mirror, const std::optional<MergeResult::Edit>& edit)
{
    if (edit)
        mirror.replace(edit->position, edit->removed, edit->added);
}

TEST(MergeResult, CountsWhatIsLeftAndGoesFromConflictToConflict)
{
    MergeResult result(merged(twoConflicts));
    EXPECT_EQ(result.conflictCount(), 2);
    EXPECT_EQ(result.undecidedCount(), 2);
    const auto first = result.nextConflict(std::nullopt, 1);
    ASSERT_TRUE(first);
    const auto second = result.nextConflict(first, 1);
    EXPECT_NE(first, second);
    EXPECT_EQ(result.nextConflict(second, 1), first) << "round the end";
    result.choose(*first, Choice::rightThenLeft);
    EXPECT_EQ(result.undecidedCount(), 1);
    EXPECT_EQ(result.nextConflict(second, 1), second) << "the one that is left";
    result.choose(*second, Choice::none);
    EXPECT_EQ(result.bytes({}), "top\nR1\nL1\nmid\ngap\nsame!\nend\nleft\n");
    EXPECT_EQ(result.nextConflict(first, 1), second) << "none is left, so all are visited";
}

TEST(MergeResult, TakesTypingIntoAConflictForItsAnswer)
{
    MergeResult result(merged(twoConflicts));
    const std::size_t first = *result.nextConflict(std::nullopt, 1);
    QString mirror = result.text();
    const MergeResult::Edit typing{result.begin(first) + 1, 0, QStringLiteral("mine")};
    change(mirror, typing);
    result.typed(typing);
    change(mirror, result.cleared());
    EXPECT_EQ(result.text(), mirror);
    EXPECT_FALSE(result.isUndecided(first));
    EXPECT_EQ(result.undecidedCount(), 1);
    EXPECT_EQ(result.text().mid(result.begin(first), 5), QStringLiteral("mine\n"));
    result.undo();
    EXPECT_TRUE(result.isUndecided(first));
    EXPECT_EQ(result.text(), MergeResult(merged(twoConflicts)).text());
    result.redo();
    EXPECT_EQ(result.text(), mirror);
}

TEST(MergeResult, KeepsBytesThatAreNoUtf8AndSaysWhatTheyCannotHold)
{
    MergeResult result(merged({.base = "caf\xe9\nx", .left = "caf\xe9!\nx", .right = "caf\xe9?\nx"}));
    const std::size_t conflict = *result.nextConflict(std::nullopt, 1);
    result.choose(conflict, Choice::left);
    result.typed({0, 0, QStringLiteral("\u00fc")});
    EXPECT_EQ(result.bytes({}), "\xfc"
                                "caf\xe9!\nx");
    result.typed({0, 0, QStringLiteral("\u20ac")});
    EXPECT_EQ(result.bytes({}), std::nullopt);
}

TEST(MergeResult, HoldsWhateverIsDoneAndTakesItAllBack)
{
    std::mt19937 engine(7);
    const auto below = [&engine](qsizetype count) {
        return std::uniform_int_distribution<qsizetype>(0, std::max<qsizetype>(count - 1, 0))(engine);
    };
    const std::vector<MergeInput> inputs{
        twoConflicts,
        {.base = "a\r\nb\r\nc\r\n", .left = "x\r\nb\r\nc", .right = "y\r\nb\r\nd\r\n"},
        {.base = std::nullopt, .left = "one\ntwo\n", .right = "uno\ntwo\n\xef\xbf\xbc\n"},
        {.base = "a\nb\nc\nd\ne\n", .left = "a\nd\ne\n", .right = "a\nB\nc\nd\n"}};
    std::vector<MergeResult::Sides> merges;
    std::ranges::transform(inputs, std::back_inserter(merges), &merged);
    for (int round = 0; round < 200; ++round) {
        SCOPED_TRACE(round);
        const auto& sides = merges[static_cast<std::size_t>(round) % merges.size()];
        MergeResult result(sides);
        const QString start = result.text();
        const auto startBytes = result.bytes({});
        QString mirror = start;
        std::vector<Choice> choices(sides->segments.size(), Choice::undecided);
        bool isChosenOnly = true;
        for (int action = 0; action < 25; ++action) {
            const qsizetype kind = below(10);
            if (kind < 4) {
                const auto index = static_cast<std::size_t>(below(static_cast<qsizetype>(choices.size())));
                choices[index] = static_cast<Choice>(below(7));
                change(mirror, result.choose(index, choices[index]));
                if (isChosenOnly)
                    ASSERT_EQ(result.bytes({}), gitkit::joined(*sides, choices));
            } else if (kind < 7 && round % 2 == 0) {
                const qsizetype at = below(mirror.size());
                MergeResult::Edit edit{at, std::min(below(4), mirror.size() - at), {}};
                edit.added = below(2) ? QStringLiteral("z") : QStringLiteral("q\nr");
                change(mirror, edit);
                result.typed(edit);
                change(mirror, result.cleared());
                isChosenOnly = false;
            } else if (kind < 9 && result.canUndo()) {
                change(mirror, result.undo());
                isChosenOnly = false;
            } else if (result.canRedo()) {
                change(mirror, result.redo());
            }
            ASSERT_EQ(result.text(), mirror);
            ASSERT_EQ(result.begin(result.pieces().size()), mirror.size());
        }
        while (result.canUndo())
            change(mirror, result.undo());
        ASSERT_EQ(mirror, start);
        ASSERT_EQ(result.bytes({}), startBytes);
    }
}

TEST(MergeStart, FindsWhatAFileHasBecome)
{
    const auto sides = merged(twoConflicts);
    const std::size_t first = *MergeResult(sides).nextConflict(std::nullopt, 1);
    const std::string untouched = gitkit::joined(*sides);
    EXPECT_EQ(MergeResult(sides, startsFrom(*sides, untouched, 7)).undecidedCount(), 2);
    for (int number = 1; number < 7; ++number) {
        std::vector<Choice> choices(sides->segments.size(), Choice::undecided);
        choices[first] = static_cast<Choice>(number);
        const std::string file = gitkit::joined(*sides, choices);
        const MergeResult found(sides, startsFrom(*sides, file, 7));
        EXPECT_EQ(found.undecidedCount(), 1) << number;
        EXPECT_EQ(found.bytes({}), file);
    }
    // Edits anywhere stay as they are, and what git has left is recognised between them.
    for (const auto& [from, to] : std::vector<std::pair<std::string, std::string>>{
             {"top\n", "Top\n"}, {"mid\n", ""}, {"end\n", "end\nmore\n"}, {"L1\n", "L1 edited\n"}})
    {
        std::string file = untouched;
        file.replace(file.find(from), from.size(), to);
        const MergeResult found(sides, startsFrom(*sides, file, 7));
        EXPECT_EQ(found.bytes({}), file) << from;
        EXPECT_GE(found.undecidedCount(), from == "mid\n" ? 0 : 1) << from;
    }
    EXPECT_EQ(MergeResult(sides, startsFrom(*sides, "other\n", 7)).bytes({}), "other\n");
    EXPECT_EQ(MergeResult(sides, startsFrom(*sides, "", 7)).bytes({}), "");
}

TEST(MergeStart, KnowsTheMarkersThatGitWritesInAFile)
{
    const auto sides = merged({.base = "a\n1\nb\nz\n", .left = "a\nx\nL\ny\nb\nz\n", .right = "a\nx\nR\ny\nb\nz\n"});
    const std::string byGit = "a\nx\n<<<<<<< HEAD\nL\n=======\nR\n>>>>>>> topic\ny\nb\nz\n";
    EXPECT_EQ(MergeResult(sides, startsFrom(*sides, byGit, 7)).undecidedCount(), 1);
    const std::string edited = "a\nx\n<<<<<<< HEAD\nL, edited\n=======\nR\n>>>>>>> topic\ny\nb\nz\n";
    EXPECT_EQ(MergeResult(sides, startsFrom(*sides, edited, 7)).bytes({}), edited);
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
// Random sides: what our segments become is compared with what `git merge-file` writes for the same sides.

#include "GitKit/MergeSegments.h"
#include "GitKit/repository/GitRepository.h"
#include "tests/support/TestRepository.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace gitkit {
namespace {

using SegmentKind = MergeSegment::Kind;

class MergeDice {
public:
    explicit MergeDice(std::uint64_t seed) : engine_(seed) {}

    int below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(engine_); }
    bool chance(int percent) { return below(100) < percent; }

    std::string line()
    {
        static const std::vector<std::string> lines{
            "a",       "b",   "}",           "",          "\tx",       " x", "<<<<<<< HEAD",
            "=======", "|||", ">>>>>>>>> b", "long line", "\xe9t\xe9", "a\r"};
        return lines[static_cast<std::size_t>(below(static_cast<int>(lines.size())))];
    }
    std::vector<std::string> lines(int most)
    {
        std::vector<std::string> made(static_cast<std::size_t>(below(most + 1)));
        for (std::string& one : made)
            one = line();
        return made;
    }
    std::vector<std::string> changed(std::vector<std::string> lines)
    {
        for (int edits = below(4); edits > 0; --edits) {
            const int at = below(static_cast<int>(lines.size()) + 1);
            const int gone = std::min(below(3), static_cast<int>(lines.size()) - at);
            lines.erase(lines.begin() + at, lines.begin() + at + gone);
            for (int more = below(3); more > 0; --more)
                lines.insert(lines.begin() + at, line());
        }
        return lines;
    }

private:
    std::mt19937_64 engine_;
};

std::string textOf(const std::vector<std::string>& lines, const char* end, bool isEnded)
{
    std::string text;
    for (const std::string& line : lines)
        text += line + end;
    if (!isEnded && !lines.empty())
        text.resize(text.size() - std::string_view(end).size());
    return text;
}

struct MergeCase : testing::Test {
    std::string git(std::vector<std::string> options, const MergedSides& sides)
    {
        writeFile(folder / "l", sides.left.bytes());
        writeFile(folder / "b", sides.base.bytes());
        writeFile(folder / "r", sides.right.bytes());
        std::vector<std::string> command{"merge-file", "-p", "-L", "L", "-L", "B", "-L", "R"};
        command.insert(command.end(), options.begin(), options.end());
        command.insert(command.end(), {"l", "b", "r"});
        return GitRunner(folder.path()).output(command).stdoutBytes;
    }
    static std::vector<MergeChoice> all(const MergedSides& sides, MergeChoice choice)
    {
        std::vector<MergeChoice> choices(sides.segments.size(), MergeChoice::undecided);
        for (std::size_t index = 0; index < choices.size(); ++index) {
            if (sides.segments[index].kind == SegmentKind::conflict)
                choices[index] = choice;
        }
        return choices;
    }
    /// The segments of a side, one after another, are that side; clean segments are what their kind says.
    static void expectWhole(const MergedSides& sides)
    {
        std::string base, left, right;
        for (const MergeSegment& segment : sides.segments) {
            const std::string_view b = sides.lines(segment, MergeSide::base);
            const std::string_view l = sides.lines(segment, MergeSide::left);
            const std::string_view r = sides.lines(segment, MergeSide::right);
            base += b;
            left += l;
            right += r;
            EXPECT_EQ(l == r, segment.kind == SegmentKind::equal || segment.kind == SegmentKind::changedBoth ||
                                  (segment.kind == SegmentKind::conflict && l == r));
            if (sides.hasBase) {
                EXPECT_TRUE(b == l || segment.kind == SegmentKind::changedLeft ||
                            segment.kind == SegmentKind::changedBoth || segment.kind == SegmentKind::conflict);
                EXPECT_TRUE(b == r || segment.kind == SegmentKind::changedRight ||
                            segment.kind == SegmentKind::changedBoth || segment.kind == SegmentKind::conflict);
            }
        }
        EXPECT_EQ(base, sides.base.bytes());
        EXPECT_EQ(left, sides.left.bytes());
        EXPECT_EQ(right, sides.right.bytes());
    }
    /// The sides as they were compared.
    static MergedSides endedSides(MergedSides sides)
    {
        sides.addedToBase = sides.addedToLeft = sides.addedToRight = 0;
        return sides;
    }
    MergedSides expectAsGit(const MergeInput& input)
    {
        const MergedSides sides = mergedSides({}, input);
        expectWhole(sides);
        const MergedSides whole = endedSides(sides);
        const MergeMarkers markers{.size = sides.markerSize, .left = "L", .base = "B", .right = "R"};
        const std::string size = "--marker-size=" + std::to_string(sides.markerSize);
        EXPECT_EQ(joined(whole, {}, markers), git({"--diff3", size}, sides));
        EXPECT_EQ(joined(whole, all(sides, MergeChoice::left)), git({"--ours"}, sides));
        EXPECT_EQ(joined(whole, all(sides, MergeChoice::right)), git({"--theirs"}, sides));
        // Only the end of the last line is decided here and not by git.
        const std::string decided = joined(sides, {}, markers);
        EXPECT_TRUE(joined(whole, {}, markers).starts_with(decided));
        return sides;
    }

    TemporaryFolder folder;
};

TEST_F(MergeCase, BecomesWhatGitWritesForRandomSides)
{
    const char* const seeded = std::getenv("PLOVIK_SEED");
    const char* const counted = std::getenv("PLOVIK_ACTIONS");
    const std::uint64_t first = seeded ? std::strtoull(seeded, nullptr, 10) : 1;
    const std::uint64_t count = seeded ? 1 : counted ? std::strtoull(counted, nullptr, 10) : 200;
    for (std::uint64_t seed = first; seed < first + count && !HasFailure(); ++seed) {
        SCOPED_TRACE("PLOVIK_SEED=" + std::to_string(seed));
        MergeDice dice(seed);
        const std::vector<std::string> base = dice.lines(dice.chance(20) ? 40 : 9);
        const std::vector<std::string> left = dice.changed(base);
        const std::vector<std::string> right = dice.chance(10) ? left : dice.changed(base);
        const char* const end = dice.chance(30) ? "\r\n" : "\n";
        const char* const other = dice.chance(10) ? "\r\n" : end;
        expectAsGit({.base = textOf(base, end, dice.chance(80)),
                     .left = textOf(left, end, dice.chance(80)),
                     .right = textOf(right, other, dice.chance(80))});
    }
}

TEST_F(MergeCase, ALastLineKeepsAndLosesItsEndWithTheSideItIsFrom)
{
    const auto result = [](const MergeInput& input, MergeChoice choice = MergeChoice::undecided) {
        const MergedSides sides = mergedSides({}, input);
        return joined(sides, all(sides, choice));
    };
    EXPECT_EQ(result({"a\nb", "a\nb\n", "a\nb"}), "a\nb\n");
    EXPECT_EQ(result({"a\nb\n", "x\nb\n", "a\nb"}), "x\nb");
    EXPECT_EQ(result({"a\n\nb", "x\n\nb\n", "a\n\nc"}), "x\n\nc") << "the line is that of the right side";
    EXPECT_EQ(result({"a\n", "l", "r\n"}, MergeChoice::left), "l");
    EXPECT_EQ(result({"a\n", "l", "r\n"}, MergeChoice::right), "r\n");
    EXPECT_EQ(result({"a\n", "l", "r\n"}, MergeChoice::rightThenLeft), "r\nl");
    EXPECT_EQ(result({"a\n", "l", "r\n"}, MergeChoice::leftThenRight), "l\nr\n");
    EXPECT_EQ(result({"a\r\nb", "a\r\nl", "a\r\nr"}, MergeChoice::left), "a\r\nl");
    EXPECT_EQ(result({"a\nx\r", "b\nx\r", "a\nx\r"}), "b\nx\r");
    EXPECT_EQ(result({"", "", ""}), "");
    EXPECT_EQ(result({"a", "", "a"}), "");
    EXPECT_EQ(result({"a\n", "l\n", "r\n"}, MergeChoice::none), "");
}

TEST_F(MergeCase, WithoutABaseOnlyWhatIsTheSameIsClean)
{
    const MergedSides sides = mergedSides({}, {.base = {}, .left = "a\nl\nc\n", .right = "a\nr\nc\nd"});
    expectWhole(sides);
    EXPECT_EQ(sides.conflictCount(), 2U);
    EXPECT_EQ(joined(sides, all(sides, MergeChoice::left)), "a\nl\nc\n");
    EXPECT_EQ(joined(sides, all(sides, MergeChoice::right)), "a\nr\nc\nd");
    EXPECT_EQ(mergedSides({}, {.base = {}, .left = "a\n", .right = "a\n"}).conflictCount(), 0U);
}

TEST_F(MergeCase, SidesThatDifferInLineEndsAloneAreKnownAndCanBeComparedWithoutThem)
{
    MergeInput input{.base = "a\nb\nc\nd\n", .left = "a\r\nL\r\nc\r\nd\r\n", .right = "a\nb\nc\nR\n"};
    MergedSides sides = expectAsGit(input);
    EXPECT_TRUE(sides.lineEndsDiffer);
    EXPECT_EQ(sides.conflictCount(), 1U);
    input.ignoresLineEnds = true;
    sides = mergedSides({}, input);
    expectWhole(sides);
    EXPECT_TRUE(sides.lineEndsDiffer);
    EXPECT_EQ(joined(sides), "a\r\nL\r\nc\r\nR\r\n");
    sides = mergedSides({}, {.base = "x\n", .left = "a\r\n", .right = "a\n"});
    EXPECT_TRUE(sides.segments.front().isLineEndsOnly);
    sides = mergedSides({}, {.base = "x\n", .left = "a b\n", .right = "a\tb \n"});
    EXPECT_TRUE(sides.segments.front().isWhitespaceOnly);
    EXPECT_FALSE(sides.segments.front().isLineEndsOnly);
}

TEST_F(MergeCase, NoSettingOrAttributeChangesIt)
{
    TestRepository repo;
    repo.git({"config", "--global", "core.autocrlf", "true"}).git({"config", "--global", "diff.algorithm", "patience"});
    writeFile(folder / "attributes", "* -diff text eol=crlf\n");
    repo.git({"config", "--global", "core.attributesFile", (folder / "attributes").string()});
    expectAsGit({.base = "a\r\nb\n", .left = "a\nb\n", .right = "a\r\nc\n"});
    for (const char* key : {"core.autocrlf", "diff.algorithm", "core.attributesFile"})
        repo.git({"config", "--global", "--unset", key});
}

} // namespace
} // namespace gitkit

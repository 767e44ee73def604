// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DiffParser.h"
#include "app/ui/diff/DiffNotes.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/WordMarks.h"

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;

/// The marked words in brackets.
std::string marked(const QString& text, const std::vector<TextRange>& ranges)
{
    QString result;
    qsizetype at = 0;
    for (const TextRange& range : ranges) {
        result += text.mid(at, range.begin - at) + u'[' + text.mid(range.begin, range.end - range.begin) + u']';
        at = range.end;
    }
    return (result + text.mid(at)).toStdString();
}

std::pair<std::string, std::string> marks(const QString& before, const QString& after)
{
    const WordMarks found = wordMarks(before, after);
    return {marked(before, found.removed), marked(after, found.added)};
}

using Pair = std::pair<std::string, std::string>;

TEST(WordMarks, ShowWhichWordsChanged)
{
    EXPECT_EQ(marks(u"auto change = ordinary(fields);"_s, u"auto change = renamed(fields, records[i]);"_s),
              Pair("auto change = [ordinary](fields);", "auto change = [renamed](fields[, records[i]]);"));
    EXPECT_EQ(marks(u"one two three four"_s, u"one 2 3 four"_s), Pair("one [two three] four", "one [2 3] four"));
    EXPECT_EQ(marks(u"\tcode"_s, u"    code"_s), Pair("[\t]code", "[    ]code"));
    EXPECT_EQ(marks(u"end"_s, u"end  "_s), Pair("end", "end[  ]"));
    EXPECT_EQ(marks(u"end\r"_s, u"end"_s), Pair("end[\r]", "end"));
    EXPECT_EQ(marks(u"größer"_s, u"größte"_s), Pair("größer", "größte")); // another word altogether
    EXPECT_EQ(marks(u"nothing in common here"_s, u"quite another statement;"_s),
              Pair("nothing in common here", "quite another statement;"));
    EXPECT_EQ(marks({}, u"x"_s), Pair("", "x"));
}

TEST(WordMarks, AreBoundedInWhatTheyCost)
{
    const QString before = u"same "_s + u"a b "_s.repeated(900) + u"same"_s;
    const QString after = u"same "_s + u"b c "_s.repeated(900) + u"same"_s;
    const WordMarks found = wordMarks(before, after);
    EXPECT_LE(found.removed.size(), 1U);
    EXPECT_EQ(wordMarks(QString(1 << 20, u'x'), QString(1 << 20, u'y')), WordMarks());
}

TEST(ShownLine, MakesVisibleWhatIsNot)
{
    EXPECT_EQ(ShownLine::of("a\tb\t\tc", 4).shown, u"a   b       c"_s);
    EXPECT_EQ(ShownLine::of("a\tb").shown, u"a       b"_s);
    EXPECT_EQ(ShownLine::of("bell\x07 esc\x1b[31m\r").shown, u"bell^G esc^[[31m^M"_s);
    EXPECT_EQ(ShownLine::of("if (x\xE2\x80\xAE) {\xE2\x81\xA6").shown, u"if (x‹U+202E›) {‹U+2066›"_s);
    EXPECT_EQ(ShownLine::of("\xEF\xBB\xBFmark").shown, u"‹U+FEFF›mark"_s);
    EXPECT_EQ(ShownLine::of("שלום 日本 🙂").shown, u"שלום 日本 🙂"_s);
    EXPECT_EQ(ShownLine::of("code \t \r").trailingBlanks, 4);
}

TEST(ShownLine, KnowsWhereItsCharactersAre)
{
    const ShownLine line = ShownLine::of("\ta\x07z", 4);
    ASSERT_EQ(line.shown, u"    a^Gz"_s);
    const std::vector<qsizetype> expected{0, 4, 5, 7, 8};
    for (std::size_t source = 0; source < expected.size(); ++source) {
        EXPECT_EQ(line.toShown(static_cast<qsizetype>(source)), expected[source]);
        EXPECT_EQ(line.toSource(expected[source]), static_cast<qsizetype>(source));
    }
    EXPECT_EQ(line.toSource(1), 0); // inside of the tab, nearer to its left
    EXPECT_EQ(line.toSource(3), 1);
}

QString said(std::string_view text, DiffState state = DiffState::ordinary)
{
    const DiffNotes notes = diffNotes(gitkit::DiffParser::parse(text), state);
    return (notes.above + notes.below).join(u'|');
}

QString wholeOnly(std::string_view text) { return diffNotes(gitkit::DiffParser::parse(text)).wholeOnly; }

TEST(DiffNotes, SayWhatLinesCannot)
{
    const std::string start = "diff --git a/f b/f\n";
    const std::string names = "--- a/f\n+++ b/f\n";
    EXPECT_EQ(said(start + "index 1..2 100644\nBinary files a/f and b/f differ\n"),
              u"This is a binary file. Its changes cannot be shown as text."_s);
    EXPECT_EQ(said(start + "old mode 100644\nnew mode 100755\n"),
              u"The file was made executable (mode 100644 → 100755); its contents are the same."_s);
    EXPECT_TRUE(said(start + "old mode 100755\nnew mode 100644\nindex 1..2\n" + names + "@@ -1 +1 @@\n-a\n+b\n")
                    .startsWith(u"The file is no longer executable"_s));
    EXPECT_EQ(said(start + "new file mode 100644\nindex 0..e69de29\n"), u"The file is new and empty."_s);
    EXPECT_EQ(said(start + "deleted file mode 100644\nindex e69de29..0\n"), u"The file was empty and is deleted."_s);
    EXPECT_EQ(said("diff --git \"a/o\\tx\" b/f\nsimilarity index 100%\nrename from \"o\\tx\"\nrename to f\n"),
              u"The file was renamed from “o\tx”; its contents are the same."_s);
    EXPECT_EQ(said(""), u"Git finds no difference in the file’s contents."_s);
    EXPECT_EQ(said(start + "index 1..2 160000\n" + names +
                   "@@ -1 +1 @@\n-Subproject commit 1111111111111111\n+Subproject commit 2222222222222222-dirty\n"),
              u"This submodule goes from commit 111111111111 to commit 222222222222 (with changes of its own that "
              u"are not committed)."_s);
    const std::string link = start + "index 1..2 120000\n" + names + "@@ -1 +1 @@\n-old\n+new\n";
    EXPECT_TRUE(said(link).contains(u"symbolic link"_s));
    EXPECT_EQ(wholeOnly(link), u"A symbolic link is staged whole."_s);
    EXPECT_TRUE(said("* Unmerged path f\n", DiffState::onOneSide).contains(u"deleted on the other"_s));
    EXPECT_TRUE(said("diff --cc f\nindex 1,2..3\n", DiffState::conflicted).contains(u"as one of them has it"_s));
    const auto binary = gitkit::DiffParser::parse("diff --cc f\nindex 12,34..0\nBinary files differ\n");
    EXPECT_EQ(binary.oldBlob, "12");
    EXPECT_EQ(binary.newBlob, "34");
    FileFacts facts;
    facts.oldSize = 10;
    facts.newSize = 2000;
    EXPECT_EQ(diffNotes(binary, DiffState::conflicted, facts, "f", {u"main"_s, u"topic"_s}).above.mid(1),
              (QStringList{u"main: 10 bytes"_s, u"topic: 2.0 KB"_s}));
    EXPECT_TRUE(said("diff --cc f\n@@@ -1 -1 +1 @@@\n++a\n", DiffState::conflicted).contains(u"has conflicts"_s));

    std::string endless = start + names + "@@ -0,0 +1,6000 @@\n";
    for (int i = 0; i < 6000; ++i)
        endless += "+x\n";
    EXPECT_TRUE(said(endless).startsWith(u"Only the first 5,000 lines are shown."_s));
    EXPECT_NE(wholeOnly(endless), QString());
    const std::string plain = start + names + "@@ -1 +1 @@\n-a\n+b\n";
    EXPECT_EQ(said(plain), QString());
    EXPECT_EQ(wholeOnly(plain), QString());
}

} // namespace
} // namespace plovik

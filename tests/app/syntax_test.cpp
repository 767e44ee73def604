// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/parsers/DiffParser.h"
#include "app/store/RepositoryStore.h"
#include "app/ui/diff/DiffSectionView.h"
#include "app/ui/diff/DiffView.h"
#include "app/ui/diff/ShownLine.h"
#include "app/ui/diff/syntax/DiffFilesLoader.h"
#include "app/ui/diff/syntax/SyntaxHighlighter.h"
#include "app/ui/diff/syntax/SyntaxLanguage.h"
#include "tests/store/ManualWorker.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/TestRepository.h"

#include <QApplication>
#include <QImage>

#include <gtest/gtest.h>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;
using gitkit::DiffParser;

std::shared_ptr<const FileLines> linesOf(std::string bytes) { return std::make_shared<FileLines>(std::move(bytes)); }

/// Coloured pieces in braces, each behind the first letter of what it is.
std::string marked(const FileSyntax& syntax, int number)
{
    constexpr std::string_view letters = "ktsncpfv";
    const QString text = textOf(syntax.file()->line(number));
    QString result;
    qsizetype at = 0;
    for (const SyntaxRun& run : syntax.line(number)) {
        EXPECT_GE(run.first, at);
        result += text.mid(at, run.first - at) + QChar::fromLatin1(letters[static_cast<std::size_t>(run.style)]);
        result += u'{' + text.mid(run.first, run.length) + u'}';
        at = run.first + run.length;
        EXPECT_LE(at, text.size());
    }
    return (result + text.mid(at)).toStdString();
}

std::vector<std::string> marked(const SyntaxRequest& request, const std::stop_token& stop = {})
{
    const auto syntax = highlighted(request, stop);
    std::vector<std::string> lines;
    for (int number = 1; number <= request.file->count(); ++number)
        lines.push_back(marked(*syntax, number));
    return lines;
}

std::vector<std::string> marked(const std::string& path, const std::string& bytes)
{
    return marked({.file = linesOf(bytes), .path = path});
}

using Lines = std::vector<std::string>;

TEST(Syntax, CarriesStringsAndCommentsFromLineToLine)
{
    EXPECT_EQ(
        marked("a.cpp", "/* if\n 1 */ int x = 0;\nauto s = R\"~(if\n\" )\" //\n)~\" + 1;\n"),
        (Lines{"c{/* if}", "c{ 1 */} t{int} x = n{0};", "k{auto} s = s{R\"~(if}", "s{\" )\" //}", "s{)~\"} + n{1};"}));
    EXPECT_EQ(marked("a.py", "x = '''\nif\n''' # '\ndef f(): pass\n"),
              (Lines{"x =s{ '''}", "s{if}", "s{'''} c{# '}", "k{def} f{f}(): k{pass}"}));
    EXPECT_EQ(marked("run.sh", "cat <<'END'\nit's if\nEND\nif true; then\n")[1], "s{it's if}");
    EXPECT_EQ(marked("run.sh", "cat <<'END'\nit's if\nEND\nif true; then\n")[3], "k{if} k{true}; k{then}");
    EXPECT_EQ(marked("a.md", "```c\n# if\n```\n# T\n"), (Lines{"s{```c}", "s{# if}", "s{```}", "k{# T}"}));
}

/// A quote that closes nothing must not turn the rest of a file into a string.
TEST(Syntax, EndsWhatIsLeftOpen)
{
    EXPECT_EQ(marked("a.cpp", "int x = 1'000;\nint y; // it's\n#error don't\nint z;\n").back(), "t{int} z;");
    EXPECT_EQ(marked("a.jsx", "<p>Don't</p>\nlet x = 1;\n").back(), "k{let} x = n{1};");
    EXPECT_EQ(marked("a.rs", "fn f<'a>(x: &'a str) {}\nlet y = 'c';\n").back(), "k{let} y = s{'c'};");
    EXPECT_EQ(marked("a.rb", "if a < b && c > d\n x / 2 + y / 3\nend\n"),
              (Lines{"k{if} a < b && c > d", " x / n{2} + y / n{3}", "k{end}"}));
}

TEST(Syntax, TakesTheTextOfMarkupForNoCode)
{
    const std::string code =
        "import { a as b } from 'x';\nconst n = (\n  <p className=\"q\">Don't return for</p>\n  <Item>\n"
        "    return in case {n} is new</Item>\n);\nif (n > 0 && from) return 'x';\n";
    const Lines expected{"k{import} { a k{as} b } k{from} s{'x'};",
                         "k{const} n = (",
                         "  k{<p} className=s{\"q\"}>Don't return fork{</p>}",
                         "  k{<Item}>",
                         "    return in case {n} is newk{</Item>}",
                         ");",
                         "k{if} (n > n{0} && from) k{return} s{'x'};"};
    EXPECT_EQ(marked("a.jsx", code), expected);
    EXPECT_EQ(marked("a.tsx", code), expected);
    EXPECT_EQ(marked("a.jsx", "  {n} of it, if new.\n  {n} in {m}\n} else\n} while\n"),
              (Lines{"  {n} of it, if new.", "  {n} in {m}", "} k{else}", "} k{while}"}));
    EXPECT_EQ(marked("a.tsx", "class A<T> extends B<T> {\n"), Lines{"k{class} A<T> k{extends} B<T> {"});
    EXPECT_EQ(marked("a.ts", "const a: Array<string>\nreturn 1\n").back(), "k{return} n{1}");
}

TEST(Syntax, KnowsSqlInEitherCase)
{
    EXPECT_EQ(marked("a.sql",
                     "select Count(*) FROM t -- it's\nwhere a = 'if\nit''s' and b is not null;\ncreate table x (n "
                     "varchar(20));\n"),
              (Lines{"k{select} f{Count}(*) k{FROM} t c{-- it's}", "k{where} a = s{'if}",
                     "s{it''s'} k{and} b k{is} k{not} k{null};", "k{create} k{table} x (n t{varchar}(n{20}));"}));
}

TEST(Syntax, CountsInUnitsOfTheShownText)
{
    const std::string latin = "x = \"\xE9\"; // \xFF if\r\n";
    EXPECT_EQ(marked("a.cpp", latin + "int y;\r\n"), (Lines{"x = s{\"\uFFFD\"}; c{// \uFFFD if}\r", "t{int} y;\r"}));
    EXPECT_EQ(marked("a.cpp", "\t\"\U0001F600é\" + 1;\n"), Lines{"\ts{\"\U0001F600é\"} + n{1};"});
    EXPECT_EQ(marked("a.cpp", "\xEF\xBB\xBFint x;\n"), Lines{"\uFEFFt{int} x;"});
}

TEST(Syntax, KnowsLanguagesByNameAndFirstLine)
{
    for (const auto& [path, language] : std::vector<std::pair<std::string, std::string>>{{"a/b.tsx", "tsx"},
                                                                                         {"CMakeLists.txt", "cmake"},
                                                                                         {"x/Makefile.am", "makefile"},
                                                                                         {"a.hpp", "cpp"},
                                                                                         {"config.h.in", "cpp"},
                                                                                         {"script.pl", "perl"},
                                                                                         {"Dockerfile", "dockerfile"},
                                                                                         {".gitignore", "ignored"},
                                                                                         {"A.JSON", "json"},
                                                                                         {"notes.txt", ""},
                                                                                         {"c", ""},
                                                                                         {"a.unknown", ""}})
        EXPECT_EQ(syntaxLanguage(path, {}), language) << path;
    EXPECT_EQ(syntaxLanguage("bin/tool", "#!/usr/bin/env -S FOO=1 python3.11 -u"), "python");
    EXPECT_EQ(syntaxLanguage("bin/tool", "#! /bin/bash"), "sh");
    EXPECT_EQ(syntaxLanguage("bin/tool", "#!"), "");
}

TEST(Syntax, ReadsADefinitionForEveryLanguageItNames)
{
    for (const std::string ending :
         {"ada",  "asm",  "awk",   "bat",     "bib",  "c",          "coffee", "cpp", "cs",    "css", "d",
          "diff", "erl",  "f90",   "feature", "glsl", "go",         "groovy", "hs",  "html",  "hx",  "java",
          "js",   "kt",   "l",     "lhs",     "lisp", "log",        "lua",    "ly",  "m4",    "mk",  "ml",
          "pas",  "pc",   "php",   "pl",      "po",   "properties", "proto",  "ps",  "py",    "qml", "r",
          "rb",   "rs",   "scala", "scm",     "sh",   "sml",        "spec",   "sql", "swift", "tcl", "tex",
          "texi", "toml", "ts",    "vala",    "vbs",  "vim",        "xml",    "y",   "yml",   "zsh"})
    {
        const auto syntax = highlighted({.file = linesOf("# // \"a\" if 1\n"), .path = "a." + ending});
        EXPECT_NE(syntaxLanguage("a." + ending, {}), "") << ending;
        // Behind the last line that was read there is none: a definition that fails ends before the first.
        EXPECT_GT(syntax->size(), syntax->file()->bytes().size()) << ending;
    }
}

TEST(Syntax, StaysPlainWhereItWouldHarm)
{
    const std::string code = "int x;\n";
    const auto plain = Lines{"int x;"};
    const TemporaryFolder folder;
    EXPECT_EQ(marked({.file = linesOf(code), .path = "a.cpp", .definitions = "/nowhere"}), plain);
    writeFile(folder / "cpp.lang", "keyword = \"int\ninclude \"nothing.lang\"\n(a,b) = `(((`\n");
    EXPECT_EQ(marked({.file = linesOf(code), .path = "a.cpp", .definitions = folder.path().string()}), plain);
    EXPECT_EQ(marked("a.cpp", "int x;\n"), Lines{"t{int} x;"}); // the others still stand

    EXPECT_EQ(marked({.file = linesOf(code), .path = "a.cpp", .mostBytes = 6}), plain);
    EXPECT_EQ(marked({.file = linesOf(code), .path = "a.cpp", .budget = std::chrono::milliseconds(-1)}), plain);
    std::stop_source stopped;
    stopped.request_stop();
    EXPECT_EQ(marked({.file = linesOf(code), .path = "a.cpp"}, stopped.get_token()), plain);
    EXPECT_EQ(marked("a.cpp", std::string("int x;\0\n", 8))[0].substr(0, 6), "int x;");
    const std::string wide = "/* " + std::string(6000, 'x') + " */ int\n";
    EXPECT_EQ(marked("a.cpp", wide + code), (Lines{wide.substr(0, wide.size() - 1), "t{int} x;"}));
    EXPECT_EQ(marked("a.cpp", ""), Lines{});
}

TEST(Syntax, IsKeptSmall)
{
    std::string code;
    while (code.size() < std::size_t{1} << 17)
        code += "if(1)a=\"\";\n";
    const auto syntax = highlighted({.file = linesOf(code), .path = "a.cpp", .budget = std::chrono::minutes(1)});
    EXPECT_EQ(marked(*syntax, syntax->file()->count()), "k{if}(n{1})a=s{\"\"};");
    EXPECT_LT(syntax->size(), 6 * code.size());
}

/// A file of two commits; the loader asks a worker that the test releases.
class DiffFilesTest : public testing::Test {
protected:
    DiffFilesTest()
    {
        repo.write("a.cpp", before).commit("one");
        repo.write("a.cpp", after).commit("two");
        repo.write("b.cpp", "int b;\n").commit("three");
        QObject::connect(&loader, &DiffFilesLoader::textsLoaded, &view, &DiffView::setTexts);
        QObject::connect(&loader, &DiffFilesLoader::syntaxLoaded, &view, &DiffView::setSyntax);
        view.resize(600, 300);
        view.show();
    }

    void show(const std::string& commit)
    {
        DiffContent content;
        content.name = u"Diff"_s;
        content.path = commit == "HEAD" ? "b.cpp" : "a.cpp";
        content.diff = DiffParser::parse(repo.read({"show", "--format=", "--full-index", commit}) + "\n");
        view.setContents({content}, DiffPlace::start);
        loader.load({&diff().content()});
    }
    const ShownDiff& diff() { return view.sections()[0]->controller().diff(); }
    const DiffDocument& document() { return diff().document(); }
    /// The rows' colours: for each row, how many pieces have one.
    std::vector<std::size_t> pieces()
    {
        std::vector<std::size_t> counts;
        for (int row = 0; row < document().rowCount(); ++row)
            counts.push_back(document().syntax(row).size());
        return counts;
    }

    const std::string before = "/*\n1\n2\n3\n4\n5\nif one\n*/\nint x;\r\n";
    const std::string after = "/*\n1\n2\n3\n4\n5\nif two\n*/\nint x;\r\nint y;\n";
    TestRepository repo;
    ManualWorker worker;
    RepositoryStore store{repo.path(), worker};
    DiffFilesLoader loader{store};
    DiffView view;
};

using Counts = std::vector<std::size_t>;

TEST_F(DiffFilesTest, ColoursRowsByTheirWholeFiles)
{
    show("HEAD~1");
    const int height = view.sections()[0]->height();
    const QImage plain = view.grab().toImage();
    worker.finish();
    EXPECT_TRUE(document().gaps().areKnown());
    EXPECT_EQ(pieces(), Counts(9, 0));
    worker.finishAll();
    // header, three lines of the comment, removed, added, its end, a declaration with CR LF, an added one
    EXPECT_EQ(pieces(), (Counts{0, 1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(document().syntax(4)[0], (SyntaxRun{0, 6, SyntaxStyle::comment}));
    EXPECT_EQ(view.sections()[0]->height(), height);
    EXPECT_NE(view.grab().toImage(), plain);
}

TEST_F(DiffFilesTest, DropsWhatIsStaleAndKeepsWhatWasRead)
{
    show("HEAD~1");
    worker.finish();
    ASSERT_EQ(worker.waiting(), 1U); // one file at a time
    show("HEAD");
    worker.finish(); // of the diff before: nothing
    EXPECT_EQ(pieces(), (Counts{0, 0}));
    worker.finishAll();
    EXPECT_EQ(pieces(), (Counts{0, 1}));

    show("HEAD~1");
    worker.finishAll();
    const int posted = worker.posted();
    show("HEAD~1"); // a refresh
    show("HEAD");   // there and back again
    EXPECT_EQ(pieces(), (Counts{0, 1}));
    show("HEAD~1");
    EXPECT_EQ(pieces(), (Counts{0, 1, 1, 1, 1, 1, 1, 1, 1}));
    EXPECT_EQ(worker.posted(), posted);
}

TEST_F(DiffFilesTest, ColoursNoLineThatTheFileDoesNotHave)
{
    repo.write("a.cpp", after + "int z;\n");
    DiffContent content;
    content.name = u"Diff"_s;
    content.path = "a.cpp";
    content.workingPath = "a.cpp";
    content.diff = DiffParser::parse(repo.read({"diff", "--full-index", "-U1"}) + "\n");
    view.setContents({content}, DiffPlace::start);
    repo.write("a.cpp", after + "int other;\n"); // before it is read
    loader.load({&diff().content()});
    worker.finishAll();
    EXPECT_EQ(pieces(), (Counts{0, 1, 0}));
}

} // namespace
} // namespace plovik

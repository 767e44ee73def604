// SPDX-License-Identifier: GPL-3.0-or-later
#include "tests/architecture/IncludeRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>

namespace architecture {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Returns the text from `begin` to the parenthesis that closes the call, without strings' own parentheses in the count.
std::string argumentsAt(std::string_view text, std::size_t begin)
{
    int depth = 1;
    bool isQuoted = false;
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] == '\\')
            ++at;
        else if (text[at] == '"')
            isQuoted = !isQuoted;
        else if (!isQuoted && text[at] == '(')
            ++depth;
        else if (!isQuoted && text[at] == ')' && --depth == 0)
            return std::string(text.substr(begin, at - begin));
    }
    return std::string(text.substr(begin));
}

bool isLiteralSentence(const std::string& arguments)
{
    static const std::regex sentence(R"re(\s*(\w+::)*tr\(\s*("([^"\\]|\\.)*"\s*)+\)\s*)re");
    return std::regex_match(arguments, sentence);
}

/// What turns any text into a plain one in each place where Qt would read more out of it than its letters.
struct Rule {
    std::string call;
    std::string helper;
};

const std::vector<Rule> rules = {{"setToolTip(", "plainToolTip("},
                                 {"QToolTip::showText(", "plainToolTip("},
                                 {"setWindowTitle(", "plainTitle("},
                                 {"case Qt::ToolTipRole:", "return plainToolTip("}};

std::vector<std::string> unsafeTexts(const SourceTree& tree)
{
    std::vector<std::string> found;
    for (const auto& [file, text] : tree) {
        for (const auto& [call, helper] : rules) {
            for (auto at = text.find(call); at != std::string::npos; at = text.find(call, at + 1)) {
                const std::string rest =
                    call.back() == '(' ? argumentsAt(text, at + call.size()) : text.substr(at, text.find(';', at) - at);
                if (rest.find(helper) == std::string::npos && !isLiteralSentence(rest))
                    found.push_back(file + ": " + call + rest);
            }
        }
        // Labels that find out by themselves whether their text is HTML.
        if (text.find("new QLabel(") != std::string::npos && text.find("setTextFormat(") == std::string::npos &&
            text.find("setText(") != std::string::npos)
            found.push_back(file + ": a label without a format");
    }
    return found;
}

SourceTree sourcesIn(const std::vector<std::string>& folders)
{
    SourceTree tree;
    for (const std::string& folder : folders) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::filesystem::path(SOURCE_TREE) / folder))
        {
            std::ifstream stream(entry.path(), std::ios::binary);
            if (entry.path().extension() == ".cpp")
                tree.emplace(entry.path().string(), std::string(std::istreambuf_iterator<char>(stream), {}));
        }
    }
    return tree;
}

TEST(ShownText, IsPlainWhereverQtWouldReadHtml)
{
    EXPECT_THAT(unsafeTexts({{"a.cpp", "x.setToolTip(tr(\"One (1)\")); y.setToolTip(plainToolTip(name()));\n"
                                       "case Qt::ToolTipRole:\n  return plainToolTip(a);"}}),
                IsEmpty());
    EXPECT_THAT(unsafeTexts({{"a.cpp", "x.setToolTip(tr(\"“%1”\").arg(name)); setWindowTitle(name);\n"
                                       "case Qt::ToolTipRole:\n  return name;"},
                             {"b.cpp", "auto* a = new QLabel(this); a->setText(name);"}}),
                ElementsAre("a.cpp: setToolTip(tr(\"“%1”\").arg(name)", "a.cpp: setWindowTitle(name",
                            "a.cpp: case Qt::ToolTipRole:case Qt::ToolTipRole:\n  return name",
                            "b.cpp: a label without a format"));
    const SourceTree window = sourcesIn({"app/ui", "app/shell"});
    ASSERT_GT(window.size(), 100U);
    EXPECT_THAT(unsafeTexts(window), IsEmpty());
}

TEST(ShownText, GroupsTheDigitsOfItsNumbers)
{
    for (const auto& [file, text] : sourcesIn({"app"}))
        EXPECT_EQ(text.find("%n"), std::string::npos) << file << ": %Ln writes 20,000";
}

} // namespace
} // namespace architecture

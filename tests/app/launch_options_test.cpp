// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/LaunchOptions.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace plovik {
namespace {

using namespace Qt::StringLiterals;

std::variant<LaunchOptions, LaunchAnswer> parsed(std::vector<std::string> arguments)
{
    std::vector<char*> pointers;
    for (std::string& each : arguments)
        pointers.push_back(each.data());
    return parseLaunchOptions(pointers);
}

TEST(LaunchOptionsTest, KeepFoldersOfAnyNameApartFromOptions)
{
    const auto both =
        parsed({"/tmp/\xe9\xff", "--size=800x600", "a/../b", "--show", "settings=editor", "--", "--help"});
    const auto* const options = std::get_if<LaunchOptions>(&both);
    ASSERT_TRUE(options);
    const auto here = std::filesystem::current_path();
    EXPECT_EQ(options->folders, (std::vector<std::filesystem::path>{"/tmp/\xe9\xff", here / "b", here / "--help"}));
    EXPECT_EQ(options->size, QSize(800, 600));
    EXPECT_EQ(options->window, LaunchWindow::settings);
    EXPECT_EQ(options->settingsTab, u"editor"_s);
}

TEST(LaunchOptionsTest, AnswerWhatIsNoWishForAWindow)
{
    const auto answer = [](std::vector<std::string> arguments) {
        const auto result = parsed(std::move(arguments));
        const auto* const found = std::get_if<LaunchAnswer>(&result);
        return found ? *found : LaunchAnswer{"none", -1};
    };
    EXPECT_EQ(answer({"/tmp", "--help"}).status, 0);
    EXPECT_TRUE(answer({"--help"}).text.starts_with("Usage: plovik-app"));
    EXPECT_EQ(answer({"--version"}).text, "Plovik " PLOVIK_VERSION "\n");
    for (const std::vector<std::string>& wrong : std::vector<std::vector<std::string>>{{"--show"},
                                                                                       {"--show", "all"},
                                                                                       {"--size", "800"},
                                                                                       {"--size", "0x600"},
                                                                                       {"--action", "quit"},
                                                                                       {"--appearance", "Dark"},
                                                                                       {"--screenshot", ""},
                                                                                       {"--no-such-\xe9"},
                                                                                       {"-x"}})
    {
        const LaunchAnswer refused = answer(wrong);
        EXPECT_EQ(refused.status, 2) << wrong.front();
        EXPECT_TRUE(refused.text.starts_with("plovik-app: ")) << refused.text;
        EXPECT_TRUE(refused.text.ends_with("\nTry 'plovik-app --help'.\n")) << refused.text;
    }
}

} // namespace
} // namespace plovik

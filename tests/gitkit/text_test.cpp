// SPDX-License-Identifier: GPL-3.0-or-later
#include "GitKit/Text.h"

#include <gtest/gtest.h>

namespace gitkit {
namespace {

TEST(Text, RepairsOnlyWhatIsNoUtf8)
{
    const std::string mark = "\xEF\xBF\xBD";
    const std::pair<std::string, std::string> cases[] = {
        {"", ""},
        {"plain text of more than eight bytes", "plain text of more than eight bytes"},
        {"\xEF\xBB\xBF"
         "a \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80",
         "\xEF\xBB\xBF"
         "a \xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80"},
        {"Stra\xDF"
         "e in Latin-1",
         "Stra" + mark + "e in Latin-1"},
        {"cut short \xE2\x82", "cut short " + mark},
        {"\xF0\x9F\x98 and on", mark + " and on"},
        {"\xC0\xAF overlong", mark + mark + " overlong"},
        {"\xED\xA0\x80 surrogate", mark + mark + mark + " surrogate"},
        {"\xF5\x80\x80\x80", mark + mark + mark + mark},
        {"\xE0\x80\x80\xC3\xA4", mark + mark + mark + "\xC3\xA4"},
    };
    for (const auto& [bytes, text] : cases) {
        EXPECT_EQ(repairedUtf8(bytes), text);
        EXPECT_EQ(isUtf8(bytes), bytes == text);
        EXPECT_TRUE(isUtf8(repairedUtf8(bytes)));
    }
}

} // namespace
} // namespace gitkit

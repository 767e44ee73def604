// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/ui/commit/MessageText.h"
#include "app/ui/web/WebSettings.h"

#include <gtest/gtest.h>

#include <QTextBlock>

#include <map>

using namespace Qt::StringLiterals;

namespace plovik {
namespace {

/// Returns what is a link, with its address and its tooltip.
std::map<QString, std::pair<QString, QString>> linksOf(const MessageText& text)
{
    std::map<QString, std::pair<QString, QString>> links;
    for (QTextBlock block = text.document()->begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (format.isAnchor())
                links[part.fragment().text()] = {format.anchorHref(), format.toolTip()};
        }
    }
    return links;
}

TEST(MessageLinks, ReferencesLeadWhereTheSettingsSayAndShowIt)
{
    MessageText text;
    const webSettings::Links links = webSettings::linksIn(
        u"\\b[A-Z]+-[0-9]+\\b https://issues.example.org/$0\n#([0-9]+) https://example.org/i/$1\n"_s
        u"[a-f0-9]{7,} https://never.example.org/\nmail:(\\S+) https://example.org/?q=$1"_s);
    EXPECT_TRUE(links.misread.isEmpty());
    text.setMessage(MessageParts::of("AB-12: fix #3\n\nhttps://x.org/#4 and 1234567 and mail:a&b\n"));
    text.setLinks(links.links);
    const auto shown = linksOf(text);
    ASSERT_EQ(shown.size(), 5U);
    EXPECT_EQ(shown.at(u"AB-12"_s).first, u"https://issues.example.org/AB-12"_s);
    EXPECT_TRUE(shown.at(u"AB-12"_s).second.contains(u"https://issues.example.org/AB-12"_s));
    EXPECT_EQ(shown.at(u"#3"_s).first, u"https://example.org/i/3"_s);
    EXPECT_EQ(shown.at(u"https://x.org/#4"_s).first, u"https://x.org/#4"_s) << "a whole address goes before its parts";
    EXPECT_EQ(shown.at(u"1234567"_s).first, u"commit:1234567"_s);
    EXPECT_EQ(shown.at(u"mail:a&b"_s).first, u"https://example.org/?q=a%26b"_s);
}

TEST(MessageLinks, LinesThatSayNothingAreToldAndLeftOut)
{
    const webSettings::Links links = webSettings::linksIn(
        u"( https://x.org\n.* https://x.org\nx javascript:alert(1)\nx file:///etc/passwd\nalone\n\n  \na b c"_s);
    EXPECT_TRUE(links.links.empty());
    EXPECT_EQ(links.misread.size(), 6);
    // What a group holds cannot choose another scheme.
    const auto scheme = webSettings::linksIn(u"go:(\\S+) https:$1"_s).links;
    ASSERT_EQ(scheme.size(), 1U);
    EXPECT_TRUE(scheme.front().addressOf(scheme.front().pattern.match(u"go://x"_s)).startsWith(u"https:%2F"_s));

    const webSettings::Hosts hosts = webSettings::hostsIn(u"Git.Example.org  GitLab\nx.org unknown\nalone"_s);
    EXPECT_EQ(hosts.hosts, (gitkit::WebHosts{{"git.example.org", gitkit::Forge::gitLab}}));
    EXPECT_EQ(hosts.misread.size(), 2);
}

} // namespace
} // namespace plovik

// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/shell/UpdateDialog.h"
#include "tests/app/EventWait.h"
#include "tests/app/HttpServer.h"
#include "tests/app/ShownWidgets.h"
#include "tests/app/TlsAuthority.h"

#include <QDesktopServices>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSslConfiguration>
#include <QSslSocket>

#include <gtest/gtest.h>

#include <algorithm>

namespace plovik {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using test::HttpServer;
using test::named;
using test::TlsAuthority;
using test::waitUntil;

TEST(SemanticVersion, OrdersReleasesAndPreReleases)
{
    const char* const ascending[] = {"0.9.9",
                                     "1.0.0-alpha",
                                     "1.0.0-alpha.1",
                                     "1.0.0-alpha.beta",
                                     "1.0.0-beta",
                                     "1.0~beta.2",
                                     "1.0.0-beta.11",
                                     "v1.0.0-rc.1",
                                     "1.0",
                                     "1.0.1",
                                     "1.2.0",
                                     "1.10",
                                     "2.0.0-0.3.7+meta",
                                     "2"};
    std::vector<SemanticVersion> versions;
    for (const char* each : ascending) {
        ASSERT_TRUE(SemanticVersion::parse(QString::fromLatin1(each))) << each;
        versions.push_back(*SemanticVersion::parse(QString::fromLatin1(each)));
    }
    for (std::size_t i = 1; i < versions.size(); ++i)
        EXPECT_LT(versions[i - 1], versions[i]) << ascending[i];
    EXPECT_EQ(SemanticVersion::parse(u"1.2.3+a"_s), SemanticVersion::parse(u"v1.2.3+b"_s));

    for (const char* each : {"", "newest", "1.", "1.2.3.4", "1.2-", "1.0-a..b", "1.2\n", "99999999999999999999", "-1"})
        EXPECT_FALSE(SemanticVersion::parse(QString::fromLatin1(each))) << each;
}

QByteArray releases(const QByteArray& content) { return "<?xml version='1.0'?><releases>" + content + "</releases>"; }

QString newerName(const std::vector<Release>& all, const QString& running)
{
    const Release* const newer = newerRelease(all, *SemanticVersion::parse(running));
    return newer ? newer->name : QString();
}

TEST(ReleaseFeed, TellsTheNewestReleaseForWhoAsks)
{
    const auto all = parseReleaseFeed(releases(R"(
        <release version="1.2.0"/> <release version="1.10.0" type="stable"/> <release version="1.9.0"/>
        <release version="2.0.0-rc.1"/> <release version="1.11.0" type="development"/> <release version="soon"/>)"));
    EXPECT_EQ(all.size(), 5u);
    EXPECT_EQ(newerName(all, u"1.2.0"_s), u"1.10.0"_s);
    EXPECT_EQ(newerName(all, u"1.10.0"_s), QString());
    EXPECT_EQ(newerName(all, u"1.10.0-rc.1"_s), u"2.0.0-rc.1"_s);
    EXPECT_EQ(newerName(all, u"3.0.0-alpha"_s), QString());
}

TEST(ReleaseFeed, MakesPlainTextOfNotes)
{
    const auto all = parseReleaseFeed(R"(<component type="desktop-application"><name>Plovik</name><releases>
        <release version="2.0">
          <description xml:lang="de"><p>Anders</p></description>
          <description>
            <p>Faster &amp; <em>calmer</em>
               than ever.</p>
            <p xml:lang="fr">Plus vite</p>
            <ul><li>One</li><li xml:lang="fr">Un</li><li>Two <code>x&lt;y</code></li></ul>
            <ol><li>First</li><li>Second</li></ol>
            <p>Enjoy.</p>
          </description>
          <issues><issue type="cve">CVE-1</issue></issues>
          <url type="contact">https://example.org/contact</url>
          <url type="details"> https://example.org/2.0 </url>
        </release>
        <release version="1.0"><url>http://example.org/1.0</url></release>
        <release version="0.9"><url>javascript:alert(1)</url></release></releases></component>)");
    ASSERT_EQ(all.size(), 3u);
    EXPECT_EQ(all[0].notes.toStdString(),
              "Faster & calmer than ever.\n\n• One\n• Two x<y\n\n1. First\n2. Second\n\nEnjoy.");
    EXPECT_EQ(all[0].page, QUrl(u"https://example.org/2.0"_s));
    EXPECT_TRUE(all[1].page.isEmpty());
    EXPECT_TRUE(all[2].page.isEmpty());
}

TEST(ReleaseFeed, RefusesWhatIsNoList)
{
    const QByteArray good = releases("<release version='2.0'/>");
    ASSERT_EQ(parseReleaseFeed(good).size(), 1u);
    for (const QByteArray& bad : {QByteArray(), QByteArray("<html><body>Log in</body></html>"), good.chopped(5),
                                  "<!DOCTYPE releases [<!ENTITY v '2.0'>]>" + good.mid(good.indexOf("<releases")),
                                  "<feed>" + good.mid(good.indexOf("<releases")) + "</feed>"})
        EXPECT_TRUE(parseReleaseFeed(bad).empty()) << bad.constData();
}

class Updates : public testing::Test {
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QSslSocket::supportsSsl());
        QSslConfiguration trusting = defaults_;
        trusting.setCaCertificates({authority_.own()});
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    void TearDown() override { QSslConfiguration::setDefaultConfiguration(defaults_); }

    QSslConfiguration identity(const QString& name = u"127.0.0.1"_s) { return authority_.identity(name); }

    static std::unique_ptr<UpdateDialog> ask(const QUrl& feed, UpdateSource::Limits limits = {})
    {
        auto dialog = std::make_unique<UpdateDialog>(UpdateSource{u"1.0.0"_s, feed, limits}, nullptr);
        dialog->setAttribute(Qt::WA_DeleteOnClose, false);
        dialog->show();
        return dialog;
    }

    /// What the dialog says once it asks no more.
    static std::string said(const UpdateDialog& dialog)
    {
        EXPECT_TRUE(waitUntil([&] { return !dialog.accessibleDescription().startsWith(u"Checking"_s); }));
        return dialog.accessibleDescription().toStdString();
    }
    static std::string said(const QUrl& feed, UpdateSource::Limits limits = {}) { return said(*ask(feed, limits)); }

    TlsAuthority authority_;
    QSslConfiguration defaults_ = QSslConfiguration::defaultConfiguration();
};

/// Stands in for the browser.
class Browser : public QObject {
    Q_OBJECT

public:
    Browser() { QDesktopServices::setUrlHandler(u"https"_s, this, "open"); }
    ~Browser() override { QDesktopServices::unsetUrlHandler(u"https"_s); }
    Q_INVOKABLE void open(const QUrl& url) { opened << url; }

    QList<QUrl> opened;
};

TEST_F(Updates, OffersANewerVersionWithItsNotesAndPage)
{
    HttpServer server(identity());
    server.answer("/feed", releases("<release version='1.1.0'><description><p>Calmer.</p></description>"
                                    "<url>https://example.org/1.1.0</url></release>"));
    server.redirect("/moved", server.url(u"/feed"_s));
    const auto dialog = ask(server.url(u"/moved"_s));
    EXPECT_TRUE(named<QPushButton>(*dialog, u"Cancel"_s));
    EXPECT_EQ(said(*dialog), "Plovik 1.1.0 is available. You have Plovik 1.0.0.");
    EXPECT_EQ(named<QPlainTextEdit>(*dialog, u"Release Notes"_s)->toPlainText(), u"Calmer."_s);
    // Whose program it is and which, stays here.
    ASSERT_EQ(server.requests.size(), 2);
    EXPECT_TRUE(server.requests.last().contains("user-agent: Plovik\r\n")) << server.requests.last().constData();

    Browser browser;
    auto* const open = named<QPushButton>(*dialog, u"Open Release Page"_s);
    ASSERT_TRUE(open && open->isVisible() && open->isDefault());
    open->click();
    EXPECT_EQ(browser.opened, QList<QUrl>{QUrl(u"https://example.org/1.1.0"_s)});
    EXPECT_FALSE(dialog->isVisible());
}

TEST_F(Updates, SaysThatThereIsNone)
{
    HttpServer server(identity());
    server.answer("/feed", releases("<release version='1.0.0'><url>https://example.org/</url></release>"));
    const auto dialog = ask(server.url(u"/feed"_s));
    EXPECT_EQ(said(*dialog), "Plovik is up to date. Plovik 1.0.0 is the newest version.");
    EXPECT_FALSE(named<QPushButton>(*dialog, u"Open Release Page"_s)->isVisible());
    EXPECT_FALSE(named<QPlainTextEdit>(*dialog, u"Release Notes"_s)->isVisible());

    EXPECT_EQ(said(QUrl()), "Updates come with your system. "
                            "This is Plovik 1.0.0. Its updates arrive with those of your system's packages.");
}

TEST_F(Updates, TrustsOnlyWhoProvesToBeTheHost)
{
    const std::string refusal = "Updates could not be checked. The connection to 127.0.0.1 would not be secure: ";
    HttpServer another(identity(u"elsewhere.test"_s));
    another.answer("/feed", releases("<release version='2.0.0'/>"));
    EXPECT_EQ(said(another.url(u"/feed"_s)).substr(0, refusal.size()), refusal);

    TlsAuthority unknown;
    HttpServer self(unknown.identity(u"127.0.0.1"_s));
    self.answer("/feed", releases("<release version='2.0.0'/>"));
    EXPECT_EQ(said(self.url(u"/feed"_s)).substr(0, refusal.size()), refusal);
    EXPECT_TRUE(another.requests.isEmpty() && self.requests.isEmpty());
}

TEST_F(Updates, NeverAsksWithoutTls)
{
    HttpServer plain;
    plain.answer("/feed", releases("<release version='2.0.0'/>"));
    EXPECT_EQ(said(plain.url(u"/feed"_s)),
              "Updates could not be checked. The address of the list of releases is not a secure one.");
    HttpServer server(identity());
    server.redirect("/feed", plain.url(u"/feed"_s));
    EXPECT_EQ(said(server.url(u"/feed"_s)),
              "Updates could not be checked. 127.0.0.1 leads on to an address that is not secure.");
    EXPECT_TRUE(plain.requests.isEmpty());
}

TEST_F(Updates, SaysInOneSentenceWhatFailed)
{
    const std::string begin = "Updates could not be checked. ";
    HttpServer server(identity());
    server.answer("/gone", "<p>Nothing</p>", "404 Not Found");
    server.answer("/page", "<html><body>Log in</body></html>");
    server.answer("/large", releases(QByteArray(2000, ' ') + "<release version='2.0.0'/>"));
    server.redirect("/round", server.url(u"/round"_s));
    EXPECT_EQ(said(server.url(u"/gone"_s)), begin + "127.0.0.1 answered “404 Not Found”.");
    EXPECT_EQ(said(server.url(u"/page"_s)), begin + "What 127.0.0.1 sent is no list of releases.");
    EXPECT_EQ(said(server.url(u"/round"_s)), begin + "127.0.0.1 leads from one address to the next without end.");
    EXPECT_EQ(said(server.url(u"/large"_s), {.bytes = 1024}), begin + "The reply of 127.0.0.1 is larger than 1 KiB.");
    EXPECT_EQ(said(server.url(u"/silence"_s), {.time = 300ms}), begin + "127.0.0.1 did not answer within a second.");
    EXPECT_EQ(said(QUrl(u"https://127.0.0.1:1/feed"_s)), begin + "127.0.0.1 refused the connection.");
}

TEST_F(Updates, AsksAgainAndEndsWithItsWindow)
{
    HttpServer server(identity());
    server.answer("/feed", "", "503 Service Unavailable");
    const auto dialog = ask(server.url(u"/feed"_s));
    EXPECT_EQ(said(*dialog), "Updates could not be checked. 127.0.0.1 answered “503 Service Unavailable”.");
    server.answer("/feed", releases("<release version='1.0.1'/>"));
    named<QPushButton>(*dialog, u"Try Again"_s)->click();
    EXPECT_EQ(said(*dialog), "Plovik 1.0.1 is available. You have Plovik 1.0.0.");
    EXPECT_FALSE(named<QPushButton>(*dialog, u"Open Release Page"_s)->isVisible());

    QPointer<UpdateDialog> closing = ask(server.url(u"/silence"_s)).release();
    closing->setAttribute(Qt::WA_DeleteOnClose);
    EXPECT_TRUE(waitUntil([&] { return server.requests.size() == 3; }));
    named<QPushButton>(*closing, u"Cancel"_s)->click();
    EXPECT_TRUE(waitUntil([&] { return !closing; }));
}

} // namespace
} // namespace plovik

#include "updates_test.moc"
